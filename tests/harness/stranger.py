"""Another user of the machine, for tests that root runs.

    @unittest.skipUnless(stranger.can_be(), stranger.WHY_NOT)
    ...
    if not stranger.reaches(folder): self.skipTest(...)
"""
import functools
import os
import tempfile

USER = 65534
WHY_NOT = "only root can be another user as well, and not in every container"


def become():
    """Makes this process his, for good."""
    os.setgroups([])
    os.setgid(USER)
    os.setuid(USER)


def _can(*steps):
    """Whether a process of its own comes through all of that."""
    child = os.fork()
    if child == 0:
        status = 1
        try:
            for step in steps:
                step()
            status = 0
        except OSError:
            pass
        finally:
            os._exit(status)
    return os.waitpid(child, 0)[1] == 0


@functools.cache
def can_be():
    """Whether a test can become him and give files to him."""
    if os.geteuid() != 0:
        return False
    with tempfile.TemporaryDirectory(prefix="stranger-") as folder:
        return _can(lambda: os.chown(folder, USER, USER), become)


def reaches(path):
    """Whether the folders above a path let him through to it."""
    return _can(become, lambda: os.stat(path))
