#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints every drawing below some folders: third-party documents without expected results.

    tests/smoke/print_documents.py --tool build/asan/bin/orvprint [--every] [--sample N] [--jobs 2] FOLDER...

For any document, the command must end with a page or with one line that says why there is none, within ten seconds of
processor time and a gigabyte of memory. By turns, documents are printed to PDF, printed to PNG and checked; with
--every, all three are done with each. Every fifth document is also printed as standard SVG. If the check finds nothing,
the page must look like that of another renderer (compare_pages.py). Lists the documents that broke a rule; exits with 1
if there are any.
"""

import argparse
import collections
import concurrent.futures
import os
import subprocess
import sys
import tempfile
from pathlib import Path

import compare_pages

PATIENCE = 120  # seconds of wall-clock time, even on a busy machine
MOST_SECONDS = 10
MOST_MEMORY = 1024  # MB
# Not read, not well-formed, no page, not printed: see README.md.
REFUSALS = {3, 4, 5, 9}
DONE, FOUND = 0, 1
TIMED_OUT = 124  # exit code of timeout
WAYS = ["pdf", "png", "check"]
STANDARD_WAYS = ["standard pdf", "standard png"]
STANDARD_EVERY = 5  # documents
# Message of the leak checker if it could not run; leaks have other messages.
LEAK_CHECKER_FAILED = "LeakSanitizer has encountered a fatal error"


Done = collections.namedtuple("Done", "code said seconds megabytes")  # result of a process and its children


def documents_below(folders):
    return sorted(path for folder in folders for ending in ("svg", "svgz") for path in Path(folder).rglob(f"*.{ending}")
                  if path.is_file())


def run(command, measures_memory):
    """Returns exit code, standard error, and what is wrong with time and memory; retries if the leak checker failed."""
    done = run_once(command, measures_memory)
    return run_once(command, measures_memory) if LEAK_CHECKER_FAILED in done[1] else done


def forget_peak():
    """Resets the peak memory of this process, because a child inherits it as its own."""
    with open("/proc/self/clear_refs", "w") as peak:
        peak.write("5")


def measure(command):
    """Runs a command without input, discards its output, and measures it."""
    forget_peak()
    with tempfile.TemporaryFile() as errors:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=errors)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        errors.seek(0)
        return Done(process.returncode, errors.read().decode(errors="replace"), usage.ru_utime + usage.ru_stime,
                    usage.ru_maxrss / 1024)


def run_once(command, measures_memory):
    done = measure(["timeout", str(PATIENCE), *command])
    if done.code == TIMED_OUT or done.seconds > MOST_SECONDS:
        return done.code, done.said, f"took {done.seconds:.1f} s"
    if measures_memory and done.megabytes > MOST_MEMORY:
        return done.code, done.said, f"took {done.megabytes:.0f} MB"
    return done.code, done.said, ""


def fault_of(tool, way, document, folder, measures_memory):
    """Returns the exit code and what is wrong with the run; "" if nothing is."""
    standard = ["--interpreter", "svg2", "--quiet"] if way in STANDARD_WAYS else []
    way = way.split()[-1]
    output = Path(folder) / f"page.{way}"
    if way == "check":
        code, said, fault = run([tool, "check", str(document)], measures_memory)
        expected = {DONE, FOUND} | REFUSALS
    else:
        # PNG has one file per page; the first page is enough here.
        pages = ["--pages", "1"] if way == "png" else []
        code, said, fault = run([tool, str(document), "-o", str(output), *pages, *standard], measures_memory)
        expected = {DONE} | REFUSALS
    if fault:
        return code, fault
    if "Sanitizer" in said or "runtime error" in said:
        return code, "a sanitizer found something:\n" + said[:3000]
    if code not in expected:
        return code, f"ended with {code}: {said[:500]}"
    if way != "check":
        if (code == DONE) != (output.is_file() and output.stat().st_size > 0):
            return code, f"ended with {code} and {'no' if code == DONE else 'a'} page"
        if code != DONE and not said.startswith("orvprint: "):
            return code, f"ended with {code} and did not say why: {said[:500]}"
    if list(Path(folder).glob(".*")):
        return code, "left a temporary file"
    return code, ""


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--every", action="store_true", help="print each document both ways, and check it")
    parser.add_argument("--sample", type=int, metavar="N", help="of all documents, N that stand evenly apart")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("folders", nargs="+", metavar="FOLDER")
    options = parser.parse_args()

    documents = documents_below(options.folders)
    if not documents:
        sys.exit("there is no drawing in " + ", ".join(options.folders))
    if options.sample and options.sample < len(documents):
        documents = [documents[i * len(documents) // options.sample] for i in range(options.sample)]
    work = [(document, way) for i, document in enumerate(documents)
            for way in (WAYS if options.every else [WAYS[i % len(WAYS)]])]
    work += [(document, way) for i, document in enumerate(documents)
             for way in (STANDARD_WAYS if options.every else [STANDARD_WAYS[i // STANDARD_EVERY % len(STANDARD_WAYS)]])
             if i % STANDARD_EVERY == 0]
    # Sanitizers need additional memory.
    measures_memory = b"__asan_init" not in Path(options.tool).read_bytes()

    def one(item):
        document, way = item
        with tempfile.TemporaryDirectory() as folder:
            code, fault = fault_of(options.tool, way, document, folder, measures_memory)
            difference = None
            if way == "check" and code == DONE and not fault:
                difference = compare_pages.difference(options.tool, document, folder,
                                                      lambda command: run(command, measures_memory=False)[0])
                fault = compare_pages.fault_of(document.name, difference)
            return document, way, code, fault, difference

    codes, faults, differences = collections.Counter(), 0, []
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for document, way, code, fault, difference in pool.map(one, work):
            codes[code] += 1
            if difference is not None and not compare_pages.is_known(document.name):
                differences.append(difference)
            if fault:
                faults += 1
                print(f"{document} ({way}): {fault}")
    print(f"{len(documents)} documents, {len(work)} runs:",
          ", ".join(f"{count} ended with {code}" for code, count in sorted(codes.items())))
    if differences:
        mean = sum(differences) / len(differences)
        print(f"{len(differences)} pages differ from what rsvg-convert shows by {mean:.3f} % on average, at most"
              f" {max(differences):.2f} %")
        # The mean of few documents means little.
        if len(differences) >= compare_pages.FEWEST_FOR_A_MEAN and mean > compare_pages.MOST_OF_ALL:
            sys.exit(f"on average they may differ by {compare_pages.MOST_OF_ALL} %")
    if faults:
        sys.exit(f"{faults} runs broke a rule")


if __name__ == "__main__":
    main()
