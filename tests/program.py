"""What the script tests share: running the program, and small files for it to read."""

import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

PROGRAM = os.environ.get("HEDRO34_PROGRAM", "the program named by HEDRO34_PROGRAM")
SOURCES = pathlib.Path(os.environ.get("HEDRO34_SOURCE_DIR", pathlib.Path(__file__).resolve().parent.parent))


class Outcome:
    def __init__(self, code, out, err):
        self.code, self.out, self.err = code, out, err
        self.lines = re.findall(r"hedro34: .*", err)  # what the program itself says went wrong
        self.line = self.lines[0] if self.lines else ""

    def __str__(self):
        return f"exit code {self.code}\n--- standard output\n{self.out}--- standard error\n{self.err}"


def run(*arguments, cwd, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, program=PROGRAM, **environment):
    """Runs the program in a folder. No terminal is near unless `stdin` is one."""
    streams = {"stdin": stdin, "stdout": stdout, "stderr": subprocess.PIPE, "env": os.environ | environment}
    done = subprocess.run([program, *arguments], cwd=cwd, timeout=120, check=False, start_new_session=True, **streams)
    return Outcome(done.returncode, (done.stdout or b"").decode(), done.stderr.decode())


class ProgramTest(unittest.TestCase):
    """A test with a folder of its own, in which the program runs."""

    maxDiff = None

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def file(self, name, content):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content if isinstance(content, str) else json.dumps(content), encoding="utf-8")

    def files(self):
        return {path.name: path.read_bytes() for path in self.folder.rglob("*") if path.is_file()}

    def run_program(self, *arguments, code=0, **how):
        """Runs it and expects the exit code and, where something went wrong, a line of the program's own."""
        outcome = run(*arguments, cwd=self.folder, **how)
        self.assertEqual((outcome.code, len(outcome.lines)), (code, int(code != 0)), f"{arguments}\n{outcome}")
        return outcome

    def json_of(self, name):
        return json.loads((self.folder / name).read_bytes())

    def said(self, *kinds):
        """What stands in the messages file "m": titles and answers of boxes, numbers of failures, and the words of notes when
        they are among the kinds that are asked for."""
        kinds = kinds or ("box", "failure")
        shown = {"box": lambda said: (said["title"], said["answer"]), "failure": lambda said: said["number"],
                 "note": lambda said: " ".join(str(said[name]) for name in list(said)[1:])}
        messages = map(json.loads, (self.folder / "m").read_text(encoding="utf-8").splitlines())
        return [shown[said["kind"]](said) for said in messages if said["kind"] in kinds]


def question(identity, kind, answer="", choices=(), text="", info=""):
    """One `question` element."""
    named = "".join(f"<choice-{n}><para>{choice}</para></choice-{n}>" for n, choice in zip("abcdefgh", choices))
    return (
        f"<question type='{kind}' question-id='{identity}'><text>{text or 'Question ' + identity}</text>"
        f"<choices>{named}</choices><answer>{answer}</answer><info>{info}</info></question>"
    )


def examview(*questions, title="", version="", letters="ABCD"):
    """A whole ExamView file. Four letters change nothing: they are those of a test without a sequence of letters."""
    header = f"<header><title>{title}</title><version>{version}</version></header><mc-choice-sequence value='{letters}'/>"
    return f"<?xml version='1.0' encoding='UTF-8'?>\n<examview>{header}{''.join(questions)}</examview>\n"


PARTIAL = "<points scoring-method='RightLessWrong'>1</points>"
THREE = ("one", "two", "three")
