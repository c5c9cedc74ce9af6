#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Puts loads on a resident service and checks what docs/serve.md promises.

    bench/serve_test.py [--tool build/release/bin/orvprint] [--load build/release/bin/serve_load] [--requests 8000]
                        [--jobs 20000] [SECTION...]

Sections: throughput, latency, hostile, killed, slow, memory (default: all). --jobs is the number of jobs of the section
memory, --requests that of the other loads.
Throughput is in drawings per second of the service's processor time, which other load on the machine affects less than
wall time. Exits with 1 if a promise is broken. Each section starts its own service, on a Unix socket in a temporary
folder.
"""

import argparse
import contextlib
import json
import os
import random
import resource
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FLOOR_PLAN = ROOT / "examples/floor-plan.svg"
DRAWINGS = [ROOT / "examples" / name for name in ("floor-plan.svg", "schematic.svg", "chart.svg", "bracket.svg")]
TICKS = os.sysconf("SC_CLK_TCK")
QUERY = "format=pdf"

failures = []


def expect(holds, text):
    print(("    kept: " if holds else "    NOT KEPT: ") + text, flush=True)
    if not holds:
        failures.append(text)


def children(pid):
    try:
        return [int(word) for word in Path(f"/proc/{pid}/task/{pid}/children").read_text().split()]
    except OSError:
        return []


class Service:
    """A running service with its own temporary folder."""

    def __init__(self, tool, *arguments):
        self.folder = tempfile.TemporaryDirectory(prefix="orvprint-serve-")
        self.socket = self.folder.name + "/s.sock"
        self.log = open(self.folder.name + "/log", "w+")
        self.process = subprocess.Popen(
            [tool, "serve", "--socket", self.socket, "--quiet", *arguments], stderr=self.log,
            env={**os.environ, "SOURCE_DATE_EPOCH": "0"})
        end = time.monotonic() + 60
        while '"started"' not in Path(self.log.name).read_text():
            if self.process.poll() is not None or time.monotonic() > end:
                sys.exit("the service does not start: " + Path(self.log.name).read_text())
            time.sleep(0.02)

    def workers(self):
        return [worker for fork in children(self.process.pid) for worker in children(fork)]

    def all(self):
        forks = children(self.process.pid)
        return [self.process.pid, *forks, *self.workers()]

    def cpu(self):
        """Returns the processor seconds of all processes, including children that have ended."""
        ticks = 0
        for pid in self.all():
            with contextlib.suppress(OSError):
                fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
                ticks += sum(int(field) for field in fields[11:15])
        return ticks / TICKS

    def memory(self):
        """Returns MB: resident memory of the main process, and proportional memory (PSS) of all processes."""
        def of(pid, name):
            with contextlib.suppress(OSError):
                for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
                    if line.startswith(name + ":"):
                        return int(line.split()[1]) / 1024
            return 0.0
        return of(self.process.pid, "Rss"), sum(of(pid, "Pss") for pid in self.all())

    def metrics(self):
        with socket.socket(socket.AF_UNIX) as client:
            client.connect(self.socket)
            client.sendall(b"GET /metrics HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n")
            text = b"".join(iter(lambda: client.recv(65536), b"")).decode()
        return {line.rpartition(" ")[0]: float(line.rpartition(" ")[2])
                for line in text.splitlines() if line.startswith("orvprint_")}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        expect(self.process.wait(timeout=120) == 0, "the service ends with 0")
        self.log.close()
        self.folder.cleanup()


class Bench:
    def __init__(self, options):
        self.tool, self.load_tool = options.tool, options.load
        self.jobs, self.requests = options.jobs, options.requests

    def load(self, service, clients, requests, rate=0, drawings=(FLOOR_PLAN,), hostile=(), query=QUERY):
        command = [self.load_tool, service.socket, str(clients), str(requests), str(rate), query, *map(str, drawings)]
        if hostile:
            command += ["--", *map(str, hostile)]
        run = subprocess.run(command, capture_output=True, text=True, timeout=7200)
        if run.returncode != 0:
            sys.exit(f"serve_load failed: {run.stderr}")
        return json.loads(run.stdout)

    def processes(self, count=60):
        """Measures the processor seconds per drawing when each has its own process."""
        with tempfile.TemporaryDirectory() as folder:
            command = [self.tool, str(FLOOR_PLAN), "-o", folder + "/x.pdf"]
            subprocess.run(command, check=True)
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            for _ in range(count):
                subprocess.run(command, check=True)
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
        return (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime) / count

    def throughput(self):
        alone = self.processes()
        print(f"  a process each: {1e3 * alone:.2f} ms of processor time, {1 / alone:.0f} a second and core")
        for query in (QUERY, QUERY + "&findings=true"):
            for clients in (1, 8, 64):
                with Service(self.tool) as service:
                    self.load(service, 8, 400, query=query)
                    before = service.cpu()
                    result = self.load(service, clients, self.requests, query=query)
                    used = (service.cpu() - before) / result["requests"]
                print(f"  {query}, {clients} clients: {result['rate']:.0f} a second; {1e3 * used:.2f} ms of processor "
                      f"time, {1 / used:.0f} a second and core; median {result['p50']:.2f} ms, p99 {result['p99']:.2f}")
                expect(result["statuses"] == {"200": result["requests"]} and result["wrong"] == 0, "all answered, none wrong")
                if query != QUERY:
                    continue
                expect(alone / used >= 2.5, f"{alone / used:.1f} times a process each (2.5)")
                expect(1 / used >= 500, f"{1 / used:.0f} a second and core (500)")

    def latency(self):
        with Service(self.tool) as service:
            self.load(service, 8, 400)
            full = self.load(service, 8, self.requests // 2)["rate"]
            result = self.load(service, 64, self.requests, rate=0.7 * full)
        print(f"  at {0.7 * full:.0f} of {full:.0f} a second: median {result['p50']:.2f} ms, p99 {result['p99']:.2f}, "
              f"longest {result['max']:.2f}")
        expect(result["p99"] <= 5 * result["p50"], f"p99 is {result['p99'] / result['p50']:.1f} times the median (5)")

    def hostile(self):
        bad = sorted(path for path in (ROOT / "tests/hostile").rglob("*.svg*") if path.is_file())
        with tempfile.TemporaryDirectory() as folder:
            bad += make_hostile(Path(folder))
            with Service(self.tool, "--time-limit", "5") as service:
                result = self.load(service, 8, self.requests, drawings=DRAWINGS, hostile=bad)
        print(f"  {len(bad)} hostile drawings, answered {result['hostile']}; good ones {result['statuses']}, "
              f"median {result['p50']:.2f} ms, p99 {result['p99']:.2f}")
        expect(set(result["statuses"]) == {"200"}, "good drawings are all printed")
        expect(result["wrong"] == 0, "none is wrong")
        expect(result["unanswered"] == 0, "nobody is without an answer")

    def killed(self):
        with Service(self.tool) as service:
            stop, kills = threading.Event(), [0]

            def kill():
                while not stop.wait(0.05):
                    workers = service.workers()
                    if workers:
                        with contextlib.suppress(ProcessLookupError):
                            os.kill(random.choice(workers), signal.SIGKILL)
                            kills[0] += 1

            thread = threading.Thread(target=kill)
            thread.start()
            result = self.load(service, 8, self.requests, drawings=DRAWINGS)
            stop.set()
            thread.join()
            retries = service.metrics()["orvprint_job_retries_total"]
        print(f"  {kills[0]} workers killed, {retries:.0f} jobs tried again: {result['statuses']}")
        expect(result["unanswered"] == 0 and sum(result["statuses"].values()) == self.requests, "every job has an answer")
        expect(result["wrong"] == 0, "none is wrong")

    def slow(self):
        with Service(self.tool) as service:
            self.load(service, 8, 400)
            before = self.load(service, 8, self.requests // 2)
            held = []
            body = FLOOR_PLAN.read_bytes()
            head = b"POST /print?format=pdf HTTP/1.1\r\nHost: x\r\nContent-Length: %d\r\n\r\n" % len(body)
            for i in range(200):
                client = socket.socket(socket.AF_UNIX)
                client.connect(service.socket)
                # A partial request head, a partial drawing, or a complete request whose response is never read.
                client.sendall((head[:20], head + body[:1000], head + body)[i % 3])
                held.append(client)
            result = self.load(service, 8, self.requests // 2)
            for client in held:
                client.close()
        print(f"  without slow clients: {before['rate']:.0f} a second, p99 {before['p99']:.2f} ms; with 200: "
              f"{result['rate']:.0f}, {result['p99']:.2f}")
        expect(result["statuses"] == {"200": self.requests // 2} and result["wrong"] == 0, "the others are all answered")

    def memory(self):
        parts = 10
        with Service(self.tool) as service:
            self.load(service, 8, 2000)
            samples = []
            for _ in range(parts):
                result = self.load(service, 8, self.jobs // parts, drawings=DRAWINGS)
                expect(set(result["statuses"]) == {"200"} and result["wrong"] == 0, f"{result['requests']} jobs")
                samples.append(service.memory())
            print("  MB of the service / of all its processes: " + ", ".join(f"{own:.1f}/{all_:.1f}" for own, all_ in samples))
            metrics = service.metrics()
            counted = sum(value for name, value in metrics.items() if name.startswith("orvprint_jobs_total"))
            expect(counted == 2000 + self.jobs // parts * parts, f"{counted:.0f} jobs are counted")
            expect(metrics["orvprint_held_bytes"] == 0, "nothing is held")
        expect(samples[-1][0] <= 1.1 * samples[0][0] + 2, "the service's memory is flat")
        expect(samples[-1][1] <= 1.3 * samples[0][1] + 8, "that of all processes is flat")


def make_hostile(folder):
    """Malformed drawings, and drawings that exceed limits of time, memory, depth or expansion."""
    texts = {
        "cut": "<svg width='9' height='9'><g",
        "deep": "<svg width='9' height='9'>" + "<g>" * 100000 + "</g>" * 100000 + "</svg>",
        "many": "<svg width='9' height='9'>" + "<rect width='1' height='1'/>" * 300000 + "</svg>",
        "huge": "<svg width='1e9' height='1e9'><rect width='1' height='1'/></svg>",
        "entities": "<!DOCTYPE svg [<!ENTITY a 'aaaaaaaaaa'>" +
                    "".join(f"<!ENTITY {b} '{('&' + a + ';') * 10}'>" for a, b in zip("abcdefghi", "bcdefghij")) +
                    "]><svg width='9' height='9'><text>&j;</text></svg>",
        "fan": "<svg xmlns:xlink='http://www.w3.org/1999/xlink' width='9' height='9'><defs><rect id='d0' width='1' height='1'/>" +
               "".join(f"<g id='d{i + 1}'>" + f"<use xlink:href='#d{i}'/>" * 10 + "</g>" for i in range(9)) +
               "</defs><use xlink:href='#d9'/></svg>",
        "noise": "\x00\x01\x02" * 1000,
        "empty": "",
    }
    paths = []
    for name, text in texts.items():
        path = folder / (name + ".svg")
        path.write_text(text)
        paths.append(path)
    return paths


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", default=str(ROOT / "build/release/bin/orvprint"))
    parser.add_argument("--load", default=str(ROOT / "build/release/bin/serve_load"))
    parser.add_argument("--requests", type=int, default=8000)
    parser.add_argument("--jobs", type=int, default=20000)
    parser.add_argument("sections", nargs="*")
    options = parser.parse_args()
    sections = ["throughput", "latency", "hostile", "killed", "slow", "memory"]
    bench = Bench(options)
    print(f"{os.cpu_count()} processors, load {os.getloadavg()[0]:.1f} at the beginning")
    for section in options.sections or sections:
        if section not in sections:
            sys.exit(f"there is no section {section}: {', '.join(sections)}")
        print(section, flush=True)
        getattr(bench, section)()
    print(f"load {os.getloadavg()[0]:.1f} at the end; {len(failures)} promises not kept")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
