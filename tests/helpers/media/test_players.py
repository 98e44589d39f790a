"""Who is followed: real and scripted players that come, play, change and go."""
import os
import signal
import subprocess
import sys
import time
from pathlib import Path

from media import HELPER, PATIENCE, Follower, Player, Process, song

SOUNDS = Path(__file__).parents[3] / "data/sounds"
MPV = ["mpv", "--no-config", "--script=/etc/mpv/scripts/mpris.so", "--ao=null", "--idle=yes", "--loop-playlist", "--no-terminal"]


def test_real_player_is_followed_and_driven(start, follower):
    """mpv with its MPRIS plug-in, from before it is there until after it has quit."""
    follower.wait_for(title=None)
    assert follower.history[0][1:] == (False, {}), "the first line is the whole state"

    files = [str(SOUNDS / "breath-in.wav"), str(SOUNDS / "breath-out.wav")]
    mpv = start(Process, MPV + files)
    follower.wait_for(title="breath-in.wav", playing=True, bundleIdentifier="mpv", canGoNext=True, canPlayPause=True,
                      displayName="mpv")

    follower.write("play-pause\n")
    follower.wait_for(playing=False)
    assert follower.state["title"].startswith("breath-")
    here = follower.state["title"]
    follower.write("next\n")
    follower.wait_for(title="breath-out.wav" if here == "breath-in.wav" else "breath-in.wav", playing=False)
    follower.write("previous\n")
    follower.wait_for(title=here)
    follower.write("play-pause\n")
    follower.wait_for(playing=True)

    mpv.child.terminate()
    follower.wait_for(title=None, playing=None)
    assert follower.state == {}, "what a player said goes with it"


def test_metadata_that_come_late_are_awaited(start, follower):
    player = start(Player, "late", PlaybackStatus="Playing", Metadata={})
    follower.wait_for(title=None)
    assert follower.stays(title=None)
    player.order(quietly={"Metadata": song("Asked For")})
    follower.wait_for(title="Asked For", playing=True)
    player.order(set={"Metadata": song("Told", artist=["A", "B"], track="/1")})
    follower.wait_for(title="Told", artist="A, B", contentItemIdentifier="/1")
    player.order(set={"Metadata": song("Only a title")})
    follower.wait_for(title="Only a title", artist=None, contentItemIdentifier=None, playing=True)


def test_who_plays_is_shown_else_who_played_last(start, follower):
    first = start(Player, "first", CanPlay=True, CanPause=True, CanRaise=True)
    second = start(Player, "second", CanPlay=True, CanPause=True, Identity="Second Player")
    first.play("One")
    follower.wait_for(title="One", bundleIdentifier="first")
    second.play("Two")
    follower.wait_for(title="Two", displayName="Second Player", canRaise=False)
    second.order(set={"PlaybackStatus": "Paused"})
    follower.wait_for(title="One", playing=True, canRaise=True)
    first.order(set={"PlaybackStatus": "Paused"})
    follower.wait_for(title="One", playing=False)

    follower.write("bogus\nraise\nnext\nplay-pause\n")
    first.wait_for_call("PlayPause")
    assert first.called == ["Raise", "PlayPause"], "it had said that it cannot go to the next"

    first.end()
    follower.wait_for(title="Two", playing=False)
    second.child.kill()
    follower.wait_for(title=None)
    assert second.called == []


def test_proxies_and_second_names_are_nobody(start, follower):
    proxy = start(Player, "playerctld")
    proxy.play("Passed on")
    follower.wait_for(title=None)
    assert follower.stays(title=None)
    player = start(Player, "vlc.instance77")
    player.order(own="vlc")
    player.play("Own")
    follower.wait_for(title="Own", bundleIdentifier="vlc")
    player.order(release="vlc.instance77")
    assert follower.stays(title="Own", bundleIdentifier="vlc"), "it is still there by its other name"
    player.order(release="vlc")
    follower.wait_for(title=None)


def test_browser_and_its_add_on_are_one(start, follower):
    browser = start(Player, "firefox.instance_1_5", DesktopEntry="firefox")
    browser.play("Video", artist=["Channel"], track="/browser")
    follower.wait_for(title="Video", contentItemIdentifier="/browser")
    add_on = start(Player, "plasma-browser-integration", DesktopEntry="firefox")
    add_on.play("Video", artist=["Channel"], track="/addon")
    assert follower.stays(contentItemIdentifier="/browser")
    browser.end()
    follower.wait_for(contentItemIdentifier=None)
    assert follower.state["title"] == "Video" and follower.state["bundleIdentifier"] == "firefox"


def test_players_there_before_are_in_the_first_line(start):
    deaf = start(Player, "deaf")
    deaf.order(deaf=True)
    player = start(Player, "early")
    player.play("Already playing")
    follower = start(Follower)
    follower.take()
    assert follower.history[0][1] is False
    assert follower.state["title"] == "Already playing", "one who does not answer holds nobody up for long"
    deaf.play("Speaks unasked")
    follower.wait_for(title="Speaks unasked")


def test_flood_becomes_a_few_lines_with_the_latest_last(start, follower):
    player = start(Player, "flood", PlaybackStatus="Playing")
    follower.wait_for(title=None)
    memory = follower.memory()
    player.order(flood=5000)
    follower.wait_for(title="Song 5000")
    times = [at for at, _, _ in follower.history]
    # Each line is read a little after it was written, so one in ten may seem to come early.
    assert len(times) <= 3 + 12 * (times[-1] - times[0]), f"{len(times)} lines in {times[-1] - times[0]:.2f} s"
    assert follower.memory() < memory + 30_000, "thousands of messages were kept"


def test_slow_reader_gets_what_is_true_when_it_reads(start):
    """Nothing heaps up meanwhile but the one line that is on its way, with a cover larger than a pipe."""
    player = start(Player, "patient")
    player.play("First", art="data:," + "x" * 300_000)
    follower = start(Follower, reading=False)
    for number in range(8):
        time.sleep(0.12)
        player.play(f"Song {number}")
    player.play("Last", artist=["At last"])
    time.sleep(0.3)
    follower.start_reading()
    follower.wait_for(title="Last", artist="At last", artworkData=None)
    assert len(follower.history) <= 3, "songs of the past are told"
    assert follower.history[0][2]["title"] == "First"


def test_idle_means_asleep(start, follower):
    player = start(Player, "still")
    player.play("Song")
    follower.wait_for(title="Song")
    player.order(set={"PlaybackStatus": "Paused"})
    follower.wait_for(playing=False)
    assert follower.stays(0.3)
    before = follower.wakeups()
    assert follower.stays(2.0)
    assert follower.wakeups() == before


def test_ends_with_its_input(start, follower):
    follower.take()
    follower.child.stdin.close()
    assert follower.child.wait(PATIENCE) == 0


def test_ends_when_nobody_reads(start):
    """Though nothing plays, so that there is nothing to write."""
    reading, writing = os.pipe()
    helper = subprocess.Popen([HELPER], stdin=subprocess.PIPE, stdout=writing)
    os.close(writing)
    assert os.read(reading, 100).startswith(b"{")
    os.close(reading)
    assert helper.wait(PATIENCE) == 0
    helper.stdin.close()


def test_ends_with_its_parent(start):
    """Though its pipes, which are those of this test, stay open."""
    code = "import subprocess, sys, time; print(subprocess.Popen(sys.argv[1:]).pid, flush=True); time.sleep(60)"
    parent = start(Process, [sys.executable, "-c", code, str(HELPER)])
    number = int(parent.line()[1])
    parent.line()  # the helper's first
    parent.child.kill()
    parent.child.wait()

    def runs():
        try:
            return Path(f"/proc/{number}/cmdline").read_bytes() != b""  # a zombie has no words
        except OSError:
            return False

    end = time.monotonic() + PATIENCE
    while runs() and time.monotonic() < end:
        time.sleep(0.02)
    if runs():
        os.kill(number, signal.SIGKILL)
        raise AssertionError("the helper outlived its parent")


def test_without_a_session_bus_it_says_so():
    bare = {"PATH": os.environ["PATH"], "HOME": "/nonexistent", "XDG_RUNTIME_DIR": "/nonexistent"}
    for address in ({}, {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus"}):
        done = subprocess.run([HELPER], env={**bare, **address}, capture_output=True, text=True, timeout=PATIENCE)
        assert (done.returncode, done.stdout) == (69, "")
        assert "session bus" in done.stderr and len(done.stderr.splitlines()) == 1
