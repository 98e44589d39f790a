"""Batti on the desktop: where it stands, what it lets through, how it moves and grows."""
import subprocess
import time

from desk import stays, wait_for

SCREEN = (1600, 1000)


def foot(window):
    """The middle of the lower edge of the window, which moves with the foot."""
    left, top, width, height = window.box
    return left + width / 2, top + height


def test_stands_at_the_lower_right_above_other_windows(desk, under, standing):
    left, top, width, height = desk.character("Batti").box
    assert (left + width, top + height) == (SCREEN[0] - 45, SCREEN[1] - 32)
    assert desk.windows()[-1].title == "Batti — Deskfellow"
    x, y = desk.character("Batti").center
    red, green, blue = desk.pixel(x, y - 40)
    assert red > 200 and green > 120 and blue < 120, "the amber lamp is lit over the other window"
    desk.shot("standing")


def test_takes_no_focus_and_is_in_no_task_list(desk, under, standing):
    title = desk.find("Event Tester")
    assert desk.active_window() == title.window.id
    listed = desk.root.get_full_property(desk.display.intern_atom("_NET_CLIENT_LIST"), 0).value
    assert desk.character("Batti").window.id not in listed


def test_clicks_go_through_the_holes_and_not_through_the_body(desk, under, standing):
    window = desk.character("Batti")
    left, top, width, height = window.box

    desk.mouse.click(left + 20, top + 30)  # above the shoulder, inside the window
    event = wait_for("the click reaching the window below", under.stdout.readline)
    while "ButtonPress" not in event:
        event = under.stdout.readline()

    desk.mouse.click(*window.center)
    wait_for("the quick actions", lambda: standing.accessible("Start focus"))
    under.kill()
    assert under.stdout.read().count("ButtonPress") == 0, "the body let a click through"


def test_is_dragged_by_the_body_and_remembers_the_place(desk, standing):
    window = desk.character("Batti")
    x, y = window.center
    left, top, _, _ = window.box
    desk.mouse.drag((x, y), (x - 500, y - 300))
    wait_for("arriving", lambda: window.box[:2] == (left - 500, top - 300))
    assert standing.accessible("Start focus") is None, "a drag is no click"
    assert standing.stop() == 0

    standing.start()
    assert desk.character("Batti").box[:2] == (left - 500, top - 300)


def test_grows_and_shrinks_without_moving_its_foot(desk, standing):
    window = desk.character("Batti")
    before, stood = window.box, foot(window)
    desk.mouse.wheel(*window.center, -1)
    wait_for("shrinking", lambda: window.box[3] < before[3])
    assert abs(foot(window)[0] - stood[0]) <= 1
    # The ground line is 7 art pixels and 16 points above the window's edge; the art pixel went from 2 points to 1.
    assert abs((foot(window)[1] - 7 - 16) - (stood[1] - 14 - 16)) <= 1

    standing.press("Batti")
    standing.press("Larger")
    wait_for("growing", lambda: window.box[3] == before[3])
    assert window.box[:2] == before[:2]
    standing.press("Smaller")
    wait_for("shrinking", lambda: window.box[3] < before[3])


def test_stays_on_the_screen_when_dragged_out(desk, standing):
    window = desk.character("Batti")
    desk.mouse.drag(window.center, (SCREEN[0] - 2, 4))
    standing.stop()
    standing.start()
    left, top, width, height = desk.character("Batti").box
    assert left + width - 16 <= SCREEN[0] + 40 and top + 16 >= -40, "the art came back onto the screen"


def test_quick_actions_close_when_the_user_turns_to_something_else(desk, under, standing):
    desk.mouse.click(*desk.character("Batti").center)
    wait_for("the quick actions", lambda: standing.accessible("Start focus"))
    time.sleep(0.2)
    desk.mouse.click(200, 200)
    wait_for("the quick actions closing", lambda: standing.accessible("Start focus") is None)


def test_the_menu_on_the_right_button_reaches_everything(desk, standing):
    desk.mouse.click(*desk.character("Batti").center, number=3)
    time.sleep(0.4)
    desk.shot("menu")
    desk.mouse.keys("Up")  # round to the last entry, which quits
    desk.mouse.keys("Return")
    wait_for("quitting", lambda: not standing.alive())
    assert standing.stop() == 0


def test_works_without_a_compositor_and_without_a_window_manager(desk, program):
    script = ("tools/with-desktop --no-wm --no-compositor --no-bus --screen 800x600 -- "
              "timeout --preserve-status -s TERM 2 " + " ".join(program.command()))
    done = subprocess.run(["bash", "-c", script], capture_output=True, text=True, timeout=30, check=False)
    assert done.returncode == 0, done.stderr
    assert "No compositor is running, so the characters have hard edges." in done.stderr
    assert "No window manager is running, so panels may be covered by other windows." in done.stderr


def test_says_so_without_a_display(program):
    environment = {key: value for key, value in program.environment.items() if key != "DISPLAY"}
    done = subprocess.run(program.command(), env=environment, capture_output=True, text=True, timeout=10, check=False)
    assert done.returncode == 1
    assert done.stderr.strip() == "Deskfellow needs an X11 display; none is set."


def test_nothing_is_painted_while_nothing_moves(desk, standing):
    box = desk.character("Batti").box
    wakes = lambda: sum(int(line.split()[1]) for task in  # noqa: E731
                        __import__("pathlib").Path(f"/proc/{standing.process.pid}/task").iterdir()
                        for line in (task / "status").read_text().splitlines()
                        if line.startswith("voluntary_ctxt_switches"))
    time.sleep(1)
    before = wakes()
    assert stays(lambda: desk.character("Batti").box == box, 1.0)
    time.sleep(1)
    assert wakes() - before < 40, "an idle Batti keeps waking up"
