"""What the tests of the media helper work with: the helper itself, and players for it to follow."""
import base64
import json
import os
import queue
import subprocess
import sys
import threading
import time
from pathlib import Path

HELPER = Path(os.environ["DESKFELLOW_BUILD"]) / "bin/fellow-media"
SCRIPTED = Path(__file__).parent / "scripted_player.py"
PATIENCE = 5.0  # seconds until something that should happen is said not to


class Process:
    """A child process and the lines it writes."""

    def __init__(self, arguments, reading=True):
        self.child = subprocess.Popen(arguments, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.lines = queue.Queue()
        if reading:
            self.start_reading()

    def start_reading(self):
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        for line in self.child.stdout:
            self.lines.put((time.monotonic(), line))

    def line(self, patience=PATIENCE):
        """The next line and when it came."""
        at, line = self.lines.get(timeout=patience)
        return at, line.decode()

    def write(self, text):
        self.child.stdin.write(text.encode())
        self.child.stdin.flush()

    def end(self):
        if self.child.stdin and not self.child.stdin.closed:
            self.child.stdin.close()
        try:
            return self.child.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self.child.kill()
            raise


class Player(Process):
    """A scripted player, see scripted_player.py."""

    def __init__(self, name, **properties):
        super().__init__([sys.executable, "-B", str(SCRIPTED)])
        self.called = []
        self.order(set=properties, own=name)

    def order(self, **orders):
        self.write(json.dumps(orders) + "\n")
        while (word := self.line()[1].strip()) != "done":
            self.called.append(word)

    def play(self, title, **fields):
        self.order(set={"PlaybackStatus": "Playing", "Metadata": song(title, **fields)})

    def wait_for_call(self, method):
        while method not in self.called:
            self.called.append(self.line()[1].strip())


class Follower(Process):
    """The helper, and the state that its lines add up to."""

    def __init__(self, reading=True):
        super().__init__([str(HELPER)], reading)
        self.state = {}
        self.history = []  # (when, whether a diff, payload)

    def take(self, patience=PATIENCE):
        at, text = self.line(patience)
        line = json.loads(text)
        assert line["type"] == "data"
        if not line["diff"]:
            self.state = {}
        self.state.update(line["payload"])
        self.state = {key: value for key, value in self.state.items() if value is not None}
        self.history.append((at, line["diff"], line["payload"]))

    def wait_for(self, **wanted):
        """Reads on until the state is as wanted; None is for what must not be there."""
        end = time.monotonic() + PATIENCE
        while any(self.state.get(key) != value for key, value in wanted.items()) or not self.history:
            try:
                self.take(max(0.01, end - time.monotonic()))
            except queue.Empty:
                raise AssertionError(f"waited for {wanted}, have {short(self.state)}") from None

    def stays(self, seconds=0.4, **wanted):
        """Whether nothing else is said for a while."""
        end = time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            try:
                self.take(left)
            except queue.Empty:
                pass
        return all(self.state.get(key) == value for key, value in wanted.items())

    def artwork(self):
        return base64.b64decode(self.state.get("artworkData", ""))

    def wakeups(self):
        """How often any of its threads has slept and gone on."""
        return sum(number(task / "status", "voluntary_ctxt_switches")
                   for task in Path(f"/proc/{self.child.pid}/task").iterdir())

    def memory(self):
        """Kilobytes, at this moment."""
        return number(Path(f"/proc/{self.child.pid}/status"), "VmRSS")


def number(status, field):
    return next(int(row.split()[1]) for row in status.read_text().splitlines() if row.startswith(field + ":"))


def song(title, **fields):
    names = {"artist": "xesam:artist", "art": "mpris:artUrl", "track": "mpris:trackid"}
    return {"xesam:title": title, **{names[key]: value for key, value in fields.items()}}


def short(state):
    return {key: value if len(str(value)) < 60 else f"{str(value)[:50]}..." for key, value in state.items()}
