"""Dhiru as a person meets him: real servers seen, filtered and stopped from his panel, and others left alone."""
import signal
import socket
import subprocess

import pyatspi
import pytest

from desk import stays, wait_for

PANEL = "Dhiru's watch"


class Server:
    """A real server in a project folder."""

    def __init__(self, folder, name, program="/usr/bin/python3"):
        self.folder = folder / name
        self.folder.mkdir()
        with socket.create_server(("127.0.0.1", 0)) as free:
            self.port = free.getsockname()[1]
        self.process = subprocess.Popen([program, "-m", "http.server", str(self.port), "--bind", "127.0.0.1"],
                                        cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.called = f"python3, port {self.port}"

    def alive(self):
        return self.process.poll() is None

    def end(self):
        self.process.kill()
        self.process.wait()


@pytest.fixture
def servers(tmp_path):
    """Makes servers, which end with the test."""
    made = []

    def make(name, **more):
        made.append(Server(tmp_path, name, **more))
        wait_for("the server answering", lambda: answers(made[-1].port))
        return made[-1]
    yield make
    for server in made:
        server.end()


def answers(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


class Dhiru:
    """Dhiru on the desktop with his panel open."""

    def __init__(self, desk, program):
        self.desk, self.program = desk, program

    def start(self):
        self.program.write_preferences({"collection.settingsVersion": 2, "collection.onScreen": ["devwatch"],
                                        "collection.activeCharacter": "devwatch"})
        self.program.start(shows="Dhiru")
        self.program.again("deskfellow://do/devwatch/open")
        panel = wait_for("the panel", lambda: self.desk.character(PANEL))
        wait_for("the keyboard", lambda: self.desk.active_window() == panel.window.id)
        return self

    def named(self, start):
        """The first visible control whose name begins so, or None."""
        try:
            for application in pyatspi.Registry.getDesktop(0):
                if application is not None and application.get_process_id() == self.program.process.pid:
                    for node in self.program._tree(application):
                        if node.name.startswith(start) and node.getState().contains(pyatspi.STATE_SHOWING):
                            return node
        except Exception:  # the tree changed while we walked it
            pass
        return None

    def waits_for(self, start):
        return wait_for(f"something named {start!r}", lambda: self.named(start))

    def click(self, start):
        """Clicks a control with the mouse once it can be pressed."""
        def sensitive():
            node = self.named(start)
            return node and node.getState().contains(pyatspi.STATE_SENSITIVE) and node
        box = wait_for(f"{start!r} being ready", sensitive).queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.desk.mouse.click(box.x + box.width / 2, box.y + box.height / 2)

    def focused(self):
        """The name of what has the keyboard."""
        for application in pyatspi.Registry.getDesktop(0):
            if application is not None and application.get_process_id() == self.program.process.pid:
                for node in self.program._tree(application):
                    is_tab = node.getRoleName() == "page tab"  # the chosen one says so wherever the keyboard is
                    if node.getState().contains(pyatspi.STATE_FOCUSED) and node.name and not is_tab:
                        return node.name
        return ""

    def key_until(self, key, start, most=20):
        """Presses a key until something so named has the keyboard."""
        for _ in range(most):
            if self.focused().startswith(start):
                return
            self.desk.mouse.keys(key)
            stays(lambda: True, 0.12)
        assert self.focused().startswith(start), f"{key} never reached {start!r}, but {self.focused()!r}"


@pytest.fixture
def dhiru(desk, program):
    yield Dhiru(desk, program)
    program.stop()
    wait_for("the desktop being empty", lambda: not desk.character("Dhiru"))


def test_a_server_is_seen_filtered_and_stopped_by_mouse(desk, dhiru, servers):
    shop, other = servers("shop"), servers("invoices")
    dhiru.start()
    row = dhiru.waits_for(shop.called)
    assert "project shop" in row.name and "Dev server" in row.name
    dhiru.waits_for(other.called)
    for letter in "shop":
        desk.mouse.keys(letter)
    wait_for("the filter", lambda: not dhiru.named(other.called))
    assert dhiru.named(shop.called)
    dhiru.click(f"Stop {shop.called}")
    dhiru.waits_for(f"PID {shop.process.pid} · port {shop.port} · {shop.folder}")
    desk.shot("dhiru-question")
    assert shop.alive(), "the first press only asks"
    dhiru.click("Stop python3?, Stop")
    assert shop.process.wait(timeout=5) == -signal.SIGTERM
    wait_for("the row going", lambda: not dhiru.named(shop.called), 8)
    assert other.alive()


def test_a_server_is_stopped_by_keyboard_alone(desk, dhiru, servers):
    shop = servers("shop")
    other = servers("invoices")
    dhiru.start()
    dhiru.waits_for(shop.called)
    desk.mouse.keys("Tab")  # the lists
    desk.mouse.keys("Tab")  # the rows
    stays(lambda: True, 0.2)
    if not dhiru.focused().startswith(shop.called):
        dhiru.key_until("Down", shop.called)
    desk.mouse.keys("Delete")
    wait_for("the question", lambda: dhiru.focused() == "Keep")
    desk.mouse.keys("Escape")
    wait_for("being back", lambda: dhiru.focused() == f"Stop {shop.called}")
    desk.mouse.keys("Return")
    wait_for("the question", lambda: dhiru.focused() == "Keep")
    stays(lambda: True, 0.5)
    dhiru.key_until("Tab", "Stop python3?, Stop", 2)
    assert shop.alive()
    desk.mouse.keys("Return")
    assert shop.process.wait(timeout=5) == -signal.SIGTERM
    desk.mouse.keys("Escape")
    wait_for("the panel closing", lambda: not desk.character(PANEL))
    assert other.alive()


def test_what_is_not_to_be_touched_has_no_stop(desk, dhiru, servers, tmp_path):
    shell = tmp_path / "gnome-shell"
    shell.symlink_to("/usr/bin/python3")
    protected = servers("shell", program=str(shell))
    with socket.create_server(("127.0.0.1", 0)) as own:  # this process is the one that Dhiru descends from
        port = own.getsockname()[1]
        dhiru.start()
        dhiru.waits_for(f"gnome-shell, port {protected.port}")
        dhiru.waits_for(f"{open('/proc/self/comm', encoding='utf-8').read().strip()}, port {port}")
        assert dhiru.named(f"Open gnome-shell, port {protected.port}")
        for what in (f"gnome-shell, port {protected.port}", f", port {port}"):
            assert not dhiru.named(f"Stop {what}")
        row = dhiru.named(f"gnome-shell, port {protected.port}")
        assert row.description == "Your desktop session needs this one."
    assert protected.alive()


def test_an_application_is_quit_by_closing_its_windows(desk, dhiru):
    with subprocess.Popen(["xterm", "-T", "some work", "-e", "sleep", "60"], stderr=subprocess.DEVNULL) as terminal:
        try:
            wait_for("the terminal", lambda: desk.find("some work"))
            dhiru.start()
            dhiru.program.press("Applications, 1", "page tab")
            dhiru.click("Quit XTerm")
            dhiru.click("Quit XTerm?, Quit")
            terminal.wait(timeout=5)
            assert not desk.find("some work")
        finally:
            terminal.kill()


def test_keeping_awake_is_remembered(dhiru):
    dhiru.start()
    dhiru.program.press("Keep awake", "check box")
    wait_for("the wish being kept", lambda: dhiru.program.preferences().get("sprites.devwatch.keepAwake.v1") is True)
    dhiru.program.again("deskfellow://do/devwatch/awake")
    wait_for("the wish being dropped",
             lambda: dhiru.program.preferences().get("sprites.devwatch.keepAwake.v1") is False)
