"""The settings window, second starts, and preferences that are not what they should be."""
import json
import os
import stat
import time

import pytest

from desk import stays, wait_for


def open_settings(desk, program):
    program.again("--library")
    wait_for("the settings window", lambda: desk.find("Deskfellow"))
    time.sleep(0.3)


def test_a_second_start_opens_the_settings_of_the_first(desk, standing):
    assert standing.again() == 0
    wait_for("the settings window", lambda: desk.find("Deskfellow"))
    desk.shot("settings")
    assert standing.alive()


def test_durations_change_at_once_and_are_kept(desk, standing):
    open_settings(desk, standing)
    box = wait_for("the focus field", lambda: standing.accessible("Focus", "spin button"))
    box.queryValue().currentValue = 50
    wait_for("the change being saved", lambda: standing.timer()["settings"]["focusMinutes"] == 50)
    assert standing.timer()["remainingSeconds"] == 3000


def test_mirroring_turns_batti_round(desk, standing):
    open_settings(desk, standing)
    standing.press("Face the other way", "check box")
    wait_for("the change being saved", lambda: standing.preferences().get("sprites.batti.mirrored") is True)


def test_start_at_login_writes_and_removes_an_entry(desk, standing):
    open_settings(desk, standing)
    standing.again("deskfellow://settings/general")
    entry = standing.home / "config" / "autostart" / "deskfellow.desktop"
    standing.press("Start at login", "check box")
    wait_for("the entry", entry.exists)
    assert "Exec=" in entry.read_text()
    standing.press("Start at login", "check box")
    wait_for("the entry going", lambda: not entry.exists())


def test_links_reach_the_running_program(desk, standing):
    assert standing.again("deskfellow://settings/munshi") == 0
    wait_for("the settings window", lambda: desk.find("Deskfellow"))
    wait_for("Munshi's pane", lambda: standing.accessible("Bring out"))
    assert standing.again("deskfellow://nonsense/../../etc") == 0
    assert stays(standing.alive)


@pytest.mark.parametrize("arguments, status", [(["--help"], 0), (["--version"], 0), (["--nonsense"], 2)])
def test_answers_on_the_command_line(program, arguments, status):
    assert program.again(*arguments) == status


BROKEN = {
    "empty": b"",
    "cut off": b'{"collection.onScreen": ["bat',
    "no object": b"[1, 2]",
    "deep": b"[" * 200_000,
    "not text": bytes(range(256)),
    "huge": b'{"a": "' + b"x" * 100_000_000 + b'"}',
}


@pytest.mark.parametrize("name", BROKEN)
def test_broken_preferences_are_moved_aside_and_the_program_starts(desk, program, name):
    program.preferences_file.parent.mkdir(parents=True)
    program.preferences_file.write_bytes(BROKEN[name])
    program.start()
    kept = list(program.preferences_file.parent.glob("preferences.json.corrupt*"))
    assert [file.stat().st_size for file in kept] == [len(BROKEN[name])]


def test_absurd_values_are_forced_into_bounds(desk, program):
    program.write_preferences({
        "sprites.batti.frame": "{{1e308, -1e308}, {nan, 5}}", "sprites.batti.desktopAnchor": "{-9e99, inf}",
        "sprites.batti.desktopHeight": 1e300, "sprites.batti.height": "tall", "sprites.batti.mirrored": 7,
        "collection.onScreen": ["batti", "batti", "", "nobody"], "collection.activeCharacter": 12,
        "collection.arrangeCompactHeight": -5, "collection.shortcutKey": 10**15, "collection.settingsVersion": "two",
    })
    program.start()
    left, top, width, height = desk.character("Batti").box
    assert 100 < height < 1000 and 0 <= left < 1600 and 0 <= top < 1000


def test_a_place_on_a_monitor_that_is_gone_becomes_one_on_the_screen(desk, program):
    program.write_preferences({"collection.settingsVersion": 2, "sprites.batti.frame": "{{5000, 3000}, {272, 418}}",
                               "sprites.batti.desktopAnchor": "{5100, 3020}"})
    program.start()
    left, top, width, height = desk.character("Batti").box
    assert 0 <= left + width / 2 <= 1600 and 0 <= top + height / 2 <= 1000


def test_a_home_that_cannot_be_written_costs_nothing_but_the_memory(desk, program):
    """As root every folder can be written, so a file stands where the folders should be."""
    for folder in ("config", "data"):
        (program.home / folder).rmdir()
        (program.home / folder).write_text("in the way")
    program.start()
    program.press("Batti")
    program.press("Start focus")
    assert stays(program.alive)
    assert program.stop() == 0
    assert (program.home / "config").read_text() == "in the way"
