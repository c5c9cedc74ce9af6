#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A machine that tests start, stop, hang and kill: a process and all that comes of it, whoever inherits it.

    machine.py COMMAND...

As a program, it is the machine: it starts COMMAND, takes over each process below it that loses its parent (so that no
session or group of its own gets one away), and stays when COMMAND ends. At SIGTERM, and when the test that started it is
gone, it kills all of them at one moment, as a failure of the power would, and ends.
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
    """The parent of each process that is no zombie."""
    found = {}
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            state, parent = (folder / "stat").read_text().rsplit(")", 1)[1].split()[:2]
        except (OSError, IndexError):
            continue  # it has just ended
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
    """Stops all below `root`, also what they start meanwhile. Returns them."""
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
    """Waits until `condition` gives something true, which is returned.

    `needs` is a machine that must run something meanwhile: without it, waiting is in vain.
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
    """The side of the test."""

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
        """The processes that have all of the words among their arguments."""
        wanted = {word.encode() for word in words}
        return [pid for pid in self.processes() if wanted <= set(command_line(pid))]

    def hang(self):
        return stop_all(self.process.pid)

    def go_on(self):
        signal_all(self.processes(), signal.SIGCONT)

    def kill(self):
        """Ends it and all that it runs, at one moment."""
        self.process.terminate()
        self.process.wait(timeout=60)


def kill_all_below():
    """Nothing of what is stopped can say goodbye, nor notice that others are gone."""
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
    # Blocked, not handled: none is lost before it is waited for.
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
    """Machines that `with` starts, all or none, and that are gone after it."""

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
