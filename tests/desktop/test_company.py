"""Several characters: bringing out, swapping, hiding, arranging, and coming back as they were."""
import json
import shutil
import subprocess
import time

import pytest

from desk import BUILD, stays, wait_for

ROOMY = "Hide a character to make room."


def on_screen(program):
    return program.preferences().get("collection.onScreen")


def waiting(program):
    """Who may come, in the order of the menus."""
    return [name for name in ("Batti", "Munshi", "Asha", "Ravi") if name.lower() not in on_screen(program)]


def bring(desk, program, name):
    if program.accessible("Bring") is None:
        program.press("Batti")
    wait_for("the set being saved", lambda: on_screen(program))
    program.choose("Bring", waiting(program).index(name))
    wait_for(f"{name} coming", lambda: desk.character(name))
    wait_for("the set being saved", lambda: name.lower() in on_screen(program))


@pytest.fixture
def cast(program):
    """A pack folder of its own with the installed characters and two plain ones, so that a fourth exists."""
    root = program.home / "install"
    (root / "bin").mkdir(parents=True)
    shutil.copy(BUILD / "bin" / "deskfellow", root / "bin")
    shutil.copytree((BUILD / "share" / "deskfellow").resolve(), root / "share" / "deskfellow")
    packs = root / "share" / "deskfellow" / "characters"
    for folder in packs.iterdir():
        if folder.name != "munshi":
            shutil.rmtree(folder)
    for builtin in ("cat", "mira-breathing", "intern"):
        for file in (root / "share" / "deskfellow" / "builtin").glob(f"{builtin}*"):
            shutil.rmtree(file) if file.is_dir() else file.unlink()
    manifest = json.loads((packs / "munshi" / "manifest.json").read_text())
    for name in ("Asha", "Ravi"):
        shutil.copytree(packs / "munshi", packs / name.lower())
        manifest.update(id=name.lower(), name=name, order=20)
        (packs / name.lower() / "manifest.json").write_text(json.dumps(manifest))
    program.command = lambda *arguments: [str(root / "bin" / "deskfellow"), "--mute-interface-for-testing", *arguments]
    return program


def test_three_come_out_and_the_fourth_is_refused_with_its_sentence(desk, cast):
    cast.start()
    bring(desk, cast, "Munshi")
    first, second = desk.character("Batti").box, desk.character("Munshi").box
    assert second[0] + second[2] <= first[0], "the second stands to the left of the first"
    bring(desk, cast, "Asha")
    desk.shot("three")
    wait_for("the set being saved", lambda: on_screen(cast) == ["batti", "munshi", "asha"])

    assert cast.again("deskfellow://bring/ravi") == 0
    wait_for("the refusal", lambda: cast.accessible(ROOMY))
    desk.shot("refused")
    assert stays(lambda: desk.character("Ravi") is None)
    assert on_screen(cast) == ["batti", "munshi", "asha"]


def test_everything_comes_back_as_it_was(desk, cast):
    cast.start()
    bring(desk, cast, "Munshi")
    desk.mouse.drag(desk.character("Munshi").center, (400, 500))
    cast.press("Batti")
    cast.press("Smaller")
    stood = {name: desk.character(name).box for name in ("Batti", "Munshi")}
    assert cast.stop() == 0
    cast.start()
    wait_for("Munshi coming back", lambda: desk.character("Munshi"))
    assert {name: desk.character(name).box for name in stood} == stood


def test_a_swap_happens_in_place_and_can_be_taken_back(desk, cast):
    cast.start()
    desk.mouse.drag(desk.character("Batti").center, (700, 500))
    left, top, width, height = desk.character("Batti").box
    cast.press("Batti")
    cast.choose("Swap", 0)
    wait_for("Munshi coming", lambda: desk.character("Munshi"))
    wait_for("Batti leaving", lambda: not desk.character("Batti"))
    other = desk.character("Munshi").box
    assert abs((other[0] + other[2] / 2) - (left + width / 2)) <= 4, "the foot is where the other's was"
    assert cast.again("--swap-back") == 0
    wait_for("Batti coming back", lambda: desk.character("Batti"))
    assert desk.character("Batti").box == (left, top, width, height)


def test_arranges_along_both_edges(desk, cast):
    cast.start()
    bring(desk, cast, "Munshi")
    subprocess.run(cast.command("deskfellow://arrange/bottom"), env=cast.environment, timeout=10, check=True)
    frames = lambda: [desk.character(name).box for name in ("Batti", "Munshi")]  # noqa: E731
    wait_for("standing along the bottom", lambda: all(top + height == 1000 - 12 for _, top, _, height in frames()))
    wait_for("the last one in the corner", lambda: frames()[1][0] + frames()[1][2] == 1600 - 12)
    wait_for("side by side", lambda: frames()[0][0] + frames()[0][2] == frames()[1][0] - 12)
    subprocess.run(cast.command("deskfellow://arrange/right"), env=cast.environment, timeout=10, check=True)
    wait_for("standing along the right", lambda: all(left + width == 1600 - 12 for left, _, width, _ in frames()))
    wait_for("one above the other", lambda: frames()[0][1] + frames()[0][3] == frames()[1][1] - 12)
    desk.shot("arranged")


def test_one_shortcut_hides_and_shows_everyone(desk, cast):
    cast.start()
    bring(desk, cast, "Munshi")
    desk.mouse.keys("Control_L", "Alt_L", "b")
    wait_for("hiding", lambda: not desk.character("Batti") and not desk.character("Munshi"))
    desk.mouse.keys("Control_L", "Alt_L", "b")
    wait_for("showing", lambda: desk.character("Batti") and desk.character("Munshi"))


def test_hiding_one_of_two_takes_it_off_and_hiding_the_last_keeps_it_in_the_set(desk, cast):
    cast.start()
    bring(desk, cast, "Munshi")
    cast.press("Munshi")
    cast.press("Hide")
    wait_for("Munshi leaving", lambda: not desk.character("Munshi"))
    wait_for("the set being saved", lambda: on_screen(cast) == ["batti"])
    cast.press("Batti")
    cast.press("Hide")
    wait_for("Batti hiding", lambda: not desk.character("Batti"))
    assert cast.again("--toggle") == 0
    wait_for("Batti coming back", lambda: desk.character("Batti"))


def test_a_bad_pack_is_left_out_with_a_line_in_the_log(desk, cast):
    folder = cast.home / "install" / "share" / "deskfellow" / "characters" / "ravi"
    (folder / "idle.png").write_bytes(b"\x89PNG\r\n\x1a\n broken")
    cast.start()
    assert "Deskfellow skipped character pack ravi: " in cast.log()


def test_it_ends_in_good_order_while_sentences_wait(desk, standing):
    for name in ("Munshi", "Mira"):
        standing.again(f"deskfellow://bring/{name.lower()}")
        wait_for(f"{name} coming", lambda: desk.character(name))
    for _ in range(3):
        standing.again("deskfellow://bring/snake")
    wait_for("the refusal", lambda: desk.character(ROOMY))
    assert standing.stop() == 0
    wait_for("the desktop being empty", lambda: not desk.character(ROOMY))


def test_a_sentence_that_is_closed_makes_room_for_the_next(desk, standing):
    for name in ("Munshi", "Mira"):
        standing.again(f"deskfellow://bring/{name.lower()}")
        wait_for(f"{name} coming", lambda: desk.character(name))
    for _ in range(2):
        standing.again("deskfellow://bring/snake")
    for _ in range(2):
        wait_for("the refusal", lambda: desk.character(ROOMY))
        standing.press("Close")
        time.sleep(0.5)  # the next one looks the same
    assert stays(lambda: not desk.character(ROOMY), 1)
