"""The lock of the program's settings, held by somebody who never lets go."""

import contextlib
import fcntl
import os

from .waiting import until


@contextlib.contextmanager
def held_lock(preferences_path):
    """Holds it, as another program does that was stopped while it wrote. Nobody may take it away meanwhile."""
    path = preferences_path + ".lock"
    os.makedirs(os.path.dirname(path), exist_ok=True)

    def take():
        with contextlib.suppress(FileExistsError):
            return os.open(path, os.O_CREAT | os.O_EXCL | os.O_WRONLY | os.O_CLOEXEC)
        return None

    lock = until(take, "the program holds the lock")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield
        assert os.path.samestat(os.stat(path), os.fstat(lock)), "another lock is in its place"
    finally:
        with contextlib.suppress(FileNotFoundError):
            os.remove(path)
        os.close(lock)
