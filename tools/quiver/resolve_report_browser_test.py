#!/usr/bin/env python3
"""Uses a report of `quiver resolve` in a headless browser, as a person does.

usage: resolve_report_browser_test.py QUIVER [FOLDER]

QUIVER is the built program. With FOLDER pictures of the page are kept there. Ends with status 77,
for "skipped", when there is no Chromium.
"""

import base64
import hashlib
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

SKIPPED = 77
BROWSERS = ["chromium-headless-shell", "chromium", "chromium-browser"]
HOSTILE = "/ci/work/src/<b>bold<b>&amp;<!--.c"
MANY = 2500


class Browser:
    """A browser that is driven over two pipes: messages of JSON, each with a zero byte behind."""

    def __init__(self, program, folder):
        to_browser, self._out = os.pipe()
        self._in, from_browser = os.pipe()
        # Root, as which tests run in containers, has no sandbox; nothing may ask the network.
        command = [program, "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                   "--disable-quic", "--no-first-run", "--disable-background-networking",
                   "--disable-component-update", "--disable-sync",
                   "--disable-dev-shm-usage", "--remote-debugging-pipe", "--user-data-dir=" + folder, "about:blank"]
        # The browser reads descriptor 3 and writes 4.
        shell = 'exec "$@" 3<&{} 4>&{}'.format(to_browser, from_browser)
        self._process = subprocess.Popen(["bash", "-c", shell, "bash"] + command,
                                         pass_fds=[to_browser, from_browser],
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self._reader = os.fdopen(self._in, "rb")
        self._writer = os.fdopen(self._out, "wb", 0)
        self._count = 0
        self._session = None
        self.events = []
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self._session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(domain + ".enable")

    def close(self):
        self._session = None
        self.call("Browser.close")
        self._process.wait(60)
        self._reader.close()
        self._writer.close()

    def _read(self):
        message = bytearray()
        while (byte := self._reader.read(1)) != b"\0":
            if not byte:
                raise RuntimeError("the browser has ended")
            message += byte
        return json.loads(message)

    def call(self, method, **parameters):
        self._count += 1
        message = {"id": self._count, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        self._writer.write(json.dumps(message).encode() + b"\0")
        while (answer := self._read()).get("id") != self._count:
            self.events.append(answer)
        if "error" in answer:
            raise RuntimeError(answer["error"])
        return answer["result"]

    def open(self, path):
        self.events.clear()
        self.call("Page.navigate", url="file://" + path)
        while not self.took("Page.loadEventFired"):
            self.events.append(self._read())

    def took(self, method):
        return [event["params"] for event in self.events if event.get("method") == method]

    def run(self, script):
        answer = self.call("Runtime.evaluate", expression=script, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(answer["exceptionDetails"])
        return answer["result"].get("value")

    def show_as(self, width, height, scheme, scale=1):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=scale, mobile=width < 600)
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": scheme}])

    def press(self, key, code):
        for kind in ("keyDown", "keyUp"):
            text = {"text": key} if kind == "keyDown" and len(key) == 1 else {}
            if key == "Enter" and kind == "keyDown":
                text = {"text": "\r"}
            self.call("Input.dispatchKeyEvent", type=kind, key=key, windowsVirtualKeyCode=code, **text)

    def picture(self, path):
        data = self.call("Page.captureScreenshot", format="png")["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(data))


def make_checkout(folder):
    """Makes a checkout and a manifest of it; returns the manifest."""
    sources = []

    def add(name, content, local=None):
        sources.append({"path": name, "md5": hashlib.md5(content).hexdigest(), "size": len(content)})
        if local is not None:
            path = folder + "/checkout/" + os.path.basename(name)
            with open(path, "wb") as file:
                file.write(local)

    os.makedirs(folder + "/checkout")
    add("/ci/work/src/zebra.c", b"zebra", b"zebra")
    add("/ci/work/src/alpha.c", b"alpha", b"another content")
    add(HOSTILE, b"hostile", b"hostile")
    add("/ci/work/src/gone.c", b"gone")
    for i in range(MANY):
        add("/ci/work/gen/many_%04d.c" % i, b"many")
    for i in range(30):
        text = b"int f%d;" % i
        add("/ci/work/src/unit_%02d.c" % i, text, text)
    manifest = folder + "/manifest.json"
    with open(manifest, "w", encoding="utf-8") as file:
        json.dump({"modules": [{"path": "/ci/work/out/app", "sources": sources}]}, file)
    return manifest


class Report(unittest.TestCase):
    quiver = None
    program = None
    pictures = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        folder = cls.folder.name
        cls.page = folder + "/report.html"
        run = subprocess.run([cls.quiver, "resolve", make_checkout(folder), "-d",
                              folder + "/checkout,recursive", "--no-servers", "--report", cls.page],
                             capture_output=True, text=True, check=False)
        if run.returncode != 1:
            raise RuntimeError("quiver resolve: status %d: %s" % (run.returncode, run.stderr))
        cls.browser = Browser(cls.program, folder + "/profile")

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()
        cls.folder.cleanup()

    def setUp(self):
        self.browser.show_as(1280, 900, "light")
        self.browser.open(self.page)

    def tearDown(self):
        self.assertEqual(self.browser.took("Runtime.exceptionThrown"), [])

    def names(self):
        return self.browser.run(
            "[...document.querySelectorAll('tr.file')].map(row => row.querySelector('.name').textContent)")

    def count(self):
        return self.browser.run("document.getElementById('count').textContent")

    def filter(self, text):
        self.browser.run("var f = document.getElementById('filter'); f.value = %s;"
                         "f.dispatchEvent(new Event('input'));" % json.dumps(text))

    def click(self, selector):
        self.browser.run("document.querySelector(%s).click()" % json.dumps(selector))

    def keep_picture(self, name):
        if self.pictures:
            self.browser.picture(os.path.join(self.pictures, name + ".png"))

    def test_shows_without_complaint_and_loads_nothing(self):
        self.assertEqual(self.browser.took("Log.entryAdded"), [])
        urls = [event["request"]["url"] for event in self.browser.took("Network.requestWillBeSent")]
        self.assertEqual(urls, ["file://" + self.page])
        self.assertEqual(self.browser.run("document.getElementById('headline').textContent"),
                         "32 of 2,535 files found")

    def test_names_directories_that_cannot_be_searched(self):
        with open(self.page, encoding="utf-8") as file:
            page = file.read()
        texts = {"missing": "1 given directory does not exist/gone",
                 "unreadable": "1 given directory cannot be read/closed"}
        for kind, text in texts.items():
            self.assertTrue(self.browser.run("document.getElementById('%s').hidden" % kind))
            empty = '"%s_directories":[]' % kind
            self.assertEqual(page.count(empty), 1)
            page = page.replace(empty, empty.replace("[]", '["/%s"]' % text.split("/")[1]))
        changed = self.folder.name + "/changed.html"
        with open(changed, "w", encoding="utf-8") as file:
            file.write(page)
        self.browser.open(changed)
        for kind, text in texts.items():
            self.assertEqual(self.browser.run("document.getElementById('%s').textContent" % kind), text)
            self.assertFalse(self.browser.run("document.getElementById('%s').hidden" % kind))

    def test_has_a_bar_for_each_kind(self):
        bars = self.browser.run("[...document.querySelectorAll('.bar')].map(bar => bar.ariaLabel)")
        self.assertEqual(bars, ["0 of 1 found", "32 of 2534 found"])
        widths = self.browser.run("[...document.querySelectorAll('.bar')][1].children.length")
        self.assertEqual(widths, 3, "found by one step, other content, no candidate")
        self.keep_picture("desktop-light")

    def test_makes_rows_as_they_come_into_sight(self):
        self.assertLess(len(self.names()), 600)
        for _ in range(60):
            self.browser.run("new Promise(done => { scrollTo(0, document.body.scrollHeight);"
                             "requestAnimationFrame(() => setTimeout(done, 20)); })")
        self.assertEqual(len(self.names()), 2535)

    def test_filters_by_text(self):
        self.filter("MANY_00")
        self.assertEqual(self.count(), "100 of 2,535")
        self.filter("many 12")
        self.assertTrue(all("many" in name and "12" in name for name in self.names()))
        self.filter("no such file")
        self.assertEqual(self.names(), [])
        self.assertFalse(self.browser.run("document.getElementById('nothing').hidden"))
        self.click("#clear")
        self.assertEqual(self.count(), "2,535 files")

    def test_filters_by_state_and_legend(self):
        self.browser.run("var s = document.getElementById('state'); s.value = 'found';"
                         "s.dispatchEvent(new Event('change'));")
        self.assertEqual(self.count(), "32 of 2,535")
        self.click("#clear")
        self.click(".legend button[data-how=other-content]")
        self.assertEqual(self.names(), ["/ci/work/src/alpha.c"])
        self.click(".legend button[data-how=other-content]")
        self.assertEqual(self.count(), "2,535 files")

    def test_sorts_both_ways_and_back(self):
        recorded = self.names()
        self.filter("/src/")
        for expected, order in ((HOSTILE, "ascending"),
                                ("/ci/work/src/zebra.c", "descending")):
            self.click("th button[data-sort=name]")
            self.assertEqual(self.names()[0], expected)
            self.assertEqual(self.browser.run("document.querySelector('th.name').ariaSort"), order)
        self.click("th button[data-sort=name]")
        self.filter("")
        self.assertEqual(self.names(), recorded)
        self.click("th button[data-sort=state]")
        self.assertEqual(self.names()[0], "/ci/work/out/app", "not found comes first")

    def test_unfolds_the_journal_with_the_keyboard(self):
        self.browser.press("/", 191)
        self.assertEqual(self.browser.run("document.activeElement.id"), "filter")
        self.filter("alpha.c")
        self.browser.run("document.querySelector('tr.file button').focus()")
        self.browser.press("Enter", 13)
        journal = "document.querySelector('tr.journal')"
        text = self.browser.run(journal + ".textContent")
        self.assertIn("Recorded MD5" + hashlib.md5(b"alpha").hexdigest(), text)
        self.assertIn("/checkout/alpha.c has another checksum", text)
        self.assertIn("Step 6: low-priority directories", text)
        self.assertEqual(self.browser.run("document.querySelector('tr.file button').ariaExpanded"),
                         "true")
        self.keep_picture("desktop-unfolded")
        self.browser.press("Enter", 13)
        self.assertIsNone(self.browser.run(journal))

    def test_shows_events_of_every_kind(self):
        folder = self.folder.name
        names = {"path": self.quiver, "symbol_file": {"path": "/ci/none.debug"},
                 "sources": [{"path": "/ci/work/src/zebra.c"}]}
        with open(folder + "/kinds.json", "w", encoding="utf-8") as file:
            json.dump({"modules": [names]}, file)
        server = "http://127.0.0.1:9/none"  # nobody listens
        subprocess.run([self.quiver, "resolve", folder + "/kinds.json", "--map",
                        "/ci/work/src=" + folder + "/checkout", "--symbol-path",
                        "srv*" + folder + "/cache*" + server, "--report", folder + "/kinds.html"],
                       capture_output=True, check=False)
        self.browser.open(folder + "/kinds.html")
        self.browser.run("document.querySelectorAll('tr.file button').forEach(b => b.click())")
        journals = self.browser.run(
            "[...document.querySelectorAll('tr.journal')].map(row => row.textContent)")
        self.assertIn(server, journals[1])
        self.assertIn("Step 5: around the binary", journals[1])
        self.assertIn("Not found", journals[1])
        self.assertIn("Suggestions", journals[2])
        self.assertIn("Step 6: low-priority directories \u00b7\u00a0not run", journals[2])

    def test_keeps_a_journal_open_when_rows_are_sorted(self):
        self.filter("/src/")
        self.click("tr.file button")
        self.click("th button[data-sort=name]")
        self.assertEqual(self.browser.run(
            "document.querySelector('tr.journal').previousSibling.querySelector('.name').textContent"),
            "/ci/work/src/zebra.c")

    def test_shows_names_of_any_kind_as_text(self):
        self.filter("bold")
        self.assertEqual(self.names(), [HOSTILE])
        self.assertEqual(self.browser.run("document.querySelectorAll('b').length"), 2,
                         "the two numbers of the headline")

    def test_runs_no_script_but_its_own(self):
        self.browser.run("var s = document.createElement('script'); s.textContent = 'window.evil = 1';"
                         "document.body.append(s)")
        self.assertEqual(self.browser.run("window.evil"), None)

    def test_fits_on_a_phone(self):
        self.browser.show_as(390, 844, "light", 2)
        self.click("tr.file button")
        self.assertEqual(self.browser.run("document.documentElement.scrollWidth"), 390)
        self.assertEqual(self.browser.run("getComputedStyle(document.querySelector('thead')).display"),
                         "none")
        self.assertNotEqual(self.browser.run("getComputedStyle(document.getElementById('sort')).display"),
                            "none")
        self.keep_picture("phone-light")
        self.browser.run("document.getElementById('tools').scrollIntoView()")
        self.keep_picture("phone-table")

    def test_follows_the_colours_of_the_system(self):
        colour = "getComputedStyle(document.body).backgroundColor"
        light = self.browser.run(colour)
        self.browser.show_as(1280, 900, "dark")
        dark = self.browser.run(colour)
        self.assertGreater(sum(map(int, light[4:-1].split(","))), 600)
        self.assertLess(sum(map(int, dark[4:-1].split(","))), 150)
        self.click("tr.file button")
        self.keep_picture("desktop-dark")
        self.browser.show_as(390, 844, "dark", 2)
        self.browser.run("document.querySelector('tr.file').scrollIntoView()")
        self.keep_picture("phone-dark")


def main():
    if len(sys.argv) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    Report.quiver = sys.argv[1]
    Report.pictures = sys.argv[2] if len(sys.argv) == 3 else None
    Report.program = next(filter(None, map(shutil.which, BROWSERS)), None)
    if not Report.program:
        print("SKIPPED: no Chromium; the report's page was tried in no browser")
        return SKIPPED
    result = unittest.main(argv=sys.argv[:1], exit=False).result
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
