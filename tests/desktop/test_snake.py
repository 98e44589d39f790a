"""Snake's game as a person plays it: by keyboard alone, by mouse, and beside other programs."""
import subprocess
import time

import pytest

from desk import stays, wait_for

GAME = "Snake game — Deskfellow"
SKIN = (112, 164, 70)
EYE = (32, 20, 26)


@pytest.fixture
def snake(desk, program):
    """The program with Snake and Batti on the desktop, a slow game and a known best score."""
    program.write_preferences({"collection.settingsVersion": 2, "collection.onScreen": ["batti", "snake"],
                               "collection.activeCharacter": "snake", "snake.bestScore.v1": 23, "snake.speed.v1": 5,
                               "snake.rampAsEating.v1": False})
    program.start(shows="Snake")
    yield program
    program.stop()
    wait_for("the desktop being empty again", lambda: not desk.character("Snake") and not desk.find(GAME))


@pytest.fixture
def work(desk):
    """Another program's window that has the keyboard."""
    process = subprocess.Popen(["xev", "-geometry", "500x300+60+60", "-event", "keyboard"], stdout=subprocess.DEVNULL)
    window = wait_for("the other window", lambda: desk.find("Event Tester"))
    wait_for("the other window having the keyboard", lambda: desk.active_window() == window.window.id)
    yield window
    process.kill()
    process.wait()


def playing(desk):
    game = desk.find(GAME)
    return game if game is not None and desk.active_window() == game.window.id else None


def play(desk, program):
    assert program.again("deskfellow://do/snake/play") == 0
    return wait_for("the game having the keyboard", lambda: playing(desk))


def head(desk):
    """Where her eyes are, in the middle between the two; None while nothing like it is on the board."""
    image = desk.root.get_image(0, 64, 1600, 870, 2, 0xFFFFFFFF).data
    want = bytes((EYE[2], EYE[1], EYE[0]))
    found, start = [], image.find(want)
    while start >= 0:
        if start % 4 == 0:
            found.append((start // 4 % 1600, start // 4 // 1600 + 64))
        start = image.find(want, start + 1)
    if not found:
        return None
    return sum(x for x, _ in found) / len(found), sum(y for _, y in found) / len(found)


def card(program, title):
    return wait_for(f"the card {title!r}", lambda: program.accessible(title, "label"))


def click(desk, program, name):
    node = wait_for(f"a button {name!r}", lambda: program.accessible(name))
    place = node.queryComponent().getExtents(0)
    desk.mouse.click(place.x + place.width / 2, place.y + place.height / 2)


def test_a_game_by_keyboard_alone(desk, work, snake):
    snake.press("Snake")
    button = wait_for("the quick actions", lambda: snake.accessible("Play"))
    assert button.description == "Play on Snake’s screen. Avoid walls and yourself."
    snake.press("Play")
    wait_for("the game having the keyboard", lambda: playing(desk))
    assert desk.character("Snake") is None and desk.character("Batti") is None, "nobody stands on the board"
    node = snake.accessible("Snake game, best score 23")
    assert node.description == ("Arrow keys or W A S D to move. Plus and minus change speed. "
                                "Space to pause or resume. Escape to quit.")

    first = wait_for("her head", lambda: head(desk))
    desk.mouse.keys("Up")
    wait_for("going up", lambda: (now := head(desk)) and now[1] < first[1] - 40)
    desk.shot("snake-playing")
    desk.mouse.keys("space")
    card(snake, "Paused")
    rests = head(desk)
    assert stays(lambda: head(desk) == rests)
    desk.shot("snake-paused")
    desk.mouse.keys("minus")
    wait_for("the speed being kept", lambda: snake.preferences()["snake.speed.v1"] == 4)
    desk.mouse.keys("space")
    desk.mouse.keys("a")
    wait_for("going left", lambda: (now := head(desk)) and now[0] < rests[0] - 40)
    desk.mouse.keys("Up")

    card(snake, "Game over")
    desk.shot("snake-over")
    desk.mouse.keys("Return")
    wait_for("a new game", lambda: snake.accessible("Game over", "label") is None and head(desk))
    desk.mouse.keys("Escape")
    wait_for("the earlier window having the keyboard", lambda: desk.active_window() == work.window.id)
    wait_for("everyone being back", lambda: desk.character("Snake") and desk.character("Batti"))
    assert snake.preferences()["collection.onScreen"] == ["batti", "snake"]


def test_a_game_by_mouse(desk, snake):
    left, top, width, height = desk.character("Snake").box
    desk.mouse.click(left + width * 0.5, top + height * 0.8)
    click(desk, snake, "Play")
    wait_for("the game having the keyboard", lambda: playing(desk))
    time.sleep(0.4)
    desk.mouse.click(300, 800)
    card(snake, "Paused")
    desk.mouse.click(300, 800)
    wait_for("going on", lambda: snake.accessible("Paused", "label") is None)
    card_title = "Game over"
    wait_for("the wall", lambda: snake.accessible(card_title, "label"), patience=12)
    click(desk, snake, "Play again")
    wait_for("a new game", lambda: snake.accessible(card_title, "label") is None)
    desk.mouse.click(300, 800)
    card(snake, "Paused")
    click(desk, snake, "Leave")
    wait_for("the game going", lambda: desk.find(GAME) is None and desk.character("Snake"))


def test_working_elsewhere_pauses_and_the_game_waits(desk, snake, work):
    play(desk, snake)
    subprocess.run(["xdotool", "windowactivate", str(work.window.id)], check=True)
    wait_for("the other window having the keyboard", lambda: desk.active_window() == work.window.id)
    wait_for("everyone being back", lambda: desk.character("Snake") and desk.character("Batti"))
    assert stays(lambda: desk.find(GAME) is not None)
    snake.press("Snake")
    snake.press("Back to the game")
    wait_for("the game having the keyboard", lambda: playing(desk))
    card(snake, "Paused")
    desk.mouse.keys("space")
    wait_for("going on", lambda: snake.accessible("Paused", "label") is None)


@pytest.mark.parametrize("how", ["hiding", "quitting"])
def test_what_ends_the_game_leaves_nothing_behind(desk, snake, work, how):
    play(desk, snake)
    if how == "hiding":
        desk.mouse.keys("Control_L", "Alt_L", "b")
        wait_for("everyone being hidden", lambda: not desk.character("Snake") and desk.find(GAME) is None)
        wait_for("the earlier window having the keyboard", lambda: desk.active_window() == work.window.id)
        desk.mouse.keys("Control_L", "Alt_L", "b")
        wait_for("everyone being back", lambda: desk.character("Snake") and desk.character("Batti"))
        assert stays(lambda: desk.find(GAME) is None)
    else:
        assert snake.stop() == 0
        assert desk.find(GAME) is None
    assert snake.preferences()["snake.bestScore.v1"] == 23


def test_her_settings_count_at_once_and_the_best_score_goes_only_when_asked_twice(desk, snake):
    snake.again("deskfellow://settings/snake")
    speed = wait_for("the speed", lambda: snake.accessible("Speed", "slider"))
    speed.queryValue().currentValue = 9
    wait_for("the speed being kept", lambda: snake.preferences()["snake.speed.v1"] == 9)
    snake.press("Speed up as she eats", "check box")
    wait_for("the ramp being kept", lambda: snake.preferences()["snake.rampAsEating.v1"] is True)
    desk.shot("snake-settings")
    snake.press("Reset best score…")
    snake.press("Keep it")
    assert snake.preferences()["snake.bestScore.v1"] == 23
    snake.press("Reset best score…")
    snake.press("Reset it")
    wait_for("the best score going", lambda: "snake.bestScore.v1" not in snake.preferences())
