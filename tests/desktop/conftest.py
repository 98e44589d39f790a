import subprocess

import dbusmock
import pytest

from desk import Desk, Program, wait_for


@pytest.fixture(scope="session")
def desk():
    return Desk()


@pytest.fixture
def program(desk, tmp_path):
    """The program, not started yet; ended after the test whatever happened."""
    desk.mouse.move(5, 5)
    program = Program(desk, tmp_path)
    yield program
    program.stop()
    wait_for("the desktop being empty again", lambda: not desk.character("Batti"))


@pytest.fixture
def standing(program):
    """The program with Batti on the desktop."""
    return program.start()


@pytest.fixture
def under(desk):
    """A window of another program that covers the whole screen and counts the clicks it gets."""
    process = subprocess.Popen(["xev", "-geometry", "1600x1000+0+0", "-event", "button"], stdout=subprocess.PIPE,
                               text=True)
    wait_for("the window below", lambda: desk.find("Event Tester"))
    yield process
    process.kill()
    process.wait()


@pytest.fixture(scope="session")
def logind():
    """A logind that does what it is told, on a private system bus."""
    dbusmock.DBusTestCase.setUpClass()
    dbusmock.DBusTestCase.start_system_bus()
    bus = dbusmock.DBusTestCase.get_dbus(True)
    process, manager = dbusmock.DBusTestCase.spawn_server_template("logind", {}, stdout=subprocess.DEVNULL)
    yield bus, manager
    process.terminate()
    process.wait()
    dbusmock.DBusTestCase.tearDownClass()
