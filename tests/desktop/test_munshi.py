"""Munshi's ledger as a person meets it: by mouse, by keyboard alone, from anywhere, and beside another program."""
import json
import subprocess
import time

import pyatspi
import pytest

from desk import BUILD, stays, wait_for

LEDGER = "Munshi's ledger — Deskfellow"
CAPTURE = "Write a line for Munshi — Deskfellow"


def fellow(program, *arguments):
    """What the command line companion says about the same home."""
    return subprocess.run([str(BUILD / "bin" / "fellow"), "ledger", *arguments], env=program.environment,
                          capture_output=True, text=True, timeout=10, check=True).stdout


def lines(program):
    """Today's lines without their numbers, once they are saved."""
    numbered = (line.strip().split(" ", 1) for line in fellow(program).splitlines()[1:])
    return [words[1].strip() for words in numbered if words[0].isdigit()]


def expect_lines(program, *wanted):
    wait_for(f"the ledger being {wanted}, not {lines(program)}", lambda: lines(program) == list(wanted))


NAMES = {" ": "space", "-": "minus", ",": "comma"}


def write(desk, text, end="Return"):
    for letter in text:
        desk.mouse.keys(NAMES.get(letter, letter))
    if end:
        desk.mouse.keys(end)
    time.sleep(0.1)


def box(program, name):
    """left, top, width, height of a control on the screen."""
    node = wait_for(f"a control named {name!r}", lambda: program.accessible(name))
    extents = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return extents.x, extents.y, extents.width, extents.height


def checked(program, name):
    node = program.accessible(name)
    return node is not None and node.getState().contains(pyatspi.STATE_CHECKED)


@pytest.fixture
def munshi(desk, standing):
    """The program with Munshi on the desktop."""
    assert standing.again("deskfellow://select/munshi") == 0
    wait_for("Munshi coming on the desktop", lambda: desk.character("Munshi"))
    time.sleep(0.3)
    return standing


@pytest.fixture
def ledger(desk, munshi):
    """The ledger, open and with the keyboard."""
    assert munshi.again("deskfellow://do/munshi/open") == 0
    wait_for("the ledger opening", lambda: desk.find(LEDGER))
    wait_for("the ledger having the keyboard", lambda: desk.active_window() == desk.find(LEDGER).window.id)
    time.sleep(0.2)
    return munshi


def test_a_day_by_mouse(desk, munshi):
    desk.mouse.click(*desk.character("Munshi").center)
    left, top, width, height = box(munshi, "Open ledger")
    desk.mouse.click(left + width / 2, top + height / 2)
    wait_for("the ledger opening", lambda: desk.find(LEDGER))
    time.sleep(0.4)
    for text in ("milk", "rent", "bank"):
        write(desk, text)
    expect_lines(munshi, "[ ] milk", "[ ] rent", "[ ] bank")
    left, top, _, height = box(munshi, "rent")
    desk.mouse.click(left + 12, top + height / 2)
    expect_lines(munshi, "[ ] milk", "[x] rent", "[ ] bank")
    assert checked(munshi, "rent")
    left, top, _, height = box(munshi, "milk")
    desk.mouse.drag((left + 60, top + height / 2), (left + 64, top + 2.2 * height))
    expect_lines(munshi, "[x] rent", "[ ] milk", "[ ] bank")
    desk.shot("ledger")
    left, top, width, height = box(munshi, "bank")
    desk.mouse.move(left + width / 2, top + height / 2)
    time.sleep(0.2)
    desk.mouse.click(left + width + 36, top + height / 2)
    expect_lines(munshi, "[x] rent", "[ ] milk")
    munshi.press("Undo")
    expect_lines(munshi, "[x] rent", "[ ] milk", "[ ] bank")
    desk.mouse.click(*desk.character("Munshi").center)
    wait_for("a click on him closing the ledger", lambda: not desk.find(LEDGER))


def test_a_day_by_keyboard_alone(desk, ledger):
    for text in ("milk", "- tea at four", "rent"):
        write(desk, text)
    expect_lines(ledger, "[ ] milk", "[ ] rent", "-  tea at four")
    desk.mouse.keys("Down")
    desk.mouse.keys("space")
    expect_lines(ledger, "[x] milk", "[ ] rent", "-  tea at four")
    desk.mouse.keys("Alt_L", "Down")
    expect_lines(ledger, "[ ] rent", "[x] milk", "-  tea at four")
    desk.mouse.keys("Up")
    desk.mouse.keys("F2")
    time.sleep(0.1)
    write(desk, "rent and bank")
    expect_lines(ledger, "[ ] rent and bank", "[x] milk", "-  tea at four")
    desk.mouse.keys("F2")
    time.sleep(0.1)
    write(desk, "nonsense", end="Escape")
    assert desk.find(LEDGER), "Escape gave up the edit and the ledger with it"
    desk.mouse.keys("Delete")
    expect_lines(ledger, "[x] milk", "-  tea at four")
    desk.mouse.keys("Control_L", "z")
    expect_lines(ledger, "[ ] rent and bank", "[x] milk", "-  tea at four")
    desk.mouse.keys("Escape")
    wait_for("Escape closing the ledger", lambda: not desk.find(LEDGER))
    node = wait_for("Munshi's button", lambda: ledger.accessible("Munshi"))
    assert "1 open · next: rent and bank" in node.description + node.get_description()


def test_a_line_from_anywhere_gives_the_keyboard_back(desk, standing, under):
    left, top, width, height = desk.find("Event Tester").box
    desk.mouse.click(left + width / 3, top + height / 3)
    before = wait_for("the other program having the keyboard",
                      lambda: desk.active_window() == desk.find("Event Tester").window.id and desk.active_window())
    assert not desk.character("Munshi")
    for end, text in (("Escape", "not this"), ("Return", "this")):
        desk.mouse.keys("Control_L", "Alt_L", "n")
        window = wait_for("the field opening", lambda: desk.find(CAPTURE))
        wait_for("the field having the keyboard", lambda: desk.active_window() == window.window.id)
        time.sleep(0.2)
        desk.mouse.keys("Control_L", "a")
        write(desk, text, end)
        wait_for("the keyboard going back", lambda: desk.active_window() == before)
        wait_for("the field closing", lambda: not desk.find(CAPTURE))
    expect_lines(standing, "[ ] this")


def test_beside_another_program_nothing_is_lost(desk, ledger):
    write(desk, "mine")
    write(desk, "half a line", end=None)
    fellow(ledger, "add", "from elsewhere")
    wait_for("the other program's line", lambda: ledger.accessible("from elsewhere"))
    fellow(ledger, "done", "1")
    wait_for("the other program's check mark", lambda: checked(ledger, "mine"))
    desk.mouse.keys("Return")
    expect_lines(ledger, "[x] mine", "[ ] from elsewhere", "[ ] half a line")
    ledger.stop()
    ledger.start(shows="Munshi")
    expect_lines(ledger, "[x] mine", "[ ] from elsewhere", "[ ] half a line")


def test_a_new_day_archives_and_earlier_days_are_searched(desk, munshi):
    munshi.stop()
    file = munshi.home / "data" / "DeskSprites" / "sprites" / "munshi" / "ledger.json"
    fellow(munshi, "add", "open task")
    fellow(munshi, "add", "- an old note")
    held = json.loads(file.read_text())
    yesterday = time.strftime("%Y-%m-%d", time.localtime(time.time() - 86400))
    held["currentDay"] = yesterday
    for item in held["today"]:
        item["day"] = yesterday
    file.write_text(json.dumps(held))
    munshi.start(shows="Munshi")
    wait_for("the new day being saved", lambda: json.loads(file.read_text())["currentDay"] != yesterday)
    assert munshi.again("deskfellow://do/munshi/open") == 0
    node = wait_for("the carried task", lambda: munshi.accessible("open task"))
    assert "since yesterday" in node.description
    munshi.press("Earlier days")
    wait_for("the old note", lambda: munshi.accessible("an old note, note"))
    time.sleep(0.2)
    write(desk, "task", end=None)
    wait_for("the search leaving the note out", lambda: not munshi.accessible("an old note, note"))
    assert munshi.accessible("open task, not done")
    desk.shot("ledger-earlier")


def test_erasing_asks_first(desk, munshi):
    fellow(munshi, "add", "precious")
    munshi.again("deskfellow://settings/munshi")
    munshi.press("Erase everything…")
    munshi.press("Keep everything")
    assert stays(lambda: lines(munshi) == ["[ ] precious"])
    munshi.press("Erase everything…")
    munshi.press("Erase everything")
    expect_lines(munshi)
