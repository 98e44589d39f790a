"""Takes the pictures of docs/guide.md: each character idle, in use and in the settings, on two desktops."""
import json
import shutil
import socketserver
import subprocess
import sys
import tempfile
import threading
import time
from contextlib import contextmanager
from datetime import datetime, timezone
from http.server import BaseHTTPRequestHandler
from pathlib import Path

from PIL import Image, ImageDraw
from pyatspi import DESKTOP_COORDS

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests" / "desktop"))
from desk import SHOTS, Desk, Program, wait_for  # noqa: E402
from player import Player  # noqa: E402

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
        if self.character == "clock":
            look["LC_TIME"] = "en_IN.UTF-8"  # with am and pm, wherever the pictures are taken
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


CONTAINERS = [("shop-web-1", "nginx:1.27", 8080, "/home/u/shop"), ("shop-db-1", "postgres:16", 5432, "/home/u/shop"),
              ("invoices-api-1", "invoices-api:dev", 3000, "/home/u/invoices"), ("mailpit", "axllent/mailpit", 8025, None)]


class Engine(BaseHTTPRequestHandler):
    """As much of a container engine as lists what runs."""

    def do_GET(self):
        entries = [{"Id": f"{number:02x}" * 32, "Names": ["/" + name], "Image": image, "State": "running",
                    "Ports": [{"PublicPort": port, "PrivatePort": port, "Type": "tcp"}],
                    "Labels": {"com.docker.compose.project.working_dir": project} if project else {}}
                   for number, (name, image, port, project) in enumerate(CONTAINERS, start=17)]
        body = json.dumps(entries).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


@contextmanager
def developer(home):
    """What runs on a developer's machine: some real servers in project folders, and an engine with containers."""
    work = Path("/tmp/asha")  # of a length that people's folders have; its names can be read in the pictures
    work.mkdir()
    # What listens goes by the name that it was started by.
    servers = [("node", "shop", 5173), ("python3", "invoices", 8000), ("hugo", "blog", 1313)]
    running = []
    for name, project, port in servers:
        (work / project).mkdir()
        program = home / name
        program.symlink_to("/usr/bin/python3")
        running.append(subprocess.Popen([str(program), "-m", "http.server", str(port), "--bind", "127.0.0.1"],
                                        cwd=work / project, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
    place = home / ".docker" / "run" / "docker.sock"
    place.parent.mkdir(parents=True)
    engine = socketserver.ThreadingUnixStreamServer(str(place), Engine)
    threading.Thread(target=engine.serve_forever, daemon=True).start()
    try:
        yield
    finally:
        engine.shutdown()
        engine.server_close()
        for server in running:
            server.kill()
            server.wait()
        shutil.rmtree(work)


def dhiru(stage):
    with developer(stage.program.home):
        stage.link("do/devwatch/open", 2.5)
        servers = stage.standing(744, 560)
        stage.program.press("Stop node, port 5173")
        time.sleep(0.8)
        question = stage.standing(744, 560)
        stage.desk.mouse.keys("Escape")
        stage.desk.mouse.keys("Control_L", "4")
        time.sleep(0.8)
        containers = stage.standing(744, 560)
        stage.link("do/devwatch/open")
        return [servers, question, containers], stage.settings(860)


CITIES = ["America/New_York", "Europe/Paris", "Asia/Tokyo", "Australia/Sydney"]
CLOCKS = json.dumps({"homeTimeZoneIdentifier": "Asia/Kolkata", "cityIdentifiers": CITIES,
                     "pinnedTimeZoneIdentifiers": [CITIES[0], CITIES[2]], "defaultFacesApplied": True})


def clock(stage):
    idle = stage.standing(760, 520)
    stage.link("do/clock/open", 1.5)
    use = stage.standing(760, 520)
    for letter in "sao":
        stage.desk.mouse.keys(letter)
    search = stage.standing(760, 520)
    stage.desk.mouse.keys("Escape")
    slider = stage.program.accessible("Time of day at home").queryComponent().getExtents(DESKTOP_COORDS)
    stage.desk.mouse.click(slider.x + 0.35 * slider.width, slider.y + slider.height / 2)
    stage.desk.mouse.move(2, 2)
    save(side_by_side([search, stage.standing(760, 520)]), f"ghanta-ghar-search-{stage.theme}.png")
    stage.link("do/clock/open")
    return [idle, use], stage.settings(960)


def cover(path):
    """A picture that no one else has made."""
    picture = Image.new("RGB", (400, 400))
    for y in range(400):
        picture.paste((52 + y // 3, 36 + y // 5, 112 - y // 8), (0, y, 400, y + 1))
    draw = ImageDraw.Draw(picture)
    draw.ellipse((130, 90, 270, 230), fill=(250, 204, 96))
    draw.polygon([(0, 400), (0, 330), (130, 210), (290, 400)], fill=(58, 40, 82))
    draw.polygon([(150, 400), (310, 230), (400, 310), (400, 400)], fill=(92, 52, 96))
    picture.save(path)


def thumka(stage):
    time.sleep(302)  # no way round it: she dozes after five quiet minutes
    doze = stage.standing(420, 440)
    folder = stage.program.home / "music"
    folder.mkdir()
    cover(folder / "cover.png")
    with Player(folder, [("Raindrops on a Tin Roof", "Leela Menon")]):
        wait_for("the title", lambda: stage.desk.character("Raindrops on a Tin Roof"))
        time.sleep(1)
        dance = stage.standing(760, 440)
        stage.link("do/thumka/open", 1.0)
        return [doze, dance, stage.standing(760, 440)], stage.settings(820)


SCENES = {
    "clock": ("Ghanta Ghar", clock, {"clock.worldClocks.v1": CLOCKS}),
    "devwatch": ("Dhiru", dhiru, {}),
    "mira": ("Mira", mira, {}),
    "munshi": ("Munshi", munshi, {}),
    "pump": ("Pump", pump, {}),
    "snake": ("Snake", snake, {"snake.bestScore.v1": 23, "snake.speed.v1": 6}),
    "thumka": ("Thumka", thumka, {}),
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
    stem = name.lower().replace(" ", "-")
    forms = []
    for theme in GROUND:
        with Stage(desk, theme, character, name, preferences) as stage:
            pictures, form = scene(stage)
        if pictures[-1].width > 1000:  # the game, which fills the screen
            save(pictures[1], f"{stem}-use-{theme}.png")
            save(pictures[0], f"{stem}-idle-{theme}.png")
        else:
            save(side_by_side(pictures), f"{stem}-{theme}.png")
        forms.append(form)
    save(side_by_side(forms), f"{stem}-settings.png")


if __name__ == "__main__":
    the_desk = Desk()
    for wanted in sys.argv[1:] or SCENES:
        shoot(the_desk, wanted)
    print(json.dumps(sorted(str(p.name) for p in SHOTS.glob("*.png"))))
