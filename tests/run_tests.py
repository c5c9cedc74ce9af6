#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs test programs in shards, several processes at a time, and counts their tests.

    tests/run_tests.py [--jobs 2] [--filter 'LooksTest.*'] [--sample NAME=8] [--slowest 30] PROGRAM...

Running each test in its own process, as ctest does, would start programs thousands of times. The last line of output is
"N passed, N failed". Exits with 1 if a test failed or did not run, or if there are no tests. A test fails if it reports
a failure or its process ends during it; a shard fails if its process ends with an error after its tests. Nothing is
retried, except shards whose only failure is that the leak checker itself could not run.
"""

import argparse
import concurrent.futures
import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import zlib
from pathlib import Path

# Message of the leak checker when it could not stop the threads of the process; reports of leaks do not contain it.
LEAK_CHECKER_FAILED = "LeakSanitizer has encountered a fatal error"
MOST_TRIES = 5  # the leak checker fails in one of some hundred processes, occasionally twice in a row
SHARDS_A_JOB = 6
PATIENCE = 1200  # seconds per shard; only meant to end processes that hang


def tests_of(program, pattern):
    """Returns the names of a program's tests, in its order and without disabled ones."""
    listing = subprocess.run([program, "--gtest_list_tests", f"--gtest_filter={pattern}"], check=True,
                             capture_output=True).stdout.decode(errors="replace")
    suite, names = "", []
    for line in listing.splitlines():
        name = line.split("#")[0].strip()
        if line.startswith("  "):
            names.append(suite + name)
        elif re.fullmatch(r"[\w/]+\.", name):
            suite = name
    return [name for name in names if not re.search(r"(^|[./])DISABLED_", name)]


def sample_of(tests, one_in):
    """Returns about one test in `one_in`, chosen by name, so that the choice does not depend on other tests."""
    return [name for name in tests if zlib.crc32(name.encode()) % one_in == 0]


class Shard:
    """A part of a program's tests, with their results."""

    def __init__(self, program, pattern, index, count, tests):
        self.program, self.pattern, self.index, self.count, self.tests = program, pattern, index, count, tests
        self.seconds, self.times = 0.0, []
        self.failed, self.skipped, self.log = [], [], ""
        self.failed_at_its_end = self.was_run_again = False

    def name(self):
        return f"{Path(self.program).name}, shard {self.index + 1} of {self.count}"

    def run(self, environment):
        self.run_once(environment)
        for _ in range(MOST_TRIES - 1):
            if not (self.failed_at_its_end and LEAK_CHECKER_FAILED in self.log):
                break
            self.was_run_again = True
            self.run_once(environment)
        return self

    def run_once(self, environment):
        shard = {"GTEST_TOTAL_SHARDS": str(self.count), "GTEST_SHARD_INDEX": str(self.index)}
        started = time.monotonic()
        with tempfile.TemporaryFile() as log:
            process = subprocess.Popen([self.program, f"--gtest_filter={self.pattern}"], stdin=subprocess.DEVNULL,
                                       stdout=log, stderr=log, env={**environment, **shard}, start_new_session=True)
            try:
                code = process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                code = process.wait()
            log.seek(0)
            self.log = log.read().decode(errors="replace")
        self.seconds += time.monotonic() - started
        self.judge(code)

    def judge(self, code):
        begun = re.findall(r"^\[ RUN      \] (\S+)$", self.log, re.MULTILINE)
        # The name is followed by a description of parameters. It may not start a line if a test printed an unfinished
        # line.
        ended = {kind: re.findall(rf"\[{kind}\] ([^\s,]+)(?:, where .*)? \(\d+ ms\)$", self.log, re.MULTILINE)
                 for kind in ("       OK ", "  FAILED  ", "  SKIPPED ")}
        self.skipped = ended["  SKIPPED "]
        self.times = [(int(time), name) for name, time in
                      re.findall(r"\[[A-Z ]+\] ([^\s,]+)(?:, where .*)? \((\d+) ms\)$", self.log, re.MULTILINE)]
        done = {name for names in ended.values() for name in names}
        self.failed = ended["  FAILED  "] + [name for name in begun if name not in done]
        self.failed += [name for name in self.tests if name not in done and name not in self.failed]
        self.failed_at_its_end = code != 0 and not self.failed
        if self.failed_at_its_end:
            self.failed = [f"{self.name()}: ended with {code} after its tests"]

    def said(self):
        """Returns the log without the output of tests that passed; if it is long, only its start and end."""
        text = re.sub(r"^\[ RUN      \] (\S+)\n(?:(?!\[ RUN )[^\n]*\n)*?\[       OK \] \1\b[^\n]*\n", "", self.log,
                      flags=re.MULTILINE)
        return text if len(text) < 60_000 else text[:30_000] + "\n...\n" + text[-30_000:]


def shards_of(programs, pattern, jobs, samples):
    shards = []
    for program in programs:
        tests = tests_of(program, pattern)
        one_in = samples.get(Path(program).name)
        if one_in:
            tests = sample_of(tests, one_in)
        count = min(len(tests), jobs * SHARDS_A_JOB)
        wanted = ":".join(tests) if one_in else pattern
        shards += [Shard(program, wanted, i, count, tests[i::count]) for i in range(count)]
    return shards


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--filter", default="*", help="which tests, as GoogleTest takes it")
    parser.add_argument("--counts", metavar="FOLDER", help="where programs built to do so count which lines ran")
    parser.add_argument("--counting", action="append", default=[], metavar="NAME", help="the programs that count")
    parser.add_argument("--sample", action="append", default=[], metavar="NAME=N", help="of program NAME, one test in N")
    parser.add_argument("--slowest", type=int, default=0, metavar="N", help="list the N tests that took longest")
    parser.add_argument("programs", nargs="+", metavar="PROGRAM")
    options = parser.parse_args()

    def run(shard):
        environment = dict(os.environ)
        environment.pop("ORV_COUNTS_FOLDER", None)
        if options.counts and Path(shard.program).name in options.counting:
            environment["ORV_COUNTS_FOLDER"] = options.counts
        return shard.run(environment)

    samples = {name: int(one_in) for name, one_in in (sample.split("=") for sample in options.sample)}
    shards = shards_of(options.programs, options.filter, options.jobs, samples)
    failed, skipped, times = [], [], []
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for running in concurrent.futures.as_completed([pool.submit(run, shard) for shard in shards]):
            shard = running.result()
            failed += shard.failed
            skipped += shard.skipped
            times += shard.times
            again = ", run again: the leak checker itself had failed" if shard.was_run_again else ""
            print(f"{shard.name()}: {len(shard.tests)} tests, {len(shard.failed)} failed, {shard.seconds:.1f} s{again}",
                  flush=True)
            if shard.failed:
                print(shard.said(), flush=True)

    total = sum(len(shard.tests) for shard in shards)
    for time_taken, name in sorted(times, reverse=True)[:options.slowest]:
        print(f"{time_taken:7} ms  {name}")
    for name in sorted(skipped):
        print(f"skipped: {name}")
    for name in sorted(failed):
        print(f"failed: {name}")
    print(f"\n{total - len(skipped) - min(len(failed), total)} passed, {max(len(failed), int(total == 0))} failed")
    sys.exit(1 if failed or total == 0 else 0)


if __name__ == "__main__":
    main()
