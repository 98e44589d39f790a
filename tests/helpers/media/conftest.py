import pytest

import media


@pytest.fixture
def start():
    """Starts helpers and players, and ends them with the test."""
    started = []

    def one(kind, *arguments, **named):
        process = kind(*arguments, **named)
        started.append(process)
        return process

    yield one
    for process in reversed(started):
        if process.child.poll() is None:
            process.child.terminate()
            process.child.wait(media.PATIENCE)


@pytest.fixture
def follower(start):
    return start(media.Follower)
