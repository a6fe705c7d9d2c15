"""Drives a headless Chromium through ChromeDriver, by WebDriver's protocol over HTTP."""

import base64
import json
import shutil
import socket
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync",
             "--hide-scrollbars"]


def is_installed():
    return shutil.which("chromium") is not None and shutil.which("chromedriver") is not None


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


class Browser:
    """A browser with one tab; a context manager."""

    def __init__(self, width=1280, height=900):
        self._folder = tempfile.TemporaryDirectory()
        port = free_port()
        self._driver = subprocess.Popen(["chromedriver", f"--port={port}"], stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        self._base = f"http://127.0.0.1:{port}"
        arguments = [*ARGUMENTS, f"--user-data-dir={self._folder.name}", f"--window-size={width},{height}"]
        capabilities = {"browserName": "chrome", "goog:chromeOptions": {"args": arguments},
                        "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"}}
        self._session = ""
        try:
            self._wait_until_ready()
            session = self._call("POST", "/session", {"capabilities": {"alwaysMatch": capabilities}})
        except BaseException:
            self._end()
            raise
        self._session = "/session/" + session["sessionId"]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self._call("DELETE", "")
        finally:
            self._end()

    def _end(self):
        self._driver.terminate()
        self._driver.wait()
        self._folder.cleanup()

    def _wait_until_ready(self):
        for _ in range(100):
            try:
                if self._call("GET", "/status")["ready"]:
                    return
            except urllib.error.URLError:
                pass
            time.sleep(0.1)
        raise RuntimeError("chromedriver does not answer")

    def _call(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self._base + self._session + path, data, method=method,
                                         headers={"Content-Type": "application/json"})
        try:
            with urllib.request.urlopen(request, timeout=120) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(json.load(error)["value"]["message"]) from None

    def open(self, path):
        self._call("POST", "/url", {"url": path.resolve().as_uri()})

    def script(self, code, *arguments):
        """Runs the body of a function and returns its result."""
        return self._call("POST", "/execute/sync", {"script": code, "args": list(arguments)})

    def cdp(self, command, **parameters):
        return self._call("POST", "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def keys(self, keys):
        """Types the keys into the element that has the focus."""
        actions = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self._call("POST", "/actions", {"actions": [{"type": "key", "id": "keyboard", "actions": actions}]})

    def media(self, **features):
        """Emulates media features, such as prefers_color_scheme="dark"."""
        self.cdp("Emulation.setEmulatedMedia",
                 features=[{"name": name.replace("_", "-"), "value": value} for name, value in features.items()])

    def resize(self, width, height=900):
        self.cdp("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1,
                 mobile=False)

    def console(self):
        """The messages of the console since the last call."""
        return [entry["message"] for entry in self._call("POST", "/se/log", {"type": "browser"})]

    def requests(self):
        """The addresses of all requests since the last call."""
        addresses = []
        for entry in self._call("POST", "/se/log", {"type": "performance"}):
            event = json.loads(entry["message"])["message"]
            if event["method"] == "Network.requestWillBeSent":
                addresses.append(event["params"]["request"]["url"])
        return addresses

    def screenshot(self, path, whole=False):
        shot = self.cdp("Page.captureScreenshot", format="png", captureBeyondViewport=whole)
        path.write_bytes(base64.b64decode(shot["data"]))

    def pdf(self, path):
        path.write_bytes(base64.b64decode(self._call("POST", "/print", {})))
