#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Opens a page in a browser over the DevTools protocol, performs steps on it, and prints their results.

    drive_browser.py BROWSER PAGE.html STEP...

Steps (EXPRESSION is JavaScript):

    eval:EXPRESSION    prints its value as a line of JSON
    click:EXPRESSION   clicks the centre of the element that it returns
    hover:EXPRESSION   moves the pointer there
    key:NAME           presses a key, such as ArrowDown or a
    media:NAME=VALUE   such as prefers-color-scheme=dark, or type=print
    shot:FILE          writes an image of the page

The run fails if the page logs anything, opens a dialog, or requests anything from elsewhere.
"""

import base64
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

KEYS = {"ArrowDown": 40, "ArrowUp": 38, "ArrowLeft": 37, "ArrowRight": 39, "Home": 36, "End": 35, "Enter": 13,
        "Escape": 27, "PageDown": 34, "PageUp": 33, "Tab": 9}


class Browser:
    """A browser that is controlled through pipes."""

    def __init__(self, program, profile):
        to_read, self.to_browser = os.pipe()
        self.from_browser, to_write = os.pipe()

        def give_pipes():
            # The browser expects its pipes at descriptors 3 and 4; whatever they were before is not needed
            # any more.
            high_read, high_write = os.dup2(to_read, 60), os.dup2(to_write, 61)
            os.dup2(high_read, 3)
            os.dup2(high_write, 4)

        # The browser's sandbox fails in containers and as root, and the page is our own.
        self.process = subprocess.Popen(
            [program, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--hide-scrollbars", "--remote-debugging-pipe", f"--user-data-dir={profile}", "--window-size=1400,850"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, close_fds=False,
            preexec_fn=give_pipes, env={**os.environ, "HOME": profile})
        os.close(to_read)
        os.close(to_write)
        self.received, self.number, self.session, self.events = b"", 0, None, []

    def receive(self):
        while b"\0" not in self.received:
            piece = os.read(self.from_browser, 1 << 20)
            if not piece:
                sys.exit("the browser has ended")
            self.received += piece
        message, self.received = self.received.split(b"\0", 1)
        return json.loads(message)

    def order(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self.to_browser, data):]
        while True:
            answer = self.receive()
            if answer.get("id") == self.number:
                if "error" in answer:
                    sys.exit(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def evaluate(self, expression):
        result = self.order("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            sys.exit(f"{expression}: {result['exceptionDetails'].get('exception', {}).get('description')}")
        return result["result"].get("value")

    def open(self, page):
        target = self.order("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.order("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.order(f"{domain}.enable")
        path, _, place = page.partition("#")
        url = pathlib.Path(path).resolve().as_uri() + ("#" + place if place else "")
        self.order("Page.navigate", url=url)
        until = time.monotonic() + 120
        while self.evaluate("document.readyState") != "complete" and time.monotonic() < until:
            time.sleep(0.02)

    def settle(self):
        self.evaluate("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))")

    def complaints(self):
        for event in self.events:
            method, given = event.get("method"), event.get("params", {})
            if method == "Runtime.exceptionThrown":
                yield given["exceptionDetails"].get("exception", {}).get("description", "exception")
            elif method == "Log.entryAdded" and given["entry"]["level"] in ("error", "warning"):
                yield given["entry"]["text"]
            elif method == "Runtime.consoleAPICalled":
                yield "console: " + str([one.get("value") for one in given["args"]])
            elif method == "Page.javascriptDialogOpening":
                yield "dialog: " + given["message"]
            elif method == "Network.requestWillBeSent" and not given["request"]["url"].startswith(("file:", "data:")):
                yield "request: " + given["request"]["url"]


def point_of(browser, expression):
    box = browser.evaluate(f"(() => {{ const box = ({expression}).getBoundingClientRect();"
                           " return [box.left + box.width / 2, box.top + box.height / 2]; })()")
    return {"x": box[0], "y": box[1]}


def do(browser, step):
    kind, _, text = step.partition(":")
    if kind == "eval":
        print(json.dumps(browser.evaluate(text), ensure_ascii=False))
    elif kind in ("click", "hover"):
        at = point_of(browser, text)
        browser.order("Input.dispatchMouseEvent", type="mouseMoved", **at)
        for event in ("mousePressed", "mouseReleased") if kind == "click" else ():
            browser.order("Input.dispatchMouseEvent", type=event, button="left", clickCount=1, **at)
    elif kind == "key":
        key = {"key": text, "windowsVirtualKeyCode": KEYS.get(text, ord(text[0].upper()))}
        if len(text) == 1:
            key["text"] = text
        browser.order("Input.dispatchKeyEvent", type="keyDown", **key)
        browser.order("Input.dispatchKeyEvent", type="keyUp", **key)
    elif kind == "media":
        name, _, value = text.partition("=")
        if name == "type":
            browser.order("Emulation.setEmulatedMedia", media=value)
        else:
            browser.order("Emulation.setEmulatedMedia", features=[{"name": name, "value": value}])
    elif kind == "shot":
        pathlib.Path(text).write_bytes(base64.b64decode(browser.order("Page.captureScreenshot")["data"]))
    else:
        sys.exit(f"no such step: {step}")
    browser.settle()


def main():
    program, page, *steps = sys.argv[1:]
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as profile:
        browser = Browser(program, profile)
        try:
            browser.open(page)
            for step in steps:
                do(browser, step)
            complaints = list(browser.complaints())
        finally:
            browser.process.terminate()
            try:
                browser.process.wait(20)
            except subprocess.TimeoutExpired:
                browser.process.kill()
                browser.process.wait()
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
