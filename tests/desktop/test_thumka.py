"""Thumka as a person meets her, beside a real media player: the dance, the title, the panel, and her helper."""
import hashlib
import signal
import subprocess
import time

import pytest
from Xlib import X

from desk import stays, wait_for
from player import Player

PIECES = [("Raindrops", "Leela"), ("Sunrise", "Arun")]


class Thumka:
    def __init__(self, desk, program):
        self.desk, self.program = desk, program

    def start(self):
        self.program.write_preferences({"collection.settingsVersion": 2, "collection.onScreen": ["thumka"],
                                        "collection.activeCharacter": "thumka"})
        self.program.start(shows="Thumka")

    def says(self):
        node = self.program.accessible("Thumka")
        return node.get_description() if node else ""

    def wait_until_she_says(self, words):
        wait_for(f"her saying {words!r}", lambda: words in self.says())

    def do(self, action):
        assert self.program.again(f"deskfellow://do/thumka/{action}") == 0

    def poses(self, seconds=1.7):
        """How many different pictures of her are seen in a while."""
        left, top, width, height = self.desk.character("Thumka").box
        seen = set()
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            image = self.desk.root.get_image(left, top, width, height, X.ZPixmap, 0xFFFFFFFF)
            seen.add(hashlib.sha256(image.data).digest())
            time.sleep(0.05)
        return len(seen)

    def helpers(self):
        found = subprocess.run(["pgrep", "-P", str(self.program.process.pid), "-x", "fellow-media"],
                               capture_output=True, text=True, check=False)
        return [int(pid) for pid in found.stdout.split()]


@pytest.fixture
def thumka(desk, program):
    thumka = Thumka(desk, program)
    thumka.start()
    yield thumka
    program.stop()
    wait_for("her being gone", lambda: not desk.character("Thumka"))


@pytest.fixture
def player(tmp_path, thumka):
    with Player(tmp_path, PIECES) as player:
        yield player


def test_she_dances_to_a_real_player_from_play_to_quit(desk, thumka, player):
    thumka.wait_until_she_says("Raindrops — Leela")
    wait_for("the title", lambda: desk.character("Raindrops"))
    desk.shot("thumka-dances")
    wait_for("the title going", lambda: not desk.character("Raindrops"), 4)
    assert thumka.poses() >= 3, "two poses a second"
    player.ask("set_property", "pause", True)
    thumka.wait_until_she_says("Paused: Raindrops — Leela")
    assert thumka.poses() <= 2, "no more than a breath"
    thumka.do("play")
    wait_for("the player going on", lambda: player.ask("get_property", "pause") is False)
    assert stays(lambda: not desk.character("Raindrops"), 0.5), "going on is no new piece"
    thumka.do("next")
    wait_for("the new title", lambda: desk.character("Sunrise"))
    thumka.wait_until_she_says("Sunrise — Arun")
    assert player.ask("get_property", "playlist-pos") == 1
    player.ask("quit")
    thumka.wait_until_she_says("Nothing playing")
    assert not desk.character("Sunrise")
    assert thumka.poses() <= 2


def test_the_panel_by_keyboard(desk, thumka, player):
    thumka.wait_until_she_says("Raindrops")
    thumka.do("open")
    panel = wait_for("the panel", lambda: desk.character("Thumka's music"))
    wait_for("the keyboard", lambda: desk.active_window() == panel.window.id)
    assert not desk.character("Raindrops"), "the panel says it"
    for words in ("Raindrops", "Leela", "from mpv Media Player"):
        assert thumka.program.accessible(words), words
    desk.shot("thumka-panel")
    desk.mouse.keys("space")
    wait_for("the pause", lambda: player.ask("get_property", "pause"))
    wait_for("the button", lambda: thumka.program.accessible("Play", "push button"))
    desk.mouse.keys("Right")
    time.sleep(0.1)
    desk.mouse.keys("Return")
    wait_for("the next piece", lambda: thumka.program.accessible("Sunrise"))
    desk.mouse.keys("Escape")
    wait_for("the panel closing", lambda: not desk.character("Thumka's music"))


def screen_saver(active):
    subprocess.run(["dbus-send", "--session", "--type=signal", "/org/freedesktop/ScreenSaver",
                    "org.freedesktop.ScreenSaver.ActiveChanged", f"boolean:{active}"], check=True)


def test_she_keeps_still_behind_a_locked_screen(desk, thumka, player):
    thumka.wait_until_she_says("Raindrops")
    screen_saver("true")
    wait_for("the title going", lambda: not desk.character("Raindrops"), 2)
    player.ask("playlist-next")
    thumka.wait_until_she_says("Sunrise")
    # News may still come in, each with the pose of its moment; after that she stands.
    wait_for("the last of the news", lambda: thumka.poses(0.8) == 1)
    assert thumka.poses() == 1
    assert not desk.character("Sunrise")
    screen_saver("false")
    wait_for("the dance", lambda: thumka.poses() >= 3)


def test_her_helper_comes_back_and_is_never_left_behind(desk, thumka, player):
    first, = wait_for("the helper", thumka.helpers)
    thumka.wait_until_she_says("Raindrops")
    subprocess.run(["kill", "-KILL", str(first)], check=True)
    thumka.wait_until_she_says("Music cannot be followed here")
    thumka.wait_until_she_says("Raindrops")
    second, = thumka.helpers()
    assert second != first
    assert thumka.program.again("--toggle") == 0
    wait_for("the helper ending with her", lambda: not thumka.helpers())
    assert thumka.program.again("--toggle") == 0
    third, = wait_for("the helper coming with her", thumka.helpers)
    thumka.program.stop(signal.SIGKILL)
    wait_for("the helper ending with the program",
             lambda: subprocess.run(["kill", "-0", str(third)], capture_output=True, check=False).returncode != 0)


def test_a_user_who_wants_no_titles_gets_none(desk, thumka, tmp_path):
    thumka.program.again("deskfellow://settings/thumka")
    thumka.program.press("Say the title when a piece begins", "check box")
    wait_for("the choice being kept",
             lambda: thumka.program.preferences().get("sprites.thumka.titles.v1") is False)
    desk.shot("thumka-settings")
    with Player(tmp_path, PIECES):
        thumka.wait_until_she_says("Raindrops")
        assert stays(lambda: not desk.character("Raindrops"), 0.5)
