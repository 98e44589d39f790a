"""Takes the pictures of docs/guide.md: each character idle, in use and in the settings, on two desktops."""
import json
import subprocess
import sys
import tempfile
import time
from datetime import datetime, timezone
from pathlib import Path

from PIL import Image

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests" / "desktop"))
from desk import SHOTS, Desk, Program, wait_for  # noqa: E402

WIDTH, HEIGHT = 1600, 1200
GROUND = {"light": "#d7dde0", "dark": "#23262e"}
# What a desktop tells its programs when its user likes it dark, in the form that Plasma keeps.
DARK_COLOURS = """
[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
"""


class Stage:
    """One run of the program with one character, on one of the two desktops."""

    def __init__(self, desk, theme, character, name, preferences):
        self.desk, self.theme, self.character, self.name = desk, theme, character, name
        subprocess.run(["hsetroot", "-solid", GROUND[theme]], check=True)
        self.folder = tempfile.TemporaryDirectory()
        self.program = Program(desk, self.folder.name)
        self.program.write_preferences({"collection.settingsVersion": 2, "collection.onScreen": [character],
                                        "collection.activeCharacter": character, **preferences})

    def __enter__(self):
        look = {}
        if self.theme == "dark":
            (self.program.home / "config" / "kdeglobals").write_text(DARK_COLOURS)
            look = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}
        if self.character == "pump":
            agents(self.program.home)
        self.desk.mouse.move(2, 2)
        self.program.start(shows=self.name, **look)
        return self

    def __exit__(self, *_):
        self.program.stop()
        wait_for("the desktop being empty", lambda: not self.desk.character(self.name))
        self.folder.cleanup()

    def data(self, *parts):
        return self.program.home / "data" / "DeskSprites" / "sprites" / Path(*parts)

    def link(self, path, pause=0.6):
        assert self.program.again("deskfellow://" + path) == 0
        time.sleep(pause)

    def take(self, box=None):
        time.sleep(0.3)
        file = SHOTS / "raw.png"
        subprocess.run(["import", "-window", "root", str(file)], check=True)
        with Image.open(file) as picture:
            copy = picture.convert("RGB").crop(box) if box else picture.convert("RGB")
        file.unlink()
        return copy

    def standing(self, width=640, height=400):
        """The lower right of the desktop, where a character stands that nobody has moved."""
        return self.take((WIDTH - width, HEIGHT - height, WIDTH, HEIGHT))

    def settings(self, height):
        self.link("settings/" + self.character, 1.0)
        window = wait_for("the settings", lambda: self.desk.find("Deskfellow"))
        subprocess.run(["xdotool", "windowmove", str(window.window.id), "0", "24", "windowsize", str(window.window.id),
                        "820", str(height)], check=True)
        time.sleep(0.5)
        left, top, width, height = (int(side) for side in window.box)
        return self.take((left, top, left + width, top + height))


def mira(stage):
    idle = stage.standing(760, 440)
    stage.link("do/mira/primary", 6.0)
    use = stage.standing(760, 440)
    stage.link("do/mira/end")
    return [idle, use], stage.settings(1140)


def munshi(stage):
    ledger = [str(stage.program.command()[0]).replace("deskfellow", "fellow"), "ledger", "add"]
    idle = stage.standing(760, 520)
    for line in ("Send the lease to Leela", "Book the train to Pune", "- the plumber comes at four",
                 "Read the second draft"):
        subprocess.run([*ledger, line], env=stage.program.environment, check=True, capture_output=True)
    subprocess.run([*ledger[:-1], "done", "3"], env=stage.program.environment, check=True, capture_output=True)
    time.sleep(1)
    stage.link("do/munshi/open")
    use = stage.standing(760, 520)
    return [idle, use], stage.settings(820)


def snake(stage):
    idle = stage.standing(760, 440)
    stage.link("do/snake/play", 1.2)
    stage.desk.mouse.keys("Up")
    time.sleep(0.8)
    stage.desk.mouse.keys("Left")
    time.sleep(0.9)
    use = stage.take()
    stage.desk.mouse.keys("Escape")
    time.sleep(0.5)
    return [idle, use], stage.settings(860)


def hook_line(agent, event, session, project):
    return json.dumps({"agent": agent, "event": event, "session_id": session, "ts": time.time(), "cwd": project,
                       "terminal_bundle_id": "debian-xterm.desktop"}) + "\n"


def agents(home):
    """What two agents leave behind: a limit of one, some use of the other, and both connected."""
    now = datetime.now(timezone.utc)
    stamp = now.isoformat(timespec="milliseconds").replace("+00:00", "Z")
    claude = home / ".claude" / "projects" / "deskfellow"
    codex = home / ".codex" / "sessions"
    claude.mkdir(parents=True)
    codex.mkdir(parents=True)
    usage = {"input_tokens": 12400, "output_tokens": 4100}
    (claude / "one.jsonl").write_text(json.dumps({"timestamp": stamp, "type": "assistant", "message": {
        "id": "m1", "role": "assistant", "usage": usage}}) + "\n")
    limit = {"used_percent": 24.0, "window_minutes": 300, "resets_at": int(now.timestamp()) + 7000}
    (codex / "rollout-1.jsonl").write_text(json.dumps({"timestamp": stamp, "type": "event_msg", "payload": {
        "type": "token_count", "rate_limits": {"primary": limit, "plan_type": "plus"}}}) + "\n")


def pump(stage):
    stage.link("settings/pump", 1.0)
    stage.program.press("Include project name", "check box")
    for button in ("Claude Code: Connect", "Codex: Connect"):
        stage.program.press(button)
        time.sleep(0.6)
    form = stage.settings(1140)
    idle = stage.standing(760, 620)
    events = stage.program.home / "data" / "Deskfellow" / "agent-events.jsonl"
    events.parent.mkdir(parents=True, exist_ok=True)
    lines = hook_line("codex", "done", "b", "/home/u/parser") + hook_line("claude", "working", "a", "/home/u/deskfellow")
    for text in (lines, lines + hook_line("claude", "needs_you", "c", "/home/u/invoices")):
        events.with_suffix(".new").write_text(text)
        events.with_suffix(".new").rename(events)
        time.sleep(1.2)
    cue = stage.standing(760, 620)
    stage.link("do/pump/open", 1.0)
    return [idle, cue, stage.standing(760, 620)], form


SCENES = {
    "mira": ("Mira", mira, {}),
    "munshi": ("Munshi", munshi, {}),
    "pump": ("Pump", pump, {}),
    "snake": ("Snake", snake, {"snake.bestScore.v1": 23, "snake.speed.v1": 6}),
}


def side_by_side(pictures, gap=12):
    height = max(picture.height for picture in pictures)
    sheet = Image.new("RGB", (sum(p.width for p in pictures) + gap * (len(pictures) - 1), height), "white")
    left = 0
    for picture in pictures:
        sheet.paste(picture, (left, 0))
        left += picture.width + gap
    return sheet


def save(picture, name):
    # The art has few colours; a palette keeps the pictures small and every pixel of the art as it is.
    picture.quantize(256, dither=Image.Dither.NONE).save(SHOTS / name, optimize=True)


def shoot(desk, character):
    name, scene, preferences = SCENES[character]
    forms = []
    for theme in GROUND:
        with Stage(desk, theme, character, name, preferences) as stage:
            pictures, form = scene(stage)
        if pictures[-1].width > 1000:  # the game, which fills the screen
            save(pictures[1], f"{character}-use-{theme}.png")
            save(pictures[0], f"{character}-idle-{theme}.png")
        else:
            save(side_by_side(pictures), f"{character}-{theme}.png")
        forms.append(form)
    save(side_by_side(forms), f"{character}-settings.png")


if __name__ == "__main__":
    the_desk = Desk()
    for wanted in sys.argv[1:] or SCENES:
        shoot(the_desk, wanted)
    print(json.dumps(sorted(str(p.name) for p in SHOTS.glob("*.png"))))
