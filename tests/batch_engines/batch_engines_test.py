#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Tests batches with Slurm and GNU parallel, on nodes that are killed, hang, or lose only their daemon.

    batch_engines_test.py [--tool build/release/bin/orvprint] [--drawings 10000] [--parts 8] [-v] [SlurmTest...]

The test starts its own daemons for the recipes of packaging/batch. Whatever happens to a node, all outputs must equal
those of an undisturbed run, byte for byte, and the merged report must have each drawing once. Ends with the line "N
passed, N failed".
"""

import argparse
import concurrent.futures
import itertools
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from batch import RECIPES, Batch, Stopwatch, records_of
from machine import Machine, descendants, signal_all, wait_for
from private_slurm import PrivateSlurm
from private_ssh import PrivateSsh

ROOT = Path(__file__).resolve().parents[2]
LISTENING = "0A"
LOOPBACK = {"0100007F", "00000000000000000000000001000000", "0000000000000000FFFF00000100007F"}

settings = None
batch = None
numbers = itertools.count(1)


def listening_elsewhere(pids):
    """Returns the addresses other than loopback on which one of the processes listens."""
    own = set()
    for pid in pids:
        try:
            own |= {os.readlink(entry) for entry in Path(f"/proc/{pid}/fd").iterdir()}
        except OSError:
            pass  # the process has just ended
    addresses = set()
    for table in ["/proc/net/tcp", "/proc/net/tcp6"]:
        for line in Path(table).read_text().splitlines()[1:]:
            fields = line.split()
            address = fields[1].split(":")[0]
            if fields[3] == LISTENING and f"socket:[{fields[9]}]" in own and address not in LOOPBACK:
                addresses.add(fields[1])
    return addresses


def mentioning(folder):
    """Returns the processes that have a folder in their arguments, environment or working directory."""
    found = set()
    for process in Path("/proc").glob("[0-9]*"):
        try:
            texts = (process / "cmdline").read_bytes() + (process / "environ").read_bytes()
            texts += os.readlink(process / "cwd").encode()
        except OSError:
            continue
        if str(folder).encode() in texts and int(process.name) != os.getpid():
            found.add(int(process.name))
    return found


class EngineTest(unittest.TestCase):
    def setUp(self):
        self.name = self.id().split(".", 1)[1]
        # A short name, because the path of a socket is limited to 107 bytes.
        self.folder = batch.folder / f"{type(self).__name__}-{next(numbers)}"
        self.out = batch.folder / (self.folder.name + "-out")
        self.watch = Stopwatch()

    def tearDown(self):
        left = mentioning(self.folder) | mentioning(self.out)
        self.assertEqual(left, set(), "processes are left")
        shutil.rmtree(self.folder, ignore_errors=True)
        attempts = len(batch.reports(self.out))
        print(f"{self.name:60} {self.watch.read()}, {attempts} attempts at {batch.parts} parts", flush=True)
        batch.remove(self.out)

    def check_was_cut_short(self, attempt):
        """Verifies that the attempt ended before the part was done, and that the next attempt did more."""
        self.assertLess(attempt.lines(), len(records_of(attempt.next_report())))

    def check_nothing_listens_elsewhere(self):
        self.assertEqual(listening_elsewhere(descendants(os.getpid())), set())


class ShardTest(EngineTest):
    """Runs the script of a part without an engine."""

    def convert(self, *words, tool=None, part="1/2", names="short-list", patience=120):
        environment = {**os.environ, **batch.environment, **({"ORVPRINT": str(tool)} if tool else {})}
        return subprocess.run([RECIPES / "shard.sh", part, names, self.out, "-f", "pdf", "--keep-folders", *words],
                              cwd=batch.folder, env=environment, capture_output=True, text=True, timeout=patience).returncode

    def setUp(self):
        super().setUp()
        (batch.folder / "short-list").write_text("\n".join(batch.names[:100]) + "\n")

    def marker(self):
        return Path(f"{self.out}.reports/1-of-2.done")

    def test_a_part_that_cannot_begin_is_not_done(self):
        self.assertEqual(self.convert(tool="/no/such/command"), 127)
        self.assertFalse(self.marker().exists())

    def test_a_part_with_unknown_options_is_not_done(self):
        self.assertEqual(self.convert(), 0)
        self.assertTrue(self.marker().exists())
        self.assertEqual(self.convert("--no-such-option"), 2)
        self.assertFalse(self.marker().exists())

    def test_another_attempt_leaves_alone_what_is_done(self):
        self.assertEqual(self.convert(), 0)
        outputs = sorted(self.out.rglob("*.pdf"))
        outputs[0].unlink()
        self.assertEqual(self.convert(), 0)
        statuses = [record["status"] for record in records_of(f"{self.out}.reports/1-of-2.2.jsonl")]
        self.assertEqual(sorted(statuses), ["done"] + ["unchanged"] * (len(outputs) - 1))
        self.assertEqual(sorted(self.out.rglob("*.pdf")), outputs)

    def test_attempts_that_start_at_once_have_reports_of_their_own(self):
        with concurrent.futures.ThreadPoolExecutor(6) as pool:
            self.assertEqual(list(pool.map(lambda _: self.convert(), range(6))), [0] * 6)
        reports = batch.reports(self.out)
        self.assertEqual(len(reports), 6)
        names = {frozenset(record["name"] for record in records_of(report)) for report in reports}
        self.assertEqual(len(names), 1)

    def test_a_part_may_have_a_list_of_its_own(self):
        (batch.folder / "short").mkdir()
        (batch.folder / "short/2.txt").write_text(batch.names[5] + "\n")
        self.assertEqual(self.convert(part="2/2", names="short/%.txt"), 0)
        records = records_of(f"{self.out}.reports/2-of-2.1.jsonl")
        self.assertEqual([record["name"] for record in records], [batch.names[5]])


class SlurmTest(EngineTest):
    def submit(self, slurm):
        arguments = batch.arguments(self.out)
        # Tasks find the drawings relative to the folder of the job.
        return slurm.submit([f"--array=1-{batch.parts}", f"--chdir={batch.folder}",
                             f"--output={slurm.folder}/log/job-%a.log", RECIPES / "orvprint.slurm", *arguments],
                            {**batch.environment, "BATCH": str(RECIPES)})

    def wait_and_check(self, slurm, job):
        self.assertEqual(set(slurm.wait_until_done(job)), {"COMPLETED"})
        batch.check(self, self.out)

    def test_undisturbed(self):
        with PrivateSlurm(self.folder) as slurm:
            job = self.submit(slurm)
            wait_for(lambda: all(batch.attempts_on(node) for node in slurm.nodes()), "a part on each node")
            self.check_nothing_listens_elsewhere()
            self.wait_and_check(slurm, job)
        self.assertEqual(len(batch.reports(self.out)), batch.parts)

    def test_a_node_is_killed_and_set_down(self):
        with PrivateSlurm(self.folder) as slurm:
            job = self.submit(slurm)
            lost = slurm.nodes()[1]
            attempt = batch.catch_in_the_middle(lost)
            lost.kill()
            slurm.set_down(lost)
            self.wait_and_check(slurm, job)
        self.check_was_cut_short(attempt)

    def test_a_node_is_killed_and_nobody_says_so(self):
        with PrivateSlurm(self.folder) as slurm:
            job = self.submit(slurm)
            lost = slurm.nodes()[1]
            attempt = batch.catch_in_the_middle(lost)
            lost.kill()
            self.wait_and_check(slurm, job)
        self.check_was_cut_short(attempt)

    def test_a_daemon_is_killed_and_its_part_runs_beside_itself(self):
        with PrivateSlurm(self.folder) as slurm:
            job = self.submit(slurm)
            kept, lost = slurm.nodes()
            attempt = batch.catch_in_the_middle(lost)
            os.kill(slurm.daemon_of(lost), signal.SIGKILL)
            slurm.set_down(lost)
            batch.wait_for_another(attempt, [kept])
            # Only now does the first attempt continue, so that both convert the same drawings.
            lost.go_on()
            wait_for(lambda: not batch.attempts_on(lost), "the end of the first attempt", 600)
            self.wait_and_check(slurm, job)
        # Both attempts did the whole part.
        self.assertEqual(attempt.lines(), len(records_of(attempt.next_report())))

    def test_a_step_is_killed_and_its_part_ends_with_it(self):
        with PrivateSlurm(self.folder) as slurm:
            job = self.submit(slurm)
            node = slurm.nodes()[1]
            attempt = batch.catch_in_the_middle(node)
            steps = [pid for pid in node.processes() if Path(f"/proc/{pid}/comm").read_text().startswith("slurmstepd")]
            # Continue first: the kernel ends stopped process groups that become orphans.
            node.go_on()
            signal_all(steps, signal.SIGKILL)
            wait_for(lambda: attempt.process not in node.processes(), "the end of the part")
            self.wait_and_check(slurm, job)
        self.check_was_cut_short(attempt)


class ParallelTest(EngineTest):
    def start(self, ssh, names="list"):
        """Starts the recipe on a separate machine. Its exit code is written to a file."""
        command = ["sh", "-c", 'code=0; "$@" || code=$?; echo $code >"$0.new"; mv "$0.new" "$0"', ssh.folder / "code",
                   RECIPES / "parallel.sh", ssh.folder / "hosts", *batch.arguments(self.out, names)]
        environment = {**os.environ, **batch.environment, **ssh.environment()}
        command[:0] = ["env", "-C", batch.folder]
        ssh.machines["client"] = Machine("client", command, ssh.folder / "client.log", environment)

    def wait_and_check(self, ssh):
        wait_for((ssh.folder / "code").exists, "parallel", 1800)
        self.assertEqual((ssh.folder / "code").read_text(), "0\n", (ssh.folder / "client.log").read_text()[-2000:])
        batch.check(self, self.out)

    def test_undisturbed(self):
        with PrivateSsh(self.folder) as ssh:
            self.start(ssh)
            wait_for(lambda: all(batch.attempts_on(node) for node in ssh.nodes()), "a part on each machine")
            self.check_nothing_listens_elsewhere()
            self.wait_and_check(ssh)
        self.assertEqual(len(batch.reports(self.out)), batch.parts)

    def test_a_machine_is_killed(self):
        with PrivateSsh(self.folder) as ssh:
            self.start(ssh)
            lost = ssh.nodes()[1]
            attempt = batch.catch_in_the_middle(lost)
            lost.kill()
            self.wait_and_check(ssh)
        self.check_was_cut_short(attempt)

    def test_a_machine_hangs_and_goes_on_while_another_does_its_part(self):
        with PrivateSsh(self.folder) as ssh:
            self.start(ssh)
            kept, lost = ssh.nodes()
            attempt = batch.catch_in_the_middle(lost)
            batch.wait_for_another(attempt, [kept])
            lost.go_on()
            self.wait_and_check(ssh)

    def test_all_machines_are_killed_and_the_same_command_does_the_rest(self):
        names = batch.make_lists()
        with PrivateSsh(self.folder) as ssh:
            self.start(ssh, names)
            lost = ssh.nodes()
            batch.catch_in_the_middle(lost[1])
            for machine in [*lost, ssh.machines["client"]]:
                machine.kill()
        unfinished = batch.finish(self.out)
        self.assertEqual(unfinished.returncode, 1)
        self.assertIn("not done: ", unfinished.stderr)
        shutil.rmtree(self.folder)
        with PrivateSsh(self.folder) as ssh:
            self.start(ssh, names)
            self.wait_and_check(ssh)


class CleanUpTest(unittest.TestCase):
    def test_of_a_test_that_was_killed_no_process_is_left(self):
        folder = batch.folder / "killed"
        folder.mkdir(mode=0o711)
        holder = subprocess.Popen([sys.executable, __file__, "--hold", folder], stdout=subprocess.PIPE, text=True)
        self.assertEqual(holder.stdout.readline(), "held\n")
        processes = mentioning(folder)
        self.assertTrue(wait_for(lambda: any("sleep" in Path(f"/proc/{pid}/comm").read_text()
                                             for pid in mentioning(folder)), "the job"))
        holder.kill()
        holder.communicate()
        self.assertGreater(len(processes), 6)
        wait_for(lambda: not mentioning(folder), "the end of all processes", 60)


def hold(folder):
    """Starts all daemons and a job that tries to escape by a new session, then waits to be killed."""
    with PrivateSlurm(folder / "slurm") as slurm, PrivateSsh(folder / "ssh"):
        slurm.submit([f"--chdir={folder}", "--output=/dev/null", "--wrap", "setsid --fork sleep 3600; sleep 3600"], {})
        print("held", flush=True)
        signal.pause()


def parse():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", type=Path, default=ROOT / "build/release/bin/orvprint")
    parser.add_argument("--drawings", type=int, default=10000)
    parser.add_argument("--parts", type=int, default=8)
    parser.add_argument("--hold", type=Path, help=argparse.SUPPRESS)
    parser.add_argument("-v", "--verbose", action="store_true")
    parser.add_argument("tests", nargs="*", help="such as SlurmTest or ParallelTest.test_undisturbed")
    return parser.parse_args()


def selected_tests():
    loader, module = unittest.defaultTestLoader, sys.modules[__name__]
    return loader.loadTestsFromNames(settings.tests, module) if settings.tests else loader.loadTestsFromModule(module)


def main():
    global settings, batch
    settings = parse()
    if settings.hold:
        hold(settings.hold)
    # As after an error, end what was started and remove what was written.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended by a signal"))
    with tempfile.TemporaryDirectory(prefix="orv-batch-") as folder:
        os.chmod(folder, 0o711)  # munged requires that other users can traverse the folder
        batch = Batch(folder, settings.tool.resolve(), settings.drawings, settings.parts)
        print(f"{'orvprint -j 2 without an engine':60} {batch.cost}, {batch.broken} of {settings.drawings} drawings are broken",
              flush=True)
        result = unittest.TextTestRunner(verbosity=2 if settings.verbose else 1).run(selected_tests())
    failed = len(result.failures) + len(result.errors)
    print(f"{result.testsRun - failed} passed, {failed} failed")
    sys.exit(0 if result.testsRun > 0 and failed == 0 else 1)


if __name__ == "__main__":
    main()
