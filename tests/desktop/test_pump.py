"""Pump as a person meets it: from an agent's hook to the cue and the terminal, the panel, and the settings."""
import json
import subprocess
import time

import pyatspi
import pytest

from desk import BUILD, stays, wait_for

SETTINGS = '{\n  "model" : "opus",\n  "hooks": {}\n}\n'


class Pump:
    """Pump on the desktop, with a home in which an agent writes."""

    def __init__(self, desk, program):
        self.desk, self.program = desk, program
        self.settings = program.home / ".claude" / "settings.json"
        self.support = program.home / "data" / "Deskfellow"

    def start(self, **environment):
        self.program.write_preferences({"sprites.activeCharacter": "batti"})
        self.program.start(**environment)
        assert self.program.again("deskfellow://select/pump") == 0
        wait_for("Pump coming on the desktop", lambda: self.desk.character("Pump"))
        time.sleep(0.3)

    def hook(self, event, session="s1", **more):
        """Runs the installed hook as the agent would."""
        command = json.loads(self.settings.read_text())["hooks"]["Stop"][0]["hooks"][0]["command"]
        document = {"hook_event_name": event, "session_id": session, "cwd": "/home/u/parser", **more}
        done = subprocess.run(["/bin/sh", "-c", command], input=json.dumps(document).encode(), timeout=10,
                              env=self.program.environment, capture_output=True, check=False)
        assert (done.returncode, done.stdout, done.stderr) == (0, b"", b"")

    def connect(self):
        self.settings.parent.mkdir(exist_ok=True)
        self.settings.write_text(SETTINGS)
        self.program.again("deskfellow://settings/pump")
        self.program.press("Claude Code: Connect")
        wait_for("the hooks being connected", lambda: self.program.accessible("Claude Code: Disconnect"))

    def asks(self, session="s1"):
        self.hook("Notification", session, notification_type="permission_prompt")


@pytest.fixture
def pump(desk, program):
    pump = Pump(desk, program)
    pump.start()
    return pump


def test_a_hook_brings_the_cue_and_its_answer_takes_it_away(desk, pump):
    pump.connect()
    desk.mouse.keys("Escape")
    pump.asks()
    wait_for("the cue", lambda: desk.character("Claude needs you"))
    desk.shot("pump-cue")
    node = pump.program.accessible("Pump")
    assert "Claude needs you" in node.description + node.get_description()
    pump.hook("UserPromptSubmit")
    wait_for("the cue going", lambda: not desk.character("Claude needs you"))


def test_a_click_on_pump_puts_the_cue_away_and_opens_nothing(desk, pump):
    pump.connect()
    pump.asks()
    wait_for("the cue", lambda: desk.character("Claude needs you"))
    desk.mouse.click(*desk.character("Pump").center)
    wait_for("the cue going", lambda: not desk.character("Claude needs you"))
    assert stays(lambda: not desk.character("Pump, quick actions"), 0.3), "the quick actions stay closed"


def test_the_button_of_the_cue_leads_to_the_terminal(desk, pump, tmp_path):
    pump.connect()
    with subprocess.Popen(["xterm", "-T", "the session", "-e", "sh", "-c", f"tty > {tmp_path}/tty; exec sleep 60"]) as terminal:
        try:
            wait_for("the terminal", lambda: desk.find("the session") and (tmp_path / "tty").exists())
            event = {"agent": "claude", "event": "needs_you", "session_id": "s2", "ts": time.time(),
                     "terminal_bundle_id": "debian-xterm.desktop", "cwd": "/home/u/parser",
                     "tty": (tmp_path / "tty").read_text().strip()}
            pump.program.again("deskfellow://settings/pump")
            wait_for("the settings in front", lambda: desk.active_window() != desk.find("the session").window.id)
            with open(pump.support / "agent-events.jsonl", "a", encoding="utf-8") as file:
                file.write(json.dumps(event) + "\n")
            wait_for("the cue", lambda: desk.character("Claude needs you in parser"))
            pump.program.press("Return to this session’s tab or project")
            wait_for("the terminal in front", lambda: desk.active_window() == desk.find("the session").window.id)
            assert not desk.character("Claude needs you in parser")
        finally:
            terminal.kill()


def test_the_panel_by_keyboard(desk, pump):
    pump.connect()
    pump.hook("UserPromptSubmit", "one")
    assert pump.program.again("deskfellow://do/pump/open") == 0
    panel = wait_for("the panel", lambda: desk.character("Pump's gauge"))
    wait_for("the session", lambda: pump.program.accessible("Claude is working"))
    wait_for("the keyboard", lambda: desk.active_window() == panel.window.id)
    desk.shot("pump-panel")
    for text in ("No usage logs", "Use Claude Code to log usage", "No limit logged"):
        assert pump.program.accessible(text), text
    focused = set()
    for _ in range(4):
        focused |= focused_names(pump.program)
        desk.mouse.keys("Tab")
        time.sleep(0.1)
    assert {"Claude is working", "Close", "Refresh usage now"} <= focused
    desk.mouse.keys("Escape")
    wait_for("the panel closing", lambda: not desk.character("Pump's gauge"))


def focused_names(program):
    """Whatever says that it has the focus, in any window of the program."""
    names = set()
    for application in pyatspi.Registry.getDesktop(0):
        if application is not None and application.get_process_id() == program.process.pid:
            names |= {node.name for node in program._tree(application)
                      if node.getState().contains(pyatspi.STATE_FOCUSED)}
    return names


def test_settings_give_back_every_byte(desk, pump):
    pump.connect()
    assert pump.settings.read_text() != SETTINGS
    pump.program.press("Claude Code status line: Connect")
    wait_for("the status line", lambda: "statusline" in pump.settings.read_text())
    desk.shot("pump-settings")
    script = json.loads(pump.settings.read_text())["statusLine"]["command"]
    later = int(time.time()) + 3600
    limits = {"rate_limits": {"five_hour": {"used_percentage": 37, "resets_at": later},
                              "seven_day": {"used_percentage": 61}}, "model": {"display_name": "Opus"}}
    shown = subprocess.run(["/bin/sh", "-c", script], input=json.dumps(limits).encode(), capture_output=True,
                           env=pump.program.environment, timeout=10, check=True)
    assert shown.stdout == b"Opus"
    pump.program.press("Refresh usage now")
    wait_for("the exact reading", lambda: pump.program.accessible("Claude: 63% left"))
    pump.program.press("Claude Code: Disconnect")
    wait_for("the hooks being out", lambda: pump.program.accessible("Claude Code: Connect"))
    pump.program.press("Claude Code status line: Disconnect")
    wait_for("the status line being out", lambda: pump.program.accessible("Claude Code status line: Connect"))
    assert pump.settings.read_text() == SETTINGS


def test_the_command_line_tells_the_same(pump):
    pump.connect()
    pump.asks()

    def fellow(*words):
        return subprocess.run([str(BUILD / "bin" / "fellow"), *words], env=pump.program.environment, timeout=20,
                              capture_output=True, text=True, check=True).stdout
    session, = json.loads(fellow("sessions", "--json"))
    assert (session["agent"], session["phase"], session["cwd"]) == ("claude", "needs_you", None)
    assert "nothing logged" in fellow("usage")
