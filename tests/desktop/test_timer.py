"""Batti's timer as a person meets it: the button, the badge, hiding, sleeping, ending and starting again."""
import json
import signal
import time

import pytest

from desk import stays, wait_for


def status(program):
    return program.timer()["status"]


def test_starts_pauses_and_resets_from_the_quick_actions(desk, standing):
    standing.press("Batti")
    standing.press("Start focus")
    wait_for("the timer running", lambda: status(standing) == "running")
    desk.shot("running")
    standing.press("Pause")
    wait_for("the timer pausing", lambda: status(standing) == "paused")
    standing.press("Resume")
    wait_for("the timer running again", lambda: status(standing) == "running")
    standing.press("Reset")
    wait_for("the timer being idle", lambda: status(standing) == "idle")


def test_says_what_it_shows(standing):
    node = wait_for("Batti's button", lambda: standing.accessible("Batti"))
    assert "Ready for focus, 25:00 remaining" in (node.description + node.get_description())


@pytest.mark.parametrize("end", [signal.SIGTERM, signal.SIGHUP, signal.SIGINT])
def test_comes_back_paused_after_any_end(desk, standing, end):
    standing.press("Batti")
    standing.press("Start focus")
    time.sleep(1.2)
    assert standing.stop(end) == 0
    standing.start()
    timer = standing.timer()
    assert timer["status"] == "paused" and "deadline" not in timer
    assert 1400 < timer["remainingSeconds"] < 1500


def test_a_phase_that_ended_meanwhile_comes_back_completed(desk, program):
    program.start().stop()
    timer = program.timer()
    timer.update(status="running", deadline=time.time() - 978307200 - 7200, remainingSeconds=60)
    program.timer_file.write_text(json.dumps(timer))
    program.start()
    assert program.timer()["status"] == "completed"
    assert program.timer()["completedFocusSessions"] == 1


def test_pauses_while_hidden(desk, standing):
    standing.press("Batti")
    standing.press("Start focus")
    wait_for("the timer running", lambda: status(standing) == "running")
    desk.mouse.keys("Control_L", "Alt_L", "b")
    wait_for("hiding", lambda: not desk.character("Batti"))
    assert status(standing) == "paused"
    desk.mouse.keys("Control_L", "Alt_L", "b")
    wait_for("coming back", lambda: desk.character("Batti"))
    assert stays(lambda: status(standing) == "paused"), "nothing resumes by itself"
    standing.press("Batti")
    wait_for("the reason", lambda: standing.accessible("Paused while hidden"))


BROKEN = {"empty": "", "cut off": "{", "wrong type": '{"status": 5}', "huge": "x" * 2_000_000, "deep": "[" * 100_000}


@pytest.mark.parametrize("name", BROKEN)
def test_a_broken_timer_file_is_kept_and_not_obeyed(desk, program, name):
    content = BROKEN[name]
    program.timer_file.parent.mkdir(parents=True)
    program.timer_file.write_text(content)
    program.start()
    assert program.timer()["status"] == "idle"
    kept = list(program.timer_file.parent.glob("focus-timer.json.corrupt*"))
    assert [file.read_text() for file in kept] == [content]


def test_sleep_pauses_and_waking_does_not_resume(desk, program, logind):
    _, manager = logind
    program.start()
    program.press("Batti")
    program.press("Start focus")
    wait_for("the timer running", lambda: status(program) == "running")
    time.sleep(0.5)
    manager.EmitSignal("org.freedesktop.login1.Manager", "PrepareForSleep", "b", [True])
    wait_for("pausing for sleep", lambda: status(program) == "paused")
    manager.EmitSignal("org.freedesktop.login1.Manager", "PrepareForSleep", "b", [False])
    time.sleep(0.3)
    program.press("Batti")
    wait_for("the reason", lambda: program.accessible("Paused while asleep"))
    assert stays(lambda: status(program) == "paused")
