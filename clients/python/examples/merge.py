"""The whole road of a merge: load a test, clean it, merge it with a form, save form and document, print the keys.

    python3 merge.py                              # examples/biology.xml with examples/biology.form.json
    python3 merge.py --form F --out DIR TEST ...  # the first test is merged; the others are its versions

Message boxes and failures go to the Python objects below. `--library FILE` takes a library that is not registered.
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

try:
    import hedro34
except ModuleNotFoundError:  # in the source folder, without an installation
    sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
    import hedro34

SAMPLES = Path(__file__).resolve().parents[3] / "examples"


class Boxes:
    """What the library would show in a window. 1 is OK and 2 Cancel; flag 1 offers both."""

    def Show(self, text: str, flags: int, title: str) -> int:
        print(f"[{title}] {text}", file=sys.stderr)
        return 1


class Errors:
    """Receives the failures that the library reports, and counts them."""

    count = 0

    def RaiseError(self, number: object, extra: int, description: str, location: str, *others: object) -> None:
        self.count += 1
        print(f"failure {number}: {description} ({location})", file=sys.stderr)


def load(path: Path) -> hedro34.types.clsHEDROTest:
    test = hedro34.create("HEDRO34.clsHEDROTest")
    test.ImportObjectives = hedro34.HEDROTestImportObjectives.Learning
    if not test.LoadXML(path):
        sys.exit(hedro34.last_file_error() or f"{path}: no question was loaded")
    return test


def merge(form: Path, tests: list[Path], out: Path, sequence_question: int) -> None:
    engine = hedro34.create("HEDRO34.clsHEDRO")
    errors = Errors()
    engine.SetError(errors)
    try:
        template = hedro34.create("HEDRO34.FormTemplate")
        if not template.Load(form):
            sys.exit(f"cannot read the form: {hedro34.last_file_error()}")
        engine.TemplateIn = template
        engine.TemplateOut = hedro34.create("HEDRO34.FormTemplate")
        engine.SequenceQuestion = sequence_question
        for path in tests:
            engine.Tests.Add(load(path))
        first = engine.Tests[1]

        if not engine.RemoveInvalid():
            sys.exit("no question of a kind that a sheet can carry")
        if not engine.ValidTestVersions():
            sys.exit("the versions do not hold the same questions")
        if len(engine.Tests) > 1:
            if not len(first.Sequences):
                first.Sequences.AddDefault(first.Questions, first.Version)
            for position in range(2, len(engine.Tests) + 1):
                if not first.AddSequence(engine.Tests[position]):
                    sys.exit("a version is refused")
        if not engine.Merge():
            sys.exit("the test and the form do not go together")
        if errors.count:
            sys.exit("nothing is saved: a question may be missing and the keys behind it moved up")

        stem = tests[0].stem
        for saved, name in ((engine.TemplateOut, f"{stem}.form.json"), (engine.WENKTD, f"{stem}.ktd")):
            if not saved.Save(out / name):
                sys.exit(f"cannot write: {hedro34.last_file_error()}")
        for number, question in enumerate(first.Questions, 1):
            print(f"{number:3} {first.CorrectAnswersAsString(number):10} {question.QuestionText}")
        if errors.count:
            sys.exit("the results are saved, but not all of them could be printed")
    finally:
        engine.SetError(None)


def main() -> None:
    parser = argparse.ArgumentParser(description="Merges a test with a form.")
    parser.add_argument("tests", nargs="*", type=Path, default=[SAMPLES / "biology.xml"])
    parser.add_argument("--form", type=Path, default=SAMPLES / "biology.form.json")
    parser.add_argument("--out", type=Path, default=Path("."), help="the folder of the results")
    parser.add_argument("--sequence-question", type=int, default=0, help="the field of the version identifier")
    parser.add_argument("--library", type=Path, help="a library file that is not registered")
    arguments = parser.parse_args()
    try:
        if arguments.library:
            hedro34.load(arguments.library)
        platform = hedro34.create("HEDRO34.Platform")
        platform.MessageBox = Boxes()
        try:
            merge(arguments.form, arguments.tests, arguments.out, arguments.sequence_question)
        finally:
            platform.MessageBox = None
    except hedro34.Error as error:
        sys.exit(str(error))


if __name__ == "__main__":
    main()
