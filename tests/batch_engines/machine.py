#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A machine that tests can start, hang and kill: a process and all its descendants, orphans included.

    machine.py COMMAND...

Run as a program, it is the machine: it starts COMMAND and becomes the parent of every descendant that loses its own, so
that a new session or process group is no escape. It keeps running when COMMAND ends. On SIGTERM, and when the test that
started it has ended, it kills all descendants at once, like a power failure, and ends.
"""

import ctypes
import os
import signal
import subprocess
import sys
import time
from pathlib import Path

PR_SET_PDEATHSIG, PR_SET_CHILD_SUBREAPER = 1, 36


def parents():
    """Maps all processes except zombies to their parents."""
    found = {}
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            state, parent = (folder / "stat").read_text().rsplit(")", 1)[1].split()[:2]
        except (OSError, IndexError):
            continue  # the process has just ended
        if state not in "ZX":
            found[int(folder.name)] = int(parent)
    return found


def descendants(root):
    found, below = parents(), {root}
    while True:
        more = {pid for pid, parent in found.items() if parent in below} - below
        if not more:
            return below - {root}
        below |= more


def signal_all(pids, number):
    for pid in pids:
        try:
            os.kill(pid, number)
        except ProcessLookupError:
            pass


def stop_all(root):
    """Stops all descendants of `root`, including those started meanwhile. Returns them."""
    stopped = set()
    while True:
        running = descendants(root) - stopped
        if not running:
            return stopped
        signal_all(running, signal.SIGSTOP)
        stopped |= running


def command_line(pid):
    try:
        return Path(f"/proc/{pid}/cmdline").read_bytes().split(b"\0")
    except OSError:
        return []


def prctl(*arguments):
    if ctypes.CDLL(None, use_errno=True).prctl(*arguments) != 0:
        raise OSError(ctypes.get_errno(), "prctl")


def wait_for(condition, what, seconds=120, needs=None, pause=0.02):
    """Waits until `condition` returns a true value, and returns it.

    Fails early if `needs`, a machine that must be running meanwhile, has ended.
    """
    end = time.monotonic() + seconds
    while not (result := condition()):
        if needs and needs.has_ended():
            raise RuntimeError(f"{what}: {needs.name} has ended:\n" + needs.log.read_text()[-2000:])
        if time.monotonic() > end:
            raise TimeoutError(f"{what}: not within {seconds} s")
        time.sleep(pause)
    return result


class Machine:
    """A machine as the test sees it."""

    def __init__(self, name, command, log, environment=None):
        self.name = name
        self.log = Path(log)
        with open(log, "ab") as output:
            self.process = subprocess.Popen(
                [sys.executable, str(Path(__file__).resolve()), *map(str, command)], stdin=subprocess.DEVNULL,
                stdout=output, stderr=output, env=environment, start_new_session=True)

    def processes(self):
        return descendants(self.process.pid)

    def has_ended(self):
        return (self.log.stat().st_size > 0 or self.process.poll() is not None) and not self.processes()

    def find(self, *words):
        """Returns the processes that have all of the words as arguments."""
        wanted = {word.encode() for word in words}
        return [pid for pid in self.processes() if wanted <= set(command_line(pid))]

    def hang(self):
        return stop_all(self.process.pid)

    def go_on(self):
        signal_all(self.processes(), signal.SIGCONT)

    def kill(self):
        """Ends the machine and everything that it runs at once."""
        self.process.terminate()
        self.process.wait(timeout=60)


def kill_all_below():
    """Kills all descendants. They are stopped first, so that none can clean up or notice the end of others."""
    while True:
        signal_all(stop_all(os.getpid()), signal.SIGKILL)
        try:
            while os.waitpid(-1, 0):
                pass
        except ChildProcessError:
            return


def main():
    signals = {signal.SIGTERM, signal.SIGCHLD}
    test = os.getppid()
    # Blocked instead of handled, so that no signal is lost before sigwait.
    signal.pthread_sigmask(signal.SIG_BLOCK, signals)
    prctl(PR_SET_CHILD_SUBREAPER, 1)
    prctl(PR_SET_PDEATHSIG, signal.SIGTERM)
    is_orphan = os.getppid() != test
    if not is_orphan:
        subprocess.Popen(sys.argv[1:], restore_signals=True,
                         preexec_fn=lambda: signal.pthread_sigmask(signal.SIG_UNBLOCK, signals))
    while not is_orphan and signal.sigwait(signals) != signal.SIGTERM:
        try:
            while os.waitpid(-1, os.WNOHANG) != (0, 0):
                pass
        except ChildProcessError:
            pass
    kill_all_below()


if __name__ == "__main__":
    main()


class Machines:
    """Machines that exist within a `with` statement. If one fails to start, those already started are killed."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.machines = {}

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for machine in self.machines.values():
            machine.kill()
