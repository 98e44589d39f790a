"""Mira as a person meets her: a session by mouse, by keyboard alone, and her settings."""
import json
import subprocess
import time

import pyatspi
import pytest

from desk import stays, wait_for

CUE = "Mira's cue — Deskfellow"


@pytest.fixture
def mira(desk, program):
    """The program with Mira alone on the desktop."""
    program.write_preferences({"collection.settingsVersion": 2, "collection.onScreen": ["mira"],
                               "collection.activeCharacter": "mira"})
    program.start(shows="Mira")
    yield program
    program.stop()
    wait_for("the desktop being empty again", lambda: not desk.character("Mira"))


def session(program):
    file = program.home / "data" / "DeskSprites" / "sprites" / "mira" / "breathing-session.json"
    # A running session is saved as if it were paused, so only the seconds tell a pause.
    return json.loads(file.read_text()) if file.exists() else {"status": "none", "accumulatedSeconds": 0}


def says(program, words):
    wait_for(f"Mira saying {words!r}", lambda: program.accessible(words, "label"))


def click_mira(desk):
    left, top, width, height = desk.character("Mira").box
    desk.mouse.click(left + width * 0.5, top + height * 0.6)


def click(desk, program, name):
    """Clicks a control with the mouse, where assistive technology says that it is."""
    node = wait_for(f"a button {name!r}", lambda: program.accessible(name))
    place = node.queryComponent().getExtents(0)
    desk.mouse.click(place.x + place.width / 2, place.y + place.height / 2)


def test_a_session_by_mouse(desk, mira):
    click_mira(desk)
    click(desk, mira, "Start breathing")
    says(mira, "Get comfortable")
    says(mira, "1 of 6")
    wait_for("the cue", lambda: desk.find(CUE))
    says(mira, "Breathe in")
    time.sleep(2.5)
    desk.shot("mira-breathing")
    click(desk, mira, "Pause")
    wait_for("the cue going", lambda: desk.find(CUE) is None)
    wait_for("the second being kept", lambda: session(mira)["accumulatedSeconds"] > 1)
    kept = session(mira)["accumulatedSeconds"]
    assert 5 < kept < 8
    assert stays(lambda: session(mira)["accumulatedSeconds"] == kept)
    click(desk, mira, "Continue")
    says(mira, "Breathe out")
    click(desk, mira, "End")
    wait_for("the session being given up", lambda: session(mira)["status"] == "idle")
    assert desk.find(CUE) is None


def press_focused(desk, program, name):
    """Goes to a button with Tab and presses it."""
    def focused():
        node = program.accessible(name)
        if node is not None and node.getState().contains(pyatspi.STATE_FOCUSED):
            return True
        desk.mouse.keys("Tab")
        time.sleep(0.06)
        return False
    wait_for(f"the focus reaching {name!r}", focused)
    desk.mouse.keys("space")


def test_a_session_by_keyboard_alone(desk, mira):
    """As when `deskfellow --mira-controls` is bound to a key: the panel comes with the keyboard."""
    mira.again("--mira-controls")
    press_focused(desk, mira, "Start breathing")
    says(mira, "Get comfortable")
    wait_for("the cue", lambda: desk.find(CUE))
    press_focused(desk, mira, "Pause")
    wait_for("the pause", lambda: desk.find(CUE) is None)
    press_focused(desk, mira, "Continue")
    wait_for("going on", lambda: desk.find(CUE) is not None)
    press_focused(desk, mira, "End")
    wait_for("the end", lambda: session(mira)["status"] == "idle")


def test_a_link_starts_her_from_anywhere(desk, program):
    program.start()
    program.again("deskfellow://do/mira/primary")
    wait_for("Mira coming", lambda: desk.character("Mira"))
    says(program, "Get comfortable")


def test_the_rhythm_is_chosen_from_the_menu(desk, mira):
    mira.press("Mira")
    mira.choose("Calm", 2)
    wait_for("the choice", lambda: mira.preferences().get("sprites.mira.rhythm") == "box")
    mira.press("Start breathing")
    says(mira, "1 of 4")


def test_the_right_button_offers_the_same(desk, mira):
    left, top, width, height = desk.character("Mira").box
    desk.mouse.click(left + width * 0.5, top + height * 0.6, number=3)
    time.sleep(0.4)
    for key in ("Down", "Down", "Right", "Down", "Return"):  # End cannot be chosen yet
        desk.mouse.keys(key)
        time.sleep(0.1)
    wait_for("the choice", lambda: mira.preferences().get("sprites.mira.rhythm") == "reset")


def test_hiding_and_ending_keep_the_second(desk, mira):
    mira.press("Mira")
    mira.press("Start breathing")
    says(mira, "Breathe in")
    desk.mouse.keys("Control_L", "Alt_L", "b")
    wait_for("hiding", lambda: not desk.character("Mira"))
    wait_for("the second being kept", lambda: session(mira)["accumulatedSeconds"] > 2.9)
    desk.mouse.keys("Control_L", "Alt_L", "b")
    wait_for("coming back", lambda: desk.character("Mira"))
    mira.press("Mira")
    says(mira, "Paused while hidden · 1 of 6")
    mira.press("Continue")
    time.sleep(1.2)
    before = session(mira)["accumulatedSeconds"]
    assert mira.stop() == 0
    assert session(mira)["status"] == "paused" and 0.8 < session(mira)["accumulatedSeconds"] - before < 3
    mira.start(shows="Mira")
    assert desk.find(CUE) is None, "nothing goes on by itself"
    mira.press("Mira")
    wait_for("going on being offered", lambda: mira.accessible("Continue"))


def test_the_end_is_said_kindly_and_goes(desk, mira):
    mira.stop()
    values = mira.preferences()
    values.update({"sprites.mira.rhythm": "custom", "sprites.mira.custom": "2 0 2 0 0", "sprites.mira.rounds": 1})
    mira.write_preferences(values)
    mira.start(shows="Mira")
    mira.press("Mira")
    mira.press("Start breathing")
    wait_for("the end", lambda: session(mira)["status"] == "completed", patience=12)
    says(mira, "Take this calm with you.")
    desk.shot("mira-farewell")
    wait_for("the words going", lambda: desk.find(CUE) is None, patience=12)
    mira.press("Start breathing")
    wait_for("another one", lambda: desk.find(CUE) is not None)


def test_the_lock_pauses(desk, mira):
    mira.press("Mira")
    mira.press("Start breathing")
    says(mira, "Get comfortable")
    subprocess.run(["gdbus", "emit", "--session", "--object-path", "/org/freedesktop/ScreenSaver",
                    "--signal", "org.freedesktop.ScreenSaver.ActiveChanged", "true"], check=True)
    wait_for("the pause", lambda: desk.find(CUE) is None)
    says(mira, "Paused while locked · 1 of 6")
    assert session(mira)["status"] == "paused"


def test_sleep_pauses(desk, program, logind):
    _, manager = logind
    program.write_preferences({"collection.settingsVersion": 2, "collection.onScreen": ["mira"]})
    program.start(shows="Mira")
    program.press("Mira")
    program.press("Start breathing")
    says(program, "Get comfortable")
    manager.EmitSignal("org.freedesktop.login1.Manager", "PrepareForSleep", "b", [True])
    wait_for("the pause", lambda: session(program)["status"] == "paused" and desk.find(CUE) is None)
    program.stop()


def test_settings_by_keyboard_reach_the_next_session(desk, mira):
    mira.again("--mira-settings")
    wait_for("the settings window", lambda: desk.find("Deskfellow"))
    mira.press("Custom: 4 in, 2 hold, 6 out", "radio button")
    field = wait_for("the field", lambda: mira.accessible("Breathe in", "spin button"))
    field.queryComponent().grabFocus()
    time.sleep(0.2)
    desk.mouse.keys("Up")
    wait_for("half a second more", lambda: mira.preferences().get("sprites.mira.custom") == "4.5 2 6 0 0")
    wait_for("the curve telling", lambda: "4.5 in, 2 hold, 6 out" in
             (mira.accessible("One round of the pattern") or field).description)
    name = wait_for("the name", lambda: mira.accessible("Name", "text"))
    name.queryComponent().grabFocus()
    time.sleep(0.2)
    desk.mouse.keys("s")
    desk.mouse.keys("Return")
    wait_for("the pattern", lambda: mira.preferences().get("sprites.mira.patterns") == ["4.5 2 6 0 0 s"])
    desk.shot("mira-settings")
