"""The hands and eyes of the desktop tests: the program as a process, its windows, the mouse and the keyboard.

Positions on the screen are X11's: pixels, y downwards from the upper left corner.
"""
import json
import os
import signal
import subprocess
import time
from pathlib import Path

import pyatspi
from Xlib import X, XK
from Xlib.display import Display
from Xlib.ext import xtest

BUILD = Path(os.environ["DESKFELLOW_BUILD"])
SHOTS = Path(os.environ["DESKFELLOW_SHOTS"])
PATIENCE = 5.0  # seconds until something that should happen is said not to


def wait_for(what, condition, patience=PATIENCE):
    """The condition's first true answer; fails, naming `what`, when none comes in time."""
    end = time.monotonic() + patience
    while True:
        answer = condition()
        if answer:
            return answer
        assert time.monotonic() < end, f"{what} did not happen"
        time.sleep(0.02)


def stays(condition, seconds=0.4):
    """Whether the condition holds all the while."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            return False
        time.sleep(0.03)
    return True


class Mouse:
    """Real pointer and key events, by the XTEST extension."""

    def __init__(self, display):
        self.display = display

    def move(self, x, y):
        xtest.fake_input(self.display, X.MotionNotify, x=int(x), y=int(y))
        self.display.sync()

    def button(self, number, down):
        xtest.fake_input(self.display, X.ButtonPress if down else X.ButtonRelease, number)
        self.display.sync()

    def click(self, x, y, number=1):
        self.move(x, y)
        time.sleep(0.05)
        self.button(number, True)
        time.sleep(0.03)
        self.button(number, False)

    def drag(self, start, end, steps=25):
        self.move(*start)
        time.sleep(0.05)
        self.button(1, True)
        for step in range(1, steps + 1):
            share = step / steps
            self.move(start[0] + (end[0] - start[0]) * share, start[1] + (end[1] - start[1]) * share)
            time.sleep(0.008)
        self.button(1, False)

    def keys(self, *names):
        """Presses the keys together, as in keys("Control_L", "Alt_L", "b")."""
        codes = [self.display.keysym_to_keycode(XK.string_to_keysym(name)) for name in names]
        for code in codes:
            xtest.fake_input(self.display, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.display, X.KeyRelease, code)
        self.display.sync()

    def wheel(self, x, y, notches, holding="Control_L"):
        """Turns the wheel with a key held; positive is away from the user."""
        self.move(x, y)
        code = self.display.keysym_to_keycode(XK.string_to_keysym(holding))
        xtest.fake_input(self.display, X.KeyPress, code)
        for _ in range(abs(notches)):
            self.button(4 if notches > 0 else 5, True)
            self.button(4 if notches > 0 else 5, False)
        xtest.fake_input(self.display, X.KeyRelease, code)
        self.display.sync()


class Window:
    """One window of the program."""

    def __init__(self, window, title):
        self.window, self.title = window, title

    @property
    def box(self):
        """left, top, width, height on the screen."""
        geometry = self.window.get_geometry()
        place = self.window.translate_coords(geometry.root, 0, 0)
        return -place.x, -place.y, geometry.width, geometry.height

    @property
    def center(self):
        left, top, width, height = self.box
        return left + width / 2, top + height / 2


class Desk:
    """The desktop that all tests share."""

    def __init__(self):
        self.display = Display()
        self.root = self.display.screen().root
        self.mouse = Mouse(self.display)

    def windows(self):
        """All visible windows with a title, from the lowest to the topmost."""
        found = []
        for window in self.root.query_tree().children:
            found += self._titled(window)
        return found

    def _titled(self, window):
        try:
            if window.get_attributes().map_state != X.IsViewable:
                return []
            title = window.get_full_text_property(self.display.intern_atom("_NET_WM_NAME")) or window.get_wm_name()
            if title:
                return [Window(window, title)]
            # A window manager puts a frame around the window that has the title.
            return [inner for child in window.query_tree().children for inner in self._titled(child)]
        except Exception:  # the window went away while we looked
            return []

    def find(self, title):
        return next((window for window in self.windows() if window.title == title), None)

    def character(self, name):
        return self.find(f"{name} — Deskfellow")

    def pixel(self, x, y):
        """(red, green, blue) of one pixel of the screen."""
        image = self.root.get_image(int(x), int(y), 1, 1, X.ZPixmap, 0xFFFFFFFF)
        blue, green, red = image.data[0], image.data[1], image.data[2]
        return red, green, blue

    def active_window(self):
        value = self.root.get_full_property(self.display.intern_atom("_NET_ACTIVE_WINDOW"), X.AnyPropertyType)
        return value.value[0] if value else 0

    def shot(self, name):
        """Keeps a picture of the screen for whoever wants to look."""
        subprocess.run(["import", "-window", "root", str(SHOTS / f"{name}.png")], check=False)


class Program:
    """The real program with a home of its own."""

    def __init__(self, desk, home):
        self.desk, self.home, self.process = desk, Path(home), None
        self.log_file = self.home / "log.txt"
        for folder in ("config", "data", "cache", "run"):
            (self.home / folder).mkdir(parents=True, exist_ok=True)
        (self.home / "run").chmod(0o700)

    @property
    def environment(self):
        return {**os.environ, "HOME": str(self.home), "XDG_CONFIG_HOME": str(self.home / "config"),
                "XDG_DATA_HOME": str(self.home / "data"), "XDG_CACHE_HOME": str(self.home / "cache"),
                "XDG_RUNTIME_DIR": str(self.home / "run")}

    def command(self, *arguments):
        return [str(BUILD / "bin" / "deskfellow"), "--mute-interface-for-testing", *arguments]

    def start(self, *arguments, shows="Batti", **environment):
        with open(self.log_file, "ab") as log:
            self.process = subprocess.Popen(self.command(*arguments), env={**self.environment, **environment},
                                            stdout=log, stderr=log)
        if shows:
            wait_for(f"{shows} coming on the desktop", lambda: self.desk.character(shows))
            time.sleep(0.25)  # the first picture and the services that start behind it
        return self

    def again(self, *arguments):
        """A second start while the first runs; its exit status."""
        return subprocess.run(self.command(*arguments), env=self.environment, timeout=10, check=False).returncode

    def stop(self, number=signal.SIGTERM):
        """Ends the program; its exit status."""
        if self.process is None:
            return None
        if self.process.poll() is None:
            self.process.send_signal(number)
        try:
            return self.process.wait(timeout=10)
        finally:
            self.process.kill()
            self.process = None

    def alive(self):
        return self.process is not None and self.process.poll() is None

    @property
    def preferences_file(self):
        return self.home / "config" / "deskfellow" / "preferences.json"

    def preferences(self):
        return json.loads(self.preferences_file.read_text()) if self.preferences_file.exists() else {}

    def write_preferences(self, values):
        self.preferences_file.parent.mkdir(parents=True, exist_ok=True)
        self.preferences_file.write_text(json.dumps(values))

    @property
    def timer_file(self):
        return self.home / "data" / "DeskSprites" / "sprites" / "batti" / "focus-timer.json"

    def timer(self):
        return json.loads(self.timer_file.read_text())

    def log(self):
        return self.log_file.read_text(errors="replace")

    # What assistive technology sees and presses.

    def _tree(self, node, depth=0):
        yield node
        if depth < 14:
            for child in node:
                if child is not None:
                    yield from self._tree(child, depth + 1)

    def accessible(self, name, role=None):
        """The control with this name, or None."""
        try:
            for application in pyatspi.Registry.getDesktop(0):
                if application is None or application.get_process_id() != self.process.pid:
                    continue
                for node in self._tree(application):
                    if node.name == name and (role is None or node.getRoleName() == role):
                        if node.getState().contains(pyatspi.STATE_VISIBLE):
                            return node
        except Exception:  # the tree changed while we walked it
            pass
        return None

    def press(self, name, role=None):
        """Presses a control by its accessible name."""
        def pressed():
            node = self.accessible(name, role)
            try:
                return node is not None and node.queryAction().doAction(0)
            except Exception:  # the control was made anew between finding and pressing
                return False
        wait_for(f"pressing a control named {name!r}", pressed)

    def choose(self, button, place):
        """Opens the menu behind a button and takes its entry number `place`, counted from 0, by keyboard."""
        self.press(button)
        time.sleep(0.3)
        for _ in range(place + 1):
            self.desk.mouse.keys("Down")
        self.desk.mouse.keys("Return")
