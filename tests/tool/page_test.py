"""Opens pages of zaf show in headless Chromium: page_test.py ZAF SAMPLES [CHROMIUM].

Folds and searches by keyboard, scrolls through 10,000 actions, and looks for scripts of the file that run."""

import json
import os
import re
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

ZAF, SAMPLES = (Path(argument).resolve() for argument in sys.argv[1:3])
CHROMIUM = sys.argv[3] if len(sys.argv) > 3 else "chromium"
ACTIONS, SECONDS, MEGABYTES = 10000, 2, 20
HACK = "</script><script>hacked=1</script><img src=x onerror='hacked=1'>"


class Browser:
    """Chromium, driven by its debugging protocol over a pair of pipes."""

    def __init__(self, directory):
        from_browser, its_output = os.pipe()
        its_input, to_browser = os.pipe()
        self.process = subprocess.Popen(
            ["sh", "-c", 'exec "$0" "$@" 3<&%d 4>&%d' % (its_input, its_output), CHROMIUM, "--headless=new",
             "--no-sandbox", "--disable-gpu", "--hide-scrollbars", "--remote-debugging-pipe",
             "--user-data-dir=%s" % directory], pass_fds=[its_input, its_output], stderr=subprocess.DEVNULL)
        os.close(its_input), os.close(its_output)
        self.input, self.output = os.fdopen(to_browser, "wb"), os.fdopen(from_browser, "rb")
        self.count, self.rest, self.events, self.session = 0, b"", [], {}
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = {"sessionId": self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]}
        for domain in "Page", "Runtime":
            self.call(domain + ".enable")

    def receive(self):
        while b"\0" not in self.rest:
            self.rest += self.output.read1(1 << 20)
        message, self.rest = self.rest.split(b"\0", 1)
        return json.loads(message)

    def call(self, method, **parameters):
        self.count += 1
        message = {"id": self.count, "method": method, "params": parameters, **self.session}
        self.input.write(json.dumps(message).encode() + b"\0")
        self.input.flush()
        while True:
            answer = self.receive()
            if answer.get("id") == self.count:
                if "error" in answer:
                    raise RuntimeError(answer["error"])
                return answer["result"]
            self.events.append(answer["method"])
            if answer["method"] == "Runtime.exceptionThrown":
                raise RuntimeError(answer["params"]["exceptionDetails"])

    def run(self, script):
        result = self.call("Runtime.evaluate", expression=script, awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in result:
            raise RuntimeError(result["exceptionDetails"])
        return result["result"].get("value")

    def open(self, page):
        self.events.clear()
        self.call("Page.navigate", url=page.as_uri())
        while "Page.loadEventFired" not in self.events:
            self.call("Runtime.evaluate", expression="0")
            time.sleep(0.01)

    def press(self, *keys):
        codes = {"Enter": 13, "Escape": 27, "End": 35, "Home": 36, "ArrowLeft": 37, "ArrowUp": 38, "ArrowRight": 39, "ArrowDown": 40, "Tab": 9}
        for key in keys:
            text = {} if len(key) > 1 and key != "Enter" else {"text": "\r" if key == "Enter" else key}
            self.call("Input.dispatchKeyEvent", type="keyDown", key=key, windowsVirtualKeyCode=codes.get(key, 0), **text)
            self.call("Input.dispatchKeyEvent", type="keyUp", key=key, windowsVirtualKeyCode=codes.get(key, 0))

    def close(self):
        self.call("Browser.close")
        self.process.wait()


def document(actions, program, title="Large"):
    return ('<?xml version="1.0" encoding="ISO-8859-1"?>\n<ZAF Version="0x02000002" Title="%s"><Program>%s</Program>'
            "<Actions>%s</Actions></ZAF>" % (title, program, actions))


def large_document():
    """Searches with conditions, three levels deep, one of them with a unique name."""
    actions, program = [], []
    for i in range(0, ACTIONS, 4):
        names = ["%s%05d" % (kind, i + j) for j, kind in enumerate(["Group", "Search", "If", "Result"])]
        if i == ACTIONS // 2:
            names[1] = "Needle"
        program.append('<ActionRef Ref="%s"><ActionRef Ref="%s"/><ActionRef Ref="%s"><ActionRef Ref="%s"/></ActionRef></ActionRef>' % tuple(names))
        actions.append(
            '<GroupAction ID="%s"/><SearchAction ID="%s"><Tables><TableName>CUSTOMERS</TableName></Tables><Criteria>'
            "<CriteriaItem><TableName>CUSTOMERS</TableName><ColumnName>ID</ColumnName><Operator>iseq</Operator>"
            "<Value>%d</Value></CriteriaItem></Criteria><Comments>Looks for a customer.</Comments></SearchAction>"
            '<IfAction ID="%s"><Expression>&lt;@ROWS> &gt; %d</Expression></IfAction><ResultAction ID="%s"/>'
            % (names[0], names[1], i, names[2], i, names[3]))
    return document("".join(actions), "".join(program))


def hostile_document(source):
    """A document with a script as the text of each element and attribute that may have one."""
    escaped = HACK.replace("<", "&lt;")
    text = source.read_text("latin-1")
    text = re.sub(r"<!\[CDATA\[.*?\]\]>", "x", text, flags=re.S)
    text = re.sub(r">([^<>\n]*\S[^<>\n]*)</(?!EndType|Isolation|DSType|UserName|Password)", ">" + escaped + "</", text)
    text = re.sub(r'\b(Title|Author|Revision|LoopLabel|DefaultValue|Name|Value)="[^"]*"', r'\1="%s"' % escaped, text)
    names = re.findall(r'<\w+Action [^>]*\bID="([^"]*)"', text)
    for number, name in enumerate(names):
        text = re.sub(r'\b(ID|Ref)="%s(\.\w+)?"' % re.escape(name), r'\1="&lt;script>hacked=%d&lt;/script>\2"' % number, text)
    return text


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory(prefix="zaf-page-", ignore_cleanup_errors=True)
        cls.root = Path(cls.scratch.name)
        cls.browser = Browser(cls.root / "profile")

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()
        cls.scratch.cleanup()

    def page(self, name, content=None):
        """The page of a sample, or of a document, which becomes a legacy file first."""
        source = SAMPLES / name
        if content is not None:
            (self.root / "in.xml").write_text(content, "latin-1")
            source = self.root / (name + ".zaf")
            subprocess.run([ZAF, "convert", self.root / "in.xml", "-o", source, "--to", "legacy", "-q"], check=True)
        page = self.root / (Path(name).name + ".html")
        subprocess.run([ZAF, "show", source, "--html", page], check=True)
        self.browser.open(page)
        return page

    def selected(self):
        return self.browser.run("document.querySelector('[aria-selected=true] .name')?.textContent")

    def shown(self):
        return self.browser.run("visible.length")

    def test_keyboard_folds_and_searches(self):
        self.page("order-entry.zaf")
        all_shown = self.shown()
        self.assertEqual(all_shown, 17)
        self.browser.press("End")
        self.assertEqual(self.selected(), "Archive")
        self.browser.press("Home", "ArrowDown", "ArrowDown", "ArrowDown", "ArrowDown", "ArrowDown", "ArrowLeft")
        self.assertEqual((self.selected(), self.shown()), ("New_order", all_shown - 6))
        self.browser.press("ArrowRight", "ArrowRight")
        self.assertEqual((self.selected(), self.shown()), ("Begin_order", all_shown))
        self.browser.press("ArrowLeft", "-")
        self.assertEqual(self.shown(), 8)
        self.browser.press("/", *"25 ORDERS")  # Only in the value of a section.
        self.assertEqual(self.browser.run("found.textContent"), "1 match")
        self.assertEqual(self.browser.run("document.activeElement.id"), "query")
        self.browser.press("Enter")
        self.assertEqual(self.selected(), "Open_orders")
        self.browser.press("ArrowDown", "Enter", "Tab", "Tab", "Enter")
        self.assertEqual(self.browser.run("document.querySelectorAll('main details[open]').length"), 1)
        self.browser.run("tree.focus()")
        self.browser.press("Escape", "*")
        self.assertEqual(self.shown(), all_shown)

    def test_marks_losses(self):
        damaged = (SAMPLES / "order-entry.zaf").read_bytes().replace(b"cmnt", b"cmnx") + b"Nobody refers to this."
        (self.root / "damaged.zaf").write_bytes(damaged)
        self.page(self.root / "damaged.zaf")
        count = self.browser.run("data.losses.filter(loss => loss.level === 'loss').length")
        self.assertGreater(count, 1)
        self.assertEqual(self.browser.run("document.querySelectorAll('.losses .loss').length"), count)
        self.browser.press("ArrowDown", "ArrowDown")
        self.assertEqual(self.browser.run("document.querySelectorAll('.sections .state.loss').length"), 1)

    def test_large_file(self):
        self.browser.call("Performance.enable", timeDomain="threadTicks")
        page = self.page("large", large_document())
        # Processor time, which other programs do not affect.
        metrics = {item["name"]: item["value"] for item in self.browser.call("Performance.getMetrics")["metrics"]}
        opened, waited = metrics["TaskDuration"], self.browser.run(
            "performance.getEntriesByType('navigation')[0].loadEventEnd") / 1000
        self.assertEqual(self.shown(), ACTIONS + 1)
        # Scrolls and checks each frame for visible places without a row.
        self.browser.run("""gaps = 0; frames = 0; isWatched = true; (function watch() {
            const box = tree.getBoundingClientRect();
            for (let y = box.top + 15; y < box.bottom; y += 30)
              if (!document.elementFromPoint(box.left + 40, y)?.closest('.row')) ++gaps;
            ++frames; if (isWatched) requestAnimationFrame(watch); })()""")
        for _ in range(40):
            self.browser.call("Input.dispatchMouseEvent", type="mouseWheel", x=100, y=300, deltaX=0, deltaY=9000)
        for place in 0.3, 0.9, 0.1, 1.0:
            self.browser.run("tree.scrollTop = tree.scrollHeight * %f" % place)
            time.sleep(0.1)
        gaps, frames, place = self.browser.run("isWatched = false; [gaps, frames, tree.scrollTop]")
        begin = time.monotonic()
        self.browser.press("/", *"needle")
        searched = (time.monotonic() - begin) / 7
        self.assertEqual(self.browser.run("found.textContent"), "1 match")
        self.browser.press("Enter")
        self.assertEqual(self.selected(), "Needle")
        size = page.stat().st_size / 1e6
        print("%d actions: page of %.1f MB, open in %.2f s (%.2f s on this machine now), %d frames scrolled with %d gaps, %.2f s a key"
              % (ACTIONS, size, opened, waited, frames, gaps, searched))
        self.assertLess(size, MEGABYTES)
        self.assertLess(opened, SECONDS)
        self.assertEqual(gaps, 0)
        self.assertGreater(place, 100000)
        self.assertLess(searched, 0.5)

    def test_nothing_of_the_file_runs(self):
        for source in sorted((SAMPLES / "source").glob("*.xml")):
            if "run-only" in source.name:
                continue
            self.page("hostile-" + source.stem, hostile_document(source))
            self.browser.run("(async () => { for (let i = 0; i < size; ++i) { select(i); "
                             "document.querySelectorAll('details').forEach(d => d.open = true); "
                             "await new Promise(requestAnimationFrame); } })()")
            self.assertIn(HACK, self.browser.run("document.querySelector('dl, main').textContent + document.body.textContent"))
            self.assertEqual(self.browser.run(
                "[typeof hacked, document.scripts.length, document.images.length, document.links.length]"),
                ["undefined", 3, 0, 0])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
