"""A client for one headless Chromium: commands and events as JSON over a pipe, with a time limit on everything."""

import base64
import contextlib
import fcntl
import json
import os
import pathlib
import select
import shutil
import signal
import subprocess
import tempfile
import time

ARGUMENTS = (
    "--headless=new", "--remote-debugging-pipe", "--no-first-run", "--disable-gpu", "--disable-dev-shm-usage",
    "--disable-background-networking", "--disable-component-update", "--disable-extensions", "--disable-sync",
    "--no-default-browser-check", "--no-pings", "--hide-scrollbars", "--force-color-profile=srgb", "--lang=en-GB",
    "--host-resolver-rules=MAP * ~NOTFOUND",
)  # fmt: skip


class BrowserError(Exception):
    """The browser is missing, has ended, refused a command or took too long."""


def can_be_sandboxed():
    """Its sandbox is not for root, and needs namespaces of its own, which a container may not give."""
    if os.getuid() == 0:
        return False
    tried = subprocess.run(["unshare", "--user", "--map-root-user", "true"], capture_output=True, timeout=10, check=False)
    return tried.returncode == 0


class Browser:
    """Starts with the first line of a `with` and has ended behind it, whatever happened."""

    def __init__(self, seconds=30):
        self.seconds = seconds  # for one command
        self.sent = 0
        self.unread = b""
        self.pages = {}

    def __enter__(self):
        program = shutil.which("chromium")
        if not program:
            raise BrowserError("there is no chromium; scripts/setup browser installs it")
        with contextlib.ExitStack() as stack:
            home = stack.enter_context(tempfile.TemporaryDirectory(prefix="hedro34 browser ", ignore_cleanup_errors=True))
            self.log = stack.enter_context(open(pathlib.Path(home, "log"), "w+", encoding="utf-8", errors="replace"))
            sandbox = [] if can_be_sandboxed() else ["--no-sandbox"]
            self.start([program, *ARGUMENTS, *sandbox, f"--user-data-dir={home}/profile"], home)
            stack.callback(self.end)
            self.command("Browser.getVersion")
            self.stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self.stack.close()

    def start(self, command, home):
        # The browser reads from 3 and writes to 4, so its ends of the pipes first go out of the way of these numbers.
        theirs_in, self.ours_out = os.pipe()
        self.ours_in, theirs_out = os.pipe()
        high = [fcntl.fcntl(end, fcntl.F_DUPFD_CLOEXEC, 20) for end in (theirs_in, theirs_out)]

        def as_three_and_four():
            os.dup2(high[0], 3)
            os.dup2(high[1], 4)

        folders = {name: home for name in ("HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME")}
        self.process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log, pass_fds=(3, 4), cwd=home,
            preexec_fn=as_three_and_four, start_new_session=True, env=os.environ | folders,
        )  # fmt: skip
        for end in (theirs_in, theirs_out, *high):
            os.close(end)

    def end(self):
        with contextlib.suppress(BrowserError, OSError):
            self.command("Browser.close", seconds=5)
        try:
            self.process.wait(timeout=5)
        except subprocess.TimeoutExpired:
            pass
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait(timeout=10)
        os.close(self.ours_in)
        os.close(self.ours_out)

    def command(self, method, session=None, seconds=None, **parameters):
        """Sends a command and gives its result; what happens on pages meanwhile is kept there."""
        deadline = time.monotonic() + (seconds or self.seconds)
        self.sent += 1
        number = self.sent
        message = {"id": number, "method": method, "params": parameters} | ({"sessionId": session} if session else {})
        self.write(json.dumps(message).encode() + b"\0", deadline, method)
        while True:
            answer = self.message(deadline, method)
            if answer.get("id") != number:
                continue
            if "error" in answer:
                raise BrowserError(f"{method}: {answer['error']['message']}")
            return answer["result"]

    def write(self, data, deadline, what):
        while data:
            if not select.select([], [self.ours_out], [], max(0, deadline - time.monotonic()))[1]:
                raise BrowserError(f"{what}: the browser takes no command")
            try:
                data = data[os.write(self.ours_out, data[:4096]) :]
            except BrokenPipeError:
                raise BrowserError(f"{what}: {self.why_ended()}") from None

    def message(self, deadline, what):
        """The next message; one that is an event of a page goes to the page as well."""
        parts = [self.unread]
        while b"\0" not in parts[-1]:
            if not select.select([self.ours_in], [], [], max(0, deadline - time.monotonic()))[0]:
                self.unread = b"".join(parts)
                raise BrowserError(f"{what}: no answer from the browser in time")
            parts.append(os.read(self.ours_in, 1 << 20))
            if not parts[-1]:
                raise BrowserError(f"{what}: {self.why_ended()}")
        text, _, self.unread = b"".join(parts).partition(b"\0")
        message = json.loads(text)
        page = self.pages.get(message.get("sessionId"))
        if page is not None and "method" in message:
            page.events.append((message["method"], message["params"]))
        return message

    def why_ended(self):
        self.log.seek(0)
        lines = [line.strip() for line in self.log if line.strip()]
        return f"the browser has ended: {lines[-1] if lines else 'without a word'}"

    @contextlib.contextmanager
    def page(self, width=800, height=900, **media):
        """An empty page, which is gone at the end of the `with`."""
        target = self.command("Target.createTarget", url="about:blank")["targetId"]
        session = self.command("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        page = self.pages[session] = Page(self, session)
        try:
            for domain in ("Page", "Runtime", "Log", "Network", "DOM", "Accessibility"):
                page.command(f"{domain}.enable")
            page.look(width, height, **media)
            yield page
        finally:
            del self.pages[session]
            with contextlib.suppress(BrowserError):
                self.command("Target.closeTarget", targetId=target)


class Page:
    """One page: what it shows, and all that it reported (`events`: pairs of method and parameters)."""

    def __init__(self, browser, session):
        self.browser, self.session, self.events = browser, session, []

    def command(self, method, seconds=None, **parameters):
        return self.browser.command(method, self.session, seconds, **parameters)

    def open(self, path, seconds=30):
        """Opens a file and waits for its load to end."""
        self.events.clear()
        answer = self.command("Page.navigate", seconds, url=pathlib.Path(path).resolve().as_uri())
        if "errorText" in answer:
            raise BrowserError(f"{path}: {answer['errorText']}")
        deadline = time.monotonic() + seconds
        while not any(method == "Page.loadEventFired" for method, _ in self.events):
            self.browser.message(deadline, "load")
        return self

    def look(self, width, height=900, scale=1, **media):
        """Sets the size of the window and the media: `media="print"`, `scheme="dark"`, `colours="active"`."""
        names = {"scheme": "prefers-color-scheme", "colours": "forced-colors"}
        features = [{"name": name, "value": media.get(key, "")} for key, name in names.items()]
        self.command(
            "Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=scale, mobile=False
        )
        self.command("Emulation.setEmulatedMedia", media=media.get("media", ""), features=features)

    def run(self, script, seconds=None):
        """The value of an expression, or of the promise that it is, as JSON has it."""
        answer = self.command(
            "Runtime.evaluate", seconds, expression=script, returnByValue=True, awaitPromise=True
        )
        if "exceptionDetails" in answer:
            details = answer["exceptionDetails"]
            raise BrowserError(details.get("exception", {}).get("description", details["text"]))
        return answer["result"].get("value")

    def read_out(self):
        """What a screen reader is told: for each node its role, its name, its properties and the path of nodes above it."""
        nodes = {node["nodeId"]: node for node in self.command("Accessibility.getFullAXTree", 60)["nodes"]}
        found = []
        waiting = [(identity, ()) for identity, node in nodes.items() if node.get("parentId") not in nodes]
        while waiting:
            identity, above = waiting.pop()
            node = nodes[identity]
            if not node.get("ignored"):
                made = Spoken(node, above)
                found.append(made)
                above = (*above, made)
            waiting += [(child, above) for child in reversed(node.get("childIds", [])) if child in nodes]
        return found

    def picture(self, path, whole=True):
        """A PNG of the whole page, or of what is in the window."""
        how = {"captureBeyondViewport": True} if whole else {}
        if whole:
            size = self.command("Page.getLayoutMetrics")["cssContentSize"]
            how["clip"] = {"x": 0, "y": 0, "width": size["width"], "height": size["height"], "scale": 1}
        answer = self.command("Page.captureScreenshot", 60, format="png", **how)
        pathlib.Path(path).write_bytes(base64.b64decode(answer["data"]))

    def print(self, path, paper=(8.27, 11.69), seconds=60):
        """A PDF, on A4 unless other inches are given, as the page's own style wants it printed."""
        answer = self.command(
            "Page.printToPDF", seconds, paperWidth=paper[0], paperHeight=paper[1], printBackground=False,
            preferCSSPageSize=False,
        )  # fmt: skip
        pathlib.Path(path).write_bytes(base64.b64decode(answer["data"]))


class Spoken:
    """A node of the accessibility tree."""

    def __init__(self, node, above):
        self.role = node["role"]["value"]
        self.name = node.get("name", {}).get("value", "")
        self.properties = {one["name"]: one["value"].get("value") for one in node.get("properties", [])}
        self.above = above

    def inside(self, role):
        """The nearest node above it with this role."""
        return next((node for node in reversed(self.above) if node.role == role), None)
