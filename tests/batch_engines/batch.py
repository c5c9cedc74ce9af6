# SPDX-License-Identifier: Apache-2.0
"""A batch of many drawings: the results of an undisturbed run, and the comparison of other runs with them."""

import json
import os
import resource
import shutil
import subprocess
import time
from pathlib import Path

import drawings
from machine import command_line, wait_for

RECIPES = Path(__file__).resolve().parents[2] / "packaging/batch"
OPTIONS = ["-f", "pdf", "--keep-folders"]
SOME = 50  # drawings of a part that must be done before it is interrupted

# Fields of a record that describe the drawing, not the attempt.
FACTS = ["input", "options", "code", "pages", "findings", "bytes", "otherFiles", "message"]


def processor_seconds():
    """Returns the processor time of all child processes that have ended and been waited for."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


class Stopwatch:
    def __init__(self):
        self.begun, self.used = time.monotonic(), processor_seconds()

    def read(self):
        return f"{time.monotonic() - self.begun:6.1f} s, {processor_seconds() - self.used:6.1f} s of processor time"


def files_below(folder):
    """Returns the contents of all files, hidden ones included, by relative path."""
    folder = Path(folder)
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def folders_below(folder):
    folder = Path(folder)
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_dir()}


def records_of(report):
    """Returns the records of a report. Fails if a line is not valid JSON."""
    return [json.loads(line) for line in Path(report).read_text(encoding="utf-8").splitlines()]


def facts_of(record, out):
    """Returns what must be the same in every run, with outputs by their paths relative to `out`."""
    outputs = [(os.path.relpath(output["file"], out), output["bytes"], output["hash"]) for output in record["outputs"]]
    return [record["status"] == "failed", outputs, *(record.get(fact) for fact in FACTS)]


class Attempt:
    """A process on a machine that converts a part."""

    def __init__(self, node, process):
        self.node, self.process = node, process
        words = [word.decode() for word in command_line(process)]
        self.report = None  # stays None if the process has ended
        if "--report" in words:
            self.report = Path(words[words.index("--report") + 1])
            self.part = self.report.name.split(".")[0]

    def lines(self):
        return self.report.read_bytes().count(b"\n") if self.report and self.report.exists() else 0

    def next_report(self):
        """Returns the report of the next attempt at the part."""
        name, number, kind = self.report.name.split(".")
        return self.report.with_name(f"{name}.{int(number) + 1}.{kind}")

    def marker(self):
        """Returns the file whose presence marks the part as done."""
        return self.report.with_name(self.part + ".done")


class Batch:
    """The drawings, and the results of an undisturbed run without an engine."""

    def __init__(self, folder, tool, count, parts):
        self.folder, self.tool, self.parts = Path(folder), str(tool), parts
        self.environment = {"ORVPRINT": self.tool, "SOURCE_DATE_EPOCH": "1700000000"}
        self.names = drawings.make(self.folder, count)
        self.list = self.folder / "list"
        self.list.write_text("\n".join(self.names) + "\n")
        self.expected_out = self.folder / "undisturbed"
        self.watch = Stopwatch()
        report = self.folder / "undisturbed.jsonl"
        subprocess.run([self.tool, "--files-from", "list", "--out-dir", self.expected_out, "-j", "2", "--keep-going",
                        "--quiet", "--retry", "2", "--report", report, *OPTIONS],
                       cwd=self.folder, env={**os.environ, **self.environment}, stderr=subprocess.DEVNULL, check=False)
        self.cost = self.watch.read()
        self.expected_files = files_below(self.expected_out)
        self.expected_records = {record["name"]: record for record in records_of(report)}
        self.broken = sum(record["status"] == "failed" for record in self.expected_records.values())

    def arguments(self, out, names="list"):
        """Returns the arguments that all recipes take, from the number of parts on."""
        return [self.parts, names, out, *OPTIONS]

    def make_lists(self):
        """Writes a list of drawings for each part. Returns the pattern by which recipes find the lists."""
        folder = self.folder / "lists"
        folder.mkdir()
        for part in range(self.parts):
            (folder / str(part + 1)).write_text("\n".join(self.names[part::self.parts]) + "\n")
        return "lists/%"

    def attempts_on(self, node):
        found = [Attempt(node, pid) for pid in node.find("--report")]
        return [attempt for attempt in found if attempt.report]

    def catch_in_the_middle(self, node):
        """Stops the machine in the middle of a part, after some of its drawings. Returns the attempt."""
        def caught():
            for attempt in self.attempts_on(node):
                if attempt.lines() < SOME:
                    continue
                node.hang()
                if attempt.process in node.processes() and not attempt.marker().exists():
                    return attempt
                node.go_on()
            return None
        return wait_for(caught, f"a part on {node.name}", 600)

    def wait_for_another(self, attempt, nodes):
        """Waits until another process also converts the part and has finished a drawing. Returns its attempt."""
        def found():
            for node in nodes:
                for other in self.attempts_on(node):
                    if other.part == attempt.part and other.report != attempt.report and other.lines() > 0:
                        return other
            return None
        return wait_for(found, f"another attempt of part {attempt.part}", 600)

    def reports(self, out):
        return sorted(Path(f"{out}.reports").glob("*.jsonl"))

    def finish(self, out):
        return subprocess.run([RECIPES / "finish.sh", str(self.parts), out], cwd=self.folder, capture_output=True,
                              text=True, env={**os.environ, **self.environment}, check=False)

    def check(self, test, out):
        """Verifies that `out` equals the undisturbed run and that the merged report has each drawing once."""
        finished = self.finish(out)
        test.assertEqual(finished.returncode, 11 if self.broken > 0 else 0, finished.stderr)
        for report in self.reports(out):
            records_of(report)

        files = files_below(out)
        test.assertEqual(sorted(files), sorted(self.expected_files))
        different = [name for name in files if files[name] != self.expected_files[name]]
        test.assertEqual(different, [])
        test.assertEqual(folders_below(out), folders_below(self.expected_out))

        merged = records_of(f"{out}.jsonl")
        test.assertEqual(sorted(record["name"] for record in merged), sorted(self.names))
        for record in merged:
            expected = self.expected_records[record["name"]]
            test.assertEqual(facts_of(record, out), facts_of(expected, self.expected_out), record["name"])
        test.assertNotIn("are no records", finished.stdout)
        test.assertNotIn("different outputs", finished.stdout)

    def remove(self, out):
        shutil.rmtree(out, ignore_errors=True)
