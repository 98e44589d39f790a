"""Which covers are shown, and what a player cannot make us read."""
import base64
import os
import socket
import time

import pytest

from media import Player

COVER = b"\x89PNG cover"


@pytest.fixture
def player(start):
    return start(Player, "painter", PlaybackStatus="Playing")


def test_covers_come_with_their_songs(follower, player, tmp_path):
    cover = tmp_path / "a cover.png"
    cover.write_bytes(COVER)
    player.play("One", art=cover.as_uri())
    follower.wait_for(title="One", artworkData=base64.b64encode(COVER).decode())
    player.order(set={"PlaybackStatus": "Paused"})
    follower.wait_for(playing=False)
    assert "artworkData" not in follower.history[-1][2], "what did not change is not sent again"
    cover.write_bytes(b"another")
    player.play("Two", art=cover.as_uri())
    follower.wait_for(title="Two", artworkData=base64.b64encode(b"another").decode())
    player.play("Three", art="data:image/png;base64," + base64.b64encode(COVER).decode())
    follower.wait_for(title="Three", artworkData=base64.b64encode(COVER).decode())
    player.play("Four")
    follower.wait_for(title="Four", artworkData=None)


def test_network_is_never_asked(follower, player):
    with socket.create_server(("127.0.0.1", 0)) as server:
        server.settimeout(0.5)
        address = "127.0.0.1:%d" % server.getsockname()[1]
        for scheme in ("http", "https", "ftp", "smb"):
            player.play(scheme, art=f"{scheme}://{address}/cover.png")
            follower.wait_for(title=scheme, artworkData=None)
        with pytest.raises(TimeoutError):
            server.accept()


def test_hostile_covers_are_none_and_hold_nobody_up(follower, player, tmp_path):
    huge = tmp_path / "huge"
    huge.touch()
    os.truncate(huge, 100_000_000)
    os.mkfifo(tmp_path / "pipe")
    (tmp_path / "zero").symlink_to("/dev/zero")
    for art in ("huge", "pipe", "zero", "absent", "."):
        player.play(art, art=f"file://{tmp_path}/{art}")
        follower.wait_for(title=art, artworkData=None)
    player.play("held", art="data:image/png;base64," + "A" * 12_000_000)
    follower.wait_for(title="held", artworkData=None)
    assert follower.stays(0.3, artworkData=None)

    largest = b"x" * 6_000_000
    (tmp_path / "largest").write_bytes(largest)
    began = time.monotonic()
    player.play("largest", art=f"file://{tmp_path}/largest")
    follower.wait_for(title="largest", artworkData=base64.b64encode(largest).decode())
    assert time.monotonic() - began < 2
