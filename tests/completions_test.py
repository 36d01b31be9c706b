#!/usr/bin/env python3
"""The manual page and the completions of bash, zsh and fish, each tried in its shell; a shell that is not there is skipped."""

import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import tempfile
import time
import unittest

from program import ProgramTest

MANUAL = os.environ["HEDRO34_MANUAL"]
COMMANDS = ["show", "compare", "merge", "report", "form"]
NAMES = ["a.xml", "my unit.ktd", "b.ktd", "sheet.form.json", "page.html", "other.json", "it's.txt"]

# What is typed, and what is offered there.
ROWS = [
    ("hedro34 ", COMMANDS),
    ("hedro34 me", ["merge"]),
    ("hedro34 --v", ["--version"]),
    ("hedro34 form --", ["--help", "--questions", "--choices", "--versions", "--per-page", "--out"]),
    ("hedro34 show --js", ["--json"]),
    ("hedro34 show --json --mess", ["--messages"]),
    ("hedro34 merge --form-", ["--form-out"]),
    ("hedro34 show --partial-credit ", ["ok", "cancel", "ask"]),
    ("hedro34 compare --partial-credit=c", ["cancel"]),
    ("hedro34 show --objectives l", ["learning", "local"]),
    ("hedro34 merge --objectives=learning,st", ["learning,state"]),
    ("hedro34 show ", ["a.xml", "my unit.ktd", "b.ktd", "sheet.form.json", "folder"]),
    ("hedro34 compare a.xml ", ["a.xml", "my unit.ktd", "b.ktd", "folder"]),
    ("hedro34 merge --form ", ["sheet.form.json", "folder"]),
    ("hedro34 report --out=", ["page.html", "folder"]),
    ("hedro34 report ", ["my unit.ktd", "b.ktd", "folder"]),
    ("hedro34 show --messages o", ["other.json"]),
    ("hedro34 merge -- fol", ["folder"]),
    ("hedro34 show folder/", ["folder/in side.txt"]),  # no such file: all of them
    ("hedro34 form --choices ", []),
]


# What `completed` below makes of the keys of each shell.
INSERTED = [["show", "my unit.ktd", "it's.txt", "folder/in side.txt"], ["show", "my unit.ktd", "--messages=other.json"]]


class Completions(ProgramTest):
    def setUp(self):
        super().setUp()
        for name in [*NAMES, "folder/in side.txt"]:
            self.file(name, "")

    def script(self, shell):
        if not shutil.which(shell):
            self.skipTest(f"not installed: {shell}")
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        path = pathlib.Path(folder.name) / "_hedro34"
        path.write_bytes(subprocess.run([MANUAL, shell], check=True, capture_output=True, timeout=60).stdout)
        return path

    def output(self, *command):
        home = {"HOME": str(self.folder.parent), "XDG_CONFIG_HOME": str(self.folder.parent), "LC_ALL": "C.UTF-8"}
        done = subprocess.run(command, cwd=self.folder, env=os.environ | home, check=True, capture_output=True, timeout=60)
        self.assertEqual(done.stderr, b"", command)
        return done.stdout.decode()

    def completed(self, *keys, name):
        """Keys behind "hedro34 show", then those that write what is then on the line, word by word, to a file."""
        return ["hedro34 show ", *keys, *self.end(name)]

    def end(self, name):
        return [f" >typed{name}\x01printf '%s\\n' \r"]

    def typed(self, command, keys, rows):
        """Types into a shell at a terminal and gives the words in each of the files that were written."""
        process, terminal = pty.fork()
        if process == 0:
            os.chdir(self.folder)
            os.environ |= {"HOME": str(self.folder.parent), "TERM": "xterm", "LC_ALL": "C.UTF-8"}
            os.execvp(command[0], command)
        said, deadline, keys = b"", time.monotonic() + 60, [*keys, "exit\r"]
        while time.monotonic() < deadline:
            try:
                if select.select([terminal], [], [], 0.1)[0]:
                    said += os.read(terminal, 65536)
                elif keys and said:
                    os.write(terminal, keys.pop(0).encode())
            except OSError:
                break
        os.close(terminal)
        os.waitpid(process, 0)
        files = [self.folder / f"typed{row}" for row in range(1, rows + 1)]
        self.assertTrue(all(map(pathlib.Path.is_file, files)), said.decode(errors="replace"))
        return [file.read_text(encoding="utf-8").splitlines()[1:] for file in files]

    def test_bash(self):
        script = self.script("bash")
        ask = r"""
            source "$1"
            # As the line editor parts words: at blanks and at "=".
            line=${2//=/ = }; read -ra COMP_WORDS <<<"$line"
            [[ $line == *" " ]] && COMP_WORDS+=("")
            [[ $2 == *= ]] && unset 'COMP_WORDS[-1]'
            COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
            _hedro34
            printf '%s\n' "${COMPREPLY[@]}"
        """
        for line, words in ROWS:
            with self.subTest(line):
                found = self.output("bash", "-c", ask, "bash", str(script), line).splitlines()
                self.assertEqual(sorted(filter(None, found)), sorted(words))
        keys = [f". {script}\r", *self.completed("my\t", " it\\'\t", " fol\t", "i\t", name="1"),
                *self.completed('"my\t', " --messages=oth\t", name="2")]
        typed = self.typed(["bash", "--norc", "--noprofile", "-i"], keys, 2)
        self.assertEqual(typed, INSERTED)

    def test_zsh(self):
        script = self.script("zsh")
        keys = ["bindkey -e; autoload -U compinit; compinit -u -D\r", f". {script}\r",
                "zle -C all complete-word _generic; bindkey '^T' all; zstyle ':completion:all:*' completer _all_matches _complete\r",
                "zstyle ':completion:all:*' insert yes\r"]
        for number, (line, _) in enumerate(ROWS, 1):
            keys += [line, "\x14", *self.end(number)]
        typed = self.typed(["zsh", "-f", "-i"], keys, len(ROWS))
        for (line, words), found in zip(ROWS, typed):
            with self.subTest(line):
                before = len(line.split()) - (not line.endswith(" ")) - 1
                found = [re.sub("^--[a-z-]+=|/$", "", word) for word in found[before:]]
                self.assertEqual(sorted(filter(None, found)), sorted(words))
        keys = ["bindkey -e; autoload -U compinit; compinit -u -D\r", f". {script}\r",
                *self.completed("my\t", " it\\'\t", " fol\t", "i\t", name="1"),
                *self.completed('"my\t', " --messages=oth\t", name="2")]
        self.assertEqual(self.typed(["zsh", "-f", "-i"], keys, 2), INSERTED)

    def test_fish(self):
        script = self.script("fish")
        ask = "source $argv[1]; for line in $argv[2..-1]; complete -C $line; echo; end"
        found = self.output("fish", "--no-config", "-c", ask, str(script), *(line for line, _ in ROWS))
        for (line, words), answer in zip(ROWS, found.split("\n\n")):
            with self.subTest(line):
                offered = [re.sub("^--[a-z-]+=|/?(\t.*)?$", "", word) for word in answer.splitlines()]
                self.assertEqual(sorted(filter(None, offered)), sorted(words))
        keys = [f"source {script}\r", *self.completed("my\t", " it\\'\t", " fol\t", "i\t", name="1"),
                *self.completed('"my\t', " --messages=oth\t", name="2")]
        self.assertEqual(self.typed(["fish", "--no-config", "-i"], keys, 2), INSERTED)

    @unittest.skipUnless(shutil.which("man"), "not installed: man-db")
    def test_manual_page_says_what_help_says(self):
        page = subprocess.run([MANUAL, "man"], check=True, capture_output=True, timeout=60).stdout
        environment = os.environ | {"LC_ALL": "C.UTF-8", "MANWIDTH": "1000", "MANOPT": "--nh --nj"}
        done = subprocess.run(["man", "--warnings", "-l", "-"], input=page, capture_output=True, timeout=60, env=environment,
                              check=True)
        self.assertEqual(done.stderr, b"")
        _, _, *sections = re.split(r"\n(?=\S|   hedro34 )", done.stdout.decode())
        parts = {section.splitlines()[0].strip(): " ".join(section.split()) for section in sections}
        for command in COMMANDS:
            text, count = self.run_program(command, "--help").out.partition("\nA file")[0], 0
            for name, required, help_text in re.findall(r"^  (\S.*?)( REQUIRED)?(?: Excludes: \S+)?\s{2,}((?:.*\n {4,})*.*)\n", text, re.M):
                if "--help" in name or "..." in name and not name.startswith("--"):
                    continue
                count += 1
                self.assertIn(f" {name} {' '.join(help_text.split())}{' (needed)' if required and '--' in name else ''}.",
                              parts[f"hedro34 {command}"])
            self.assertGreater(count, 2, text)
        codes = re.findall(r"^  (\d  .+)\n", self.run_program("--help").out, re.M)
        self.assertEqual(parts["EXIT STATUS"], " ".join(["EXIT STATUS", *codes]).replace("  ", " "))
        self.assertIn("[--json] TEST TEST [TEST ...] hedro34 merge", parts["SYNOPSIS"])
        self.assertIn("hedro34 show [--objectives LIST] [--state XX] [--odd-distractors-only] [--partial-credit ANSWER] "
                      "[--json | --csv] [--messages FILE] FILE [FILE ...]", parts["SYNOPSIS"])


if __name__ == "__main__":
    unittest.main()
