"""Monitors that come and go."""
import subprocess

import pytest

from desk import wait_for


def xrandr(*arguments):
    subprocess.run(["xrandr", *arguments], check=True, capture_output=True)


@pytest.fixture
def second_monitor():
    """The right half of the screen as a monitor of its own."""
    xrandr("--setmonitor", "*left", "800/211x1000/264+0+0", "screen")
    xrandr("--setmonitor", "right", "800/211x1000/264+800+0", "none")
    yield
    for name in ("left", "right"):
        subprocess.run(["xrandr", "--delmonitor", name], check=False, capture_output=True)


def test_comes_back_when_its_monitor_goes(desk, second_monitor, program):
    program.start()
    window = desk.character("Batti")
    desk.mouse.drag(window.center, (1300, 500))
    assert window.box[0] > 900
    xrandr("--delmonitor", "right")
    wait_for("standing on the monitor that is left", lambda: window.center[0] + 80 <= 800)
