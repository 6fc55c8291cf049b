"""Tests the built program zaf as a whole: command_test.py ZAF SCHEMA SAMPLES."""

import json
import os
import pty
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path
from urllib.parse import unquote_to_bytes

import jsonschema

ZAF, SCHEMA, SAMPLES = (Path(argument).resolve() for argument in sys.argv[1:])
DIFF_SCHEMA = json.loads((SCHEMA.parent / "zaf-diff.schema.json").read_text())
SHOW_SCHEMA = json.loads(SCHEMA.with_name("zaf-show.schema.json").read_text())
SCHEMA = json.loads(SCHEMA.read_text())
TRANSCRIPT = Path(__file__).resolve().with_name("transcript.txt")
GOOD, CLASS = (SAMPLES / "guestbook.zaf").read_bytes(), (SAMPLES / "reports.zcf").read_bytes()
FILES = 300


def run(*arguments, **options):
    options.setdefault("env", {"PATH": os.environ["PATH"]})
    return subprocess.run([ZAF, *map(os.fsencode, arguments)], capture_output=True, **options)


def contents(directory):
    return {p.relative_to(directory): p.read_bytes() for p in Path(directory).rglob("*") if p.is_file()}


def without_times(text):
    return re.sub(rb'"seconds":[0-9.e-]+|in [0-9.]+ s$', b"T", text, flags=re.M)


class CommandTest(unittest.TestCase):
    def setUp(self):
        self.root = Path(tempfile.mkdtemp(prefix="zaf-"))
        self.addCleanup(shutil.rmtree, self.root)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.root)

    def make_tree(self):
        """Hundreds of files; returns how many fail."""
        for i in range(FILES):
            path = self.root / "in" / ("d%d" % (i % 7)) / ("f%03d.%s" % (i, "ZAF" if i % 5 else "zcf"))
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes([GOOD, GOOD + b"left" * (i % 8 == 1), CLASS, GOOD[:-40] if i % 2 else b""][i % 4])
        (self.root / "in" / "d1-").mkdir()
        (self.root / "in" / "d1-" / "x.zaf").write_bytes(GOOD)  # Before d1/ in byte order.
        with open(os.fsencode(self.root) + b"/in/\xff\x01.zaf", "wb") as file:
            file.write(b"none")
        (self.root / "in" / "loop").symlink_to(".")
        return FILES // 4 + 1

    def report(self, path="r.jsonl", complete=True):
        objects = [json.loads(line) for line in (self.root / path).read_bytes().splitlines()]
        validator = jsonschema.Draft202012Validator(SCHEMA)
        for item in objects:
            validator.validate(item)
        if complete:
            self.assertEqual(objects[-1]["summary"]["inputs"], len(objects) - 1)
        return objects[:-1], objects[-1]["summary"]

    def test_jobs_make_no_difference(self):
        failing = self.make_tree()
        seen = []
        for jobs in "1", "2", "5":
            result = run("convert", "in", "-o", "out", "--report", "r.jsonl", "-v", "-j", jobs)
            self.assertEqual(result.returncode, 1)
            seen.append((contents("out"), without_times(result.stderr),
                         without_times(Path("r.jsonl").read_bytes())))
            shutil.rmtree("out")
        self.assertEqual(seen[0], seen[1])
        self.assertEqual(seen[0], seen[2])
        inputs, summary = self.report()
        paths = [os.fsencode(i["input"]) for i in inputs if "input_raw" not in i]
        self.assertEqual(paths, sorted(paths))
        self.assertEqual((summary["failed"], summary["converted"]), (failing, FILES + 2 - failing))
        self.assertEqual(len(seen[0][0]), FILES + 2 - failing)
        self.assertIn(b"in/\xff\\x01.zaf: error: ", seen[0][1])
        self.assertRegex(seen[0][1], rb"\n%d converted, %d failed, 0 skipped, \d+ with losses, "
                         rb"\d+\.\d KB T\n$" % (FILES + 2 - failing, failing))

    def test_retries_what_failed(self):
        failing = self.make_tree()
        run("convert", "in", "-o", "out", "--report", "r.jsonl")
        for item in self.report()[0]:
            if item["status"] == "failed":
                raw = unquote_to_bytes(item["input_raw"]) if "input_raw" in item else item["input"]
                with open(os.fsencode(raw), "wb") as file:
                    file.write(GOOD)
        result = run("convert", "--retry", "r.jsonl", "-o", "out", "--report", "r.jsonl")
        self.assertEqual((result.returncode, self.report()[1]["converted"]), (0, failing))
        self.assertEqual(len(contents("out")), FILES + 2)
        self.assertEqual(run("convert", "--retry", "r.jsonl", "-o", "out").returncode, 3)

    def test_losses(self):
        Path("in").mkdir()
        Path("in/a.zaf").write_bytes(GOOD + b"left")
        Path("in/b.zaf").write_bytes(GOOD)
        sentence = rb"^in/a.zaf: loss: .+ \(bytes-unreferenced at \+0x%X\)$" % len(GOOD)
        for arguments, status, prints in [(["convert", "-o", "out"], 0, False),
                                          (["convert", "-o", "out", "-v"], 0, True),
                                          (["convert", "-o", "out", "--fail-on-loss"], 1, True),
                                          (["check"], 0, True), (["check", "-q"], 0, False),
                                          (["check", "--fail-on-loss"], 1, True)]:
            result = run(*arguments, "in", "--report", "r.jsonl")
            self.assertEqual(result.returncode, status, arguments)
            self.assertEqual(bool(re.search(sentence, result.stderr, re.M)), prints, arguments)
            (lossy, clean), summary = self.report()
            self.assertEqual((lossy["error"], lossy["status"] == "failed"), (None, status == 1))
            self.assertEqual([(loss["code"], loss["offset"], loss["length"]) for loss in lossy["losses"]
                              if loss["level"] == "loss"], [("bytes-unreferenced", len(GOOD), 4)])
            self.assertFalse([loss for loss in clean["losses"] if loss["level"] == "loss"])
            self.assertEqual(summary["with_losses"], 1)
            if arguments[0] == "convert":
                self.assertEqual(len(contents("out")), 2)
                shutil.rmtree("out")
        order = (SAMPLES / "order-entry.zaf").read_bytes()
        run("convert", SAMPLES / "order-entry.zaf", "-o", "order.xml")
        run("convert", SAMPLES / "reports.zcf", "-o", "class.xml")
        document, class_file = Path("order.xml").read_bytes(), Path("class.xml").read_bytes()
        unkept = document.replace(b"<SearchAction ", b'<SearchAction UseDevelopmentDataSource="True" ', 1)
        for content, arguments, code, place in [
                (order, ["check"], None, None),
                (order.replace(b"DBO.SHIPMENTS", bytes(13)), ["check"], "not-readable", "Open_orders"),
                (document, ["check"], None, None), (unkept, ["check"], "not-restored", "Open_orders"),
                (class_file, ["convert", "--to", "legacy", "-o", "x.zaf"], "value-unknown", None),
                (class_file, ["convert", "--to", "legacy", "-o", "x.zcf"], None, None),
                (order.replace(b"vers", b"form"), ["check"], "section-dropped", None),
                (order.replace(b"vers", b"none"), ["check"], "section-unknown", None),
                (order.replace(b"vers", b"titl"), ["check"], "section-repeated", None),
                (GOOD.replace(b"dbug", b"form").replace(b"athr", b"dbug"), ["check"], "section-malformed", None),
                (order.replace(b"ordr", b"crit"), ["check"], "record-dropped", "Open_orders"),
                (document.replace(b"<Operator>", b"<Operator>" + 128 * b"t", 1), ["check"], "text-cut",
                 "Open_orders"),
                (order.replace(b"Takes", b"T\1kes"), ["check"], "character-dropped", None),
                (order.replace(b"Takes", b"T\rkes"), ["check"], "line-end-changed", None),
                (document.replace(b"Takes", b"&#256;"), ["check"], "character-replaced", None),
                (document.replace(b"<Program>", b"<Program X=''>"), ["check"], "node-ignored", None)]:
            Path("a.zaf").write_bytes(content)
            self.assertEqual(run(*arguments, "a.zaf", "--report", "r.jsonl").returncode, int(code == "not-readable"))
            losses = {(loss["code"], loss["action"]): loss["level"] for loss in self.report()[0][0]["losses"]}
            self.assertEqual(losses, {(code, place): "note" if code == "line-end-changed" else "loss"} if code else {})

    def test_shards_are_a_partition(self):
        self.make_tree()
        lists = [run("convert", "in", "-no", "out", "--shard", "%d/3" % k).stdout.splitlines()
                 for k in (1, 2, 3)]
        whole = run("convert", "in", "-n", "-o", "out").stdout.splitlines()
        self.assertEqual(sorted(sum(lists, [])), sorted(whole))
        self.assertTrue(all(lists) and not Path("out").exists())

    def test_inputs(self):
        self.make_tree()
        for arguments, expected in [
            (["in/d1/../d1/f001.ZAF", "in/d1/f001.ZAF", "in/d1-"], ["in/d1-/x.zaf", "in/d1/../d1/f001.ZAF"]),
            (["in", "in/d1-", "--include", "d1-/*"], ["in/d1-/x.zaf"]),
            (["in", "--no-recurse", "--exclude", "\udcff*"], []),
            (["in", "--exclude", "**", "--include", "**/x.zaf"], ["in/d1-/x.zaf"]),
            (["in", "-e", "zcf", "--include", "d0/f0[", "--include", "d0/f00*"], ["in/d0/f000.zcf"]),
        ]:
            lines = run("convert", *arguments, "-n", "-o", "out").stdout.decode().splitlines()
            self.assertEqual([line.split(" -> ")[0] for line in lines], expected)
        result = run("check", "--files-from", "-", "-0", input=b"in/d1-/x.zaf\0in/d1/f001.ZAF\0no\0")
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"no: error: There is no such file", result.stderr)
        self.assertIn(b"2 checked, 1 failed", result.stderr)
        # The output directory is not an input; an output is not replaced by another input's.
        Path("in/d1-/x.zcf").write_bytes(CLASS)
        self.assertEqual(run("convert", "in/d1-", "-o", "in/d1-/z", "-e", "zaf", "-e", "zcf", "-e",
                             "xzf", "--existing", "overwrite").returncode, 1)
        self.assertEqual(list(contents("in/d1-/z")), [Path("x.xzf")])

    def test_outputs(self):
        Path("a.zaf").write_bytes(GOOD)
        self.assertEqual(run("convert", "a.zaf", "-o", "new/b.xml", "--keep-time").returncode, 0)
        document = Path("new/b.xml").read_bytes()
        self.assertEqual(os.stat("new/b.xml").st_mtime_ns, os.stat("a.zaf").st_mtime_ns)
        self.assertEqual(run("convert", "a.zaf", "-o", "-").stdout, document)
        for existing, status, changes in [("fail", 1, False), ("skip", 0, False), ("newer", 0, False),
                                          ("overwrite", 0, True)]:
            Path("new/b.xml").write_bytes(b"old")
            os.utime("new/b.xml", (2e9, 2e9))
            result = run("convert", "a.zaf", "-o", "new/b.xml", "--existing", existing)
            self.assertEqual(result.returncode, status, existing)
            self.assertEqual(Path("new/b.xml").read_bytes(), document if changes else b"old")
        Path("to/a.xzf").mkdir(parents=True)
        result = run("convert", "a.zaf", "-o", "to", "--existing", "overwrite")
        self.assertRegex(result.stderr, rb"^a.zaf: error: The output to/a.xzf cannot be replaced; .+ \(create\)\n")
        os.utime("new/b.xml", (1e9, 1e9))
        run("convert", "a.zaf", "-o", "new/b.xml", "--existing", "newer", "--verify")
        self.assertEqual(Path("new/b.xml").read_bytes(), document)
        self.assertEqual(run("convert", "new/b.xml", "--to", "legacy", "-o", "legacy/").returncode, 0)
        self.assertEqual(run("convert", "legacy/b.xml.zaf", "-o", "-").stdout, document)
        self.assertEqual(sorted(os.listdir("new")), ["b.xml"])

    def test_wrong_command_lines_do_nothing(self):
        Path("a.zaf").write_bytes(GOOD)
        Path("r.jsonl").write_bytes(b"{}\n")
        for arguments in [[], ["shows", "a.zaf"], ["convert", "a.zaf"], ["convert", "-o", "x"],
                          ["convert", "a.zaf", "-o", "-", "--report", "-"],
                          ["convert", "a.zaf", "a.zaf/../b", "-o", "-"],
                          ["convert", "a.zaf", "-o", "x", "--shard", "3/2"],
                          ["convert", "a.zaf", "-o", "x", "--existing", "ask"],
                          ["convert", "a.zaf", "-o", "x", "-q", "-v"],
                          ["convert", "a.zaf", "-o", "x", "-j", "0"], ["check", "a.zaf", "--report", ""],
                          ["check", ""], ["show", "a.zaf", "--html", ""],
                          ["convert", "a.zaf", "-o", "x", "--report", "a.zaf"],
                          ["convert", "--retry", "r.jsonl", "-o", "x"],
                          ["convert", "--files-from", "none", "-o", "x"], ["convert", ".", "-o", "."]]:
            result = run(*arguments)
            self.assertEqual(result.returncode, 2, arguments)
            self.assertRegex(result.stderr, rb"^zaf: error: .+\n$")
        self.assertEqual(sorted(os.listdir()), ["a.zaf", "r.jsonl"])
        self.assertEqual(run("check", ".", "-e", "none").returncode, 3)

    def test_stops_when_nothing_can_be_written(self):
        self.make_tree()
        Path("file").write_bytes(b"x")
        self.assertEqual(run("convert", "in", "-o", "file/out").returncode, 4)
        self.assertEqual(run("convert", "in", "-o", "out", "--report", "file/r").returncode, 4)
        self.assertFalse(Path("out").exists())
        with open("/dev/full", "wb") as full:
            for arguments in [["--version"], ["completion", "fish"], ["show", "in/d1-/x.zaf"],
                              ["convert", "in", "-nox"]]:
                result = subprocess.run([ZAF, *arguments], stdout=full, stderr=subprocess.PIPE)
                self.assertEqual(result.returncode, 4, arguments)
                self.assertIn(b"Standard output cannot be written", result.stderr)
        self.assertEqual(subprocess.run(["sh", "-c", '"$0" completion fish >&- 2>&-', ZAF]).returncode, 4)
        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))
        result = run("convert", "in/d1-", "-o", "out", preexec_fn=limit)
        self.assertEqual(result.returncode, 4)
        self.assertIn(b"cannot be stored", result.stderr)
        self.assertEqual(contents("out"), {})

    def test_stops_at_a_signal(self):
        self.make_tree()
        for number, status in (signal.SIGINT, 130), (signal.SIGTERM, 143):
            os.mkfifo("r.jsonl")
            with subprocess.Popen([ZAF, "convert", "in", "-o", "out", "-j2", "--report", "r.jsonl"],
                                  stderr=subprocess.PIPE) as process:
                with open("r.jsonl", "rb", buffering=0) as report:
                    lines = report.read(1)  # The pipe is soon full.
                    process.send_signal(number)
                    time.sleep(0.05)
                    lines += report.read() or b""
                    while part := report.read():
                        lines += part
                self.assertIn(b" converted, ", process.stderr.read())
                self.assertEqual(process.wait(), status)
            os.remove("r.jsonl")
            Path("r.jsonl").write_bytes(lines)
            inputs, summary = self.report()
            self.assertLess(summary["inputs"], FILES)
            self.assertEqual(len(contents("out")), summary["converted"])
            self.assertTrue(all(data.endswith(b">\n") for data in contents("out").values()))
            shutil.rmtree("out")
            os.remove("r.jsonl")

    def test_a_terminal_shows_progress_and_colours(self):
        self.make_tree()
        for environment, arguments, color in [({}, [], True), ({"NO_COLOR": "1"}, [], False),
                                              ({"NO_COLOR": "1"}, ["--color", "always"], True)]:
            primary, secondary = pty.openpty()
            process = subprocess.Popen([ZAF, "check", "in", *arguments],
                                       stderr=secondary, env={"TERM": "xterm", **environment})
            os.close(secondary)
            shown = b""
            try:
                while part := os.read(primary, 65536):
                    shown += part
            except OSError:
                pass
            os.close(primary)
            self.assertEqual(process.wait(), 1)
            self.assertEqual(b"\x1b[1;31merror" in shown, color)
        os.mkfifo("r.jsonl")
        for progress in "always", "auto":
            with subprocess.Popen([ZAF, "check", "in", "--progress", progress, "--report", "r.jsonl"],
                                  stderr=subprocess.PIPE) as process, open("r.jsonl", "rb") as report:
                time.sleep(0.3)  # The pipe is full before all is done.
                report.read()
                plain = process.stderr.read()
            shown = re.findall(rb"\r\d+ %, \d+ of 302 files, \S+ KB, \S+ \wB/s, \d+:\d\d left, \d+ failed", plain)
            most = int(10 * (float(re.search(rb"in ([0-9.]+) s\n$", plain)[1]) + 0.1))
            self.assertIn(len(shown), range(1, most + 1) if progress == "always" else [0])

    def test_transcript(self):
        """Runs the commands of transcript.txt in a copy of the samples and compares what they print."""
        shutil.copytree(SAMPLES, ".", dirs_exist_ok=True)
        for command, expected in re.findall(rb"^\$ (.*\n)((?:(?!\$ ).*\n)*)", TRANSCRIPT.read_bytes(), re.M):
            result = subprocess.run(command, shell=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                    env={"PATH": f"{ZAF.parent}:{os.environ['PATH']}"})
            self.assertEqual(without_times(result.stdout), expected, command)
            if b"diff --json" in command:
                jsonschema.validate(json.loads(expected), DIFF_SCHEMA)

    def test_show(self):
        store = {"zaf-report.schema.json": SCHEMA}
        validator = jsonschema.Draft202012Validator(
            SHOW_SCHEMA, resolver=jsonschema.RefResolver.from_schema(SHOW_SCHEMA, store=store))
        for path in [*SAMPLES.glob("*.z?f"), *(SAMPLES / "source").glob("*.xml")]:
            shown = json.loads(run("show", "--json", path).stdout)
            validator.validate(shown)
            tree = run("show", path).stdout.decode()
            self.assertIn(", version %s\n" % shown["version"], tree)
            self.assertEqual([line.split('"')[1] for line in tree.split("\n\n")[1].splitlines()],
                             [action["name"] for action in shown["actions"]])
            self.assertEqual(len(shown["actions"]), shown["counts"]["actions"])
            is_legacy = shown["form"] == "legacy"
            for option, member in ("--sections", "sections"), ("--bytes", "bytes"):
                view = run("show", option, path)
                self.assertEqual(view.returncode, 0 if is_legacy else 1)
                self.assertEqual(len(view.stdout.splitlines()), len(shown.get(member, [])))
            end = 0
            for item in shown.get("bytes", []):
                self.assertEqual(item["offset"], end)
                end += item["length"]
            self.assertEqual(end, path.stat().st_size if is_legacy else 0)
        sample = SAMPLES / "guestbook.zaf"
        Path("kept").write_text("kept")
        for arguments, status in [(["none"], 1), ([], 2), ([sample, sample], 2), ([sample, "--json", "--bytes"], 2),
                                  ([sample, "--html", "kept"], 2), ([sample, "--html", "no/page"], 4)]:
            self.assertEqual(run("show", *arguments).returncode, status)
        self.assertEqual(Path("kept").read_text(), "kept")
        for link in "older", "other":  # A page is replaced in one step, not written over.
            self.assertEqual(run("show", sample, "--html", "page.html").returncode, 0)
            os.link("page.html", link)
        self.assertFalse(os.path.samefile("older", "other"))
        self.assertEqual(Path("page.html").read_bytes(), run("show", sample, "--html", "-").stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
