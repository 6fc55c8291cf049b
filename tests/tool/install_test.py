"""Tests the installed files: install_test.py BUILD SOURCES COMPILER."""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD, SOURCES = (Path(argument).resolve() for argument in sys.argv[1:3])
COMPILER = sys.argv[3]


def run(*command, **options):
    result = subprocess.run(command, capture_output=True, text=True, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command}: {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


def options_of_help(text):
    names = {name for line in re.findall(r"^  (-\S+)", text, re.M) for name in line.split("=")[0].split(",")}
    return names - {"-h", "--help"}


def options_of_page(text):
    names = {name for tag in re.findall(r"^\.T[PQ]\n(.*)", text, re.M)
             for name in re.findall(r"-[\w-]+", tag.replace("\\-", "-").replace("\\fI", " "))
             if re.match(r"\.B\w* \\-", tag)}
    return names - {"-h", "--help"}


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.root = Path(tempfile.mkdtemp(prefix="zaf-install-"))
        cls.addClassCleanup(shutil.rmtree, cls.root)
        cls.prefix = cls.root / "usr"
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.pages = {path.stem: path.read_text() for path in (cls.prefix / "share/man/man1").iterdir()}
        cls.env = {**os.environ, "PATH": f"{cls.prefix}/bin:{os.environ['PATH']}"}

    def help(self, *command):
        return run("zaf", *command, "--help", env=self.env)

    def test_man_pages_have_the_options_of_the_help(self):
        commands = re.findall(r"^  (\w+) ", self.help().split("Subcommands:")[1], re.M)
        self.assertEqual(re.findall(r"^\.TP\n\.BR (\w+)$", self.pages["zaf"], re.M), commands)
        self.assertEqual(options_of_page(self.pages["zaf"]), options_of_help(self.help()))
        shared = re.sub(r"(?s)\.SS Outputs.*?(?=\.SS)", "", self.pages["zaf-convert"])
        for command in commands:
            if command == "completion":
                continue
            page = self.pages["zaf-" + command]
            if "its options for inputs, messages, report and speed apply" in page.replace("\n", " "):
                page += shared
            with self.subTest(command):
                self.assertEqual(options_of_page(page), options_of_help(self.help(command)))
        usage = subprocess.run(["Zaf2Xml", "-h"], env=self.env, capture_output=True, text=True).stderr
        names = {name for pair in re.findall(r"\[(-\w+) \| (-\w+)", usage) for name in pair}
        self.assertEqual(options_of_page(self.pages["Zaf2Xml"]) | {"-h", "-help"}, names)

    def test_example_converts_and_compares(self):
        self.assertLessEqual(len((SOURCES / "examples/convert_and_compare.cpp").read_text().splitlines()), 40)
        build = self.root / "example"
        run("cmake", "-S", SOURCES / "examples", "-B", build, f"-DCMAKE_PREFIX_PATH={self.prefix}",
            f"-DCMAKE_CXX_COMPILER={COMPILER}", "-DCMAKE_BUILD_TYPE=Debug")
        run("cmake", "--build", build)
        sample, output = SOURCES / "samples/guestbook.zaf", self.root / "guestbook.xzf"
        self.assertIn("equal\n", run(build / "convert_and_compare", sample, output))
        self.assertEqual(output.read_text("latin-1"),
                         run("zaf", "convert", sample, "-o", "-", env=self.env, encoding="latin-1"))

    @unittest.skipUnless(shutil.which("fish"), "no fish")
    def test_fish_completes(self):
        env = {**self.env, "HOME": str(self.root), "XDG_DATA_DIRS": f"{self.prefix}/share"}
        words = run("fish", "-c", "complete -C 'zaf convert --ex'", env=env).split()
        self.assertEqual(set(words), {"--extension", "--exclude", "--existing"})

    @unittest.skipUnless(shutil.which("zsh"), "no zsh")
    def test_zsh_completes(self):
        # Calls the function like zsh; the first call must already offer completions.
        script = """fpath=($1/share/zsh/site-functions $fpath); autoload -Uz _zaf
                    words=(zaf convert --ex) CURRENT=3
                    compadd() { print -l -- $@ }; _files() { }; _zaf; _zaf"""
        words = run("zsh", "-fc", script, "zsh", self.prefix).split()
        self.assertEqual(words.count("--existing"), 2)
        self.assertNotIn("completion", words)

    @unittest.skipUnless(shutil.which("parallel"), "no GNU Parallel")
    def test_page_on_many_machines(self):
        page = (SOURCES / "docs/many-machines.md").read_text()
        recipes = re.findall(r"```sh\n(.*?)```", page, re.S)
        self.assertEqual(len(recipes), 3)
        tree = self.root / "TREE"
        for i in range(40):
            (tree / str(i % 3)).mkdir(parents=True, exist_ok=True)
            shutil.copy(SOURCES / "samples/guestbook.zaf", tree / str(i % 3) / f"{i}.zaf")
        damaged = tree / "0/3.zaf"
        whole = damaged.read_bytes()
        damaged.write_bytes(whole[:-40])
        env = {**self.env, "HOME": str(self.root)}

        def follow(recipe):
            recipe = re.sub(r"^hosts=\S+", "hosts=2/:", recipe, flags=re.M)
            return run("bash", "-c", recipe, cwd=self.root, env=env)

        follow(recipes[0])
        self.assertEqual(len(list(self.root.glob("OUT/*/*.xzf"))), 39)
        self.assertIn("TREE/0/3.zaf", follow(recipes[1]))
        damaged.write_bytes(whole)
        follow(recipes[2])
        self.assertEqual(len(list(self.root.glob("OUT/*/*.xzf"))), 40)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
