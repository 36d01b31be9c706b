#!/usr/bin/env python3
"""What an input costs when it is four times as long: nothing may grow faster than its size to the power of 1.1.

Each kind of input has one thing of which there are many. The program reads it in three lengths. What an input of one takes is
taken away, and the exponent is the slope between the others: of instructions (callgrind) up to four times the
length in the table, of memory at the peak up to the longest. Arguments name some kinds."""

import concurrent.futures
import itertools
import json
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile

from support import build, figure

LIMIT = 1.1
THREE = "".join(f"<choice-{letter}>{letter}</choice-{letter}>" for letter in "abc")
LEARNING = ["--objectives", "learning"]
OUT = ["--form-out", "o.form.json", "--document-out", "o.ktd"]


def question(identity, info="", text="t", kind="mc", more=""):
    return (f"<question type='{kind}' question-id='{identity}'{more}><text>{text}</text><choices>{THREE}</choices>"
            f"<answer>B</answer><info>{info}</info></question>")


def test(*questions, version="", declared=""):
    return f"{declared}<examview><header><version>{version}</version></header>{''.join(questions)}</examview>"


def field(name, graded=True, labels="ABC"):
    return {"name": name, "graded": graded, "choiceLabels": list(labels)}


def form(*fields, regions=None):
    regions = regions or [{"name": one["name"], "questions": [one]} for one in fields]
    return json.dumps({"format": "hedro34-form", "version": 1, "pages": [{"regions": regions}]})


def document(questions, **more):
    return json.dumps({"format": "hedro34-ktd", "version": 1, "questions": questions, **more})


def merge(*tests, options=()):
    return ["merge", "--form", "f", *OUT, "--report", "o.html", "--messages", "o.messages", *options, *tests]


def cases(text):
    """All ways to write a text in small letters and capitals."""
    return map("".join, itertools.product(*((letter, letter.upper()) for letter in text)))


def objectives(names):
    return "".join(f"<objective><id>{name}</id></objective>" for name in names)


def questions_of(n):
    return [question(i, objectives(["Area"])) for i in range(n)]


def fields_of(n):
    return form(*(field(f"Q{i}") for i in range(n)))


# Name; how many, for the time and at most for the memory; and of so many the files and the command. Exit code 5 where keys stand
# twice.
KINDS = {
    "attributes": (10_000, 160_000, lambda n: ({"t": test(question(1, more="".join(f" a{i}='v'" for i in range(n))))}, ["show", "t"])),
    "names": (10_000, 160_000, lambda n: ({"t": test(question(1, "".join(f"<n{i}>x</n{i}>" for i in range(n))),
                                            *(f"<m{i}/>" for i in range(n)))}, ["show", "t"])),
    "entities": (5_000, 80_000, lambda n: ({"t": test(
        question(1, text="".join(f"&e{i};" for i in range(n))),
        declared=f"<!DOCTYPE examview [<!ENTITY e0 'x'>{''.join(f'<!ENTITY e{i} {chr(39)}&e0;{chr(39)}>' for i in range(1, n))}]>",
    )}, ["show", "t"])),
    "text": (200_000, 3_200_000, lambda n: ({"t": test(question(1, text="word " * n)), "f": fields_of(1)}, merge("t"))),
    "paragraphs": (10_000, 160_000, lambda n: ({"t": test(question(1, text="<para>a <i>word</i></para>" * n)), "f": fields_of(1)},
                                      merge("t"))),
    "questions": (2_000, 32_000, lambda n: ({"t": test(*questions_of(n)), "f": fields_of(n)}, merge("t", options=LEARNING))),
    "questions shown": (2_000, 32_000, lambda n: ({"t": test(*questions_of(n))}, ["show", "--json", "t"])),
    "questions compared": (2_000, 32_000, lambda n: (
        {"a": test(*questions_of(n), version="A"), "b": test(*questions_of(n)[::-1], version="B")}, ["compare", "a", "b"])),
    "questions of versions": (1_000, 16_000, lambda n: (
        {"a": test(*questions_of(n), version="A"), "b": test(*questions_of(n)[::-1], version="B"),
         "f": form(field("V", False, "AB"), *(field(f"Q{i}") for i in range(n)))},
        merge("a", "b", options=["--sequence-question", "1"]))),
    "choices": (2_000, 32_000, lambda n: ({"t.ktd": document([{
        "name": "Q1", "graded": True, "choiceLabels": [f"L{i}" for i in range(n)], "correctAnswerCount": n,
        "answerKey": [f"({','.join(f'L{i}' for i in range(n))})"],
        "numericAnswerKey": [f"({','.join(str(i + 1) for i in range(n))})"]}]),
        "f": form(field("Q1", labels=[f"L{i}" for i in range(n)]))}, merge("t.ktd"))),
    "objectives": (5_000, 640_000, lambda n: ({"t": test(question(1, objectives(f"o{i}" for i in range(n))), question(2)),
                                      "f": fields_of(2)}, merge("t", options=LEARNING))),
    "objectives in any case": (2_048, 262_144, lambda n: (
        {"t": test(question(1, objectives(itertools.islice(cases("fractionsanddecimals"), n)))), "f": fields_of(1)},
        merge("t", options=LEARNING))),
    "keys in any case": (1_024, 16_384, lambda n: (
        {"t": test(*(question(key) for key in itertools.islice(cases("abcdefghijklm"), n)))},
        ["show", "--messages", "o.messages", "t"])),
    "versions": (25, 1_600, lambda n: (
        {"f": form(field("V", False, [f"v{i}" for i in range(n)]), *(field(f"Q{i}") for i in range(5))),
         **{f"t{i}": test(*questions_of(5), version=f"v{i}") for i in range(n)}},
        merge(*(f"t{i}" for i in range(n)), options=["--sequence-question", "1"]))),
    "fields": (2_000, 32_000, lambda n: ({"t": test(*questions_of(1)), "f": fields_of(n)}, merge("t"))),
    "fields of a region": (1_000, 16_000, lambda n: ({"t": test(*questions_of(1)), "f": form(
        regions=[{"name": "R", "groupNumber": 1, "questions": [field(f"Q{i}", graded) for i in range(n)]}
                        for graded in (True, False)])}, merge("t"))),
    "orders": (500, 8_000, lambda n: ({"d": document(
        [{"name": f"Q{i}", "graded": i > 0, "choiceLabels": ["A", "B"], "answerKey": ["A"]} for i in range(4)],
        versions={"sequenceQuestion": 1, "versionAnswers": [f"v{i}" for i in range(n)], "orders": [[1, 2, 3, 4]] * n})},
        ["report", "--out", "o.html", "d"])),
    "places of an order": (2_000, 32_000, lambda n: ({"d.ktd": document(
        [{"name": f"Q{i}", "graded": i > 0, "choiceLabels": ["A", "B"], "answerKey": ["A"]} for i in range(n + 1)],
        versions={"sequenceQuestion": 1, "versionAnswers": ["A", "B"],
                  "orders": [[*range(1, n + 2)], [1, *range(n + 1, 1, -1)]]})}, ["show", "d.ktd"])),
    "messages": (2_000, 32_000, lambda n: ({"t": test(*(question(i, kind="essay") for i in range(n)), question("x")),
                                    "f": fields_of(1)}, merge("t"))),
}


def run(make, n, *command):
    """What a command that goes before the program says on standard error, with an input of that length."""
    files, words = make(n)
    with tempfile.TemporaryDirectory() as folder:
        for file, content in files.items():
            pathlib.Path(folder, file).write_text(content, encoding="utf-8")
        done = subprocess.run([*command, PROGRAM, *words], cwd=folder, check=False, text=True, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    if done.returncode not in (0, 5):
        sys.exit(f"{words} with a length of {n}: exit code {done.returncode}\n{done.stderr[-3000:]}")
    return done.stderr


def instructions(make, n):
    said = run(make, n, "valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null")
    return int(re.search(r"Collected : (\d+)", said)[1])


def memory(make, n):
    """In KiB. (Not by the resources of a child of this process: their peak begins at the size of the process itself.)"""
    return int(re.search(r"^peak (\d+)$", run(make, n, "time", "--format=peak %M"), re.MULTILINE)[1])


def exponent(nothing, shorter, longer, least=0):
    """Of one figure for an input of one, one of some length and one four times as long; a growth of `least` is none."""
    if longer - shorter <= least:
        return 0.0
    return math.log((longer - nothing) / (shorter - nothing), 4) if shorter > nothing else math.inf


def main():
    chosen = {kind: KINDS[kind] for kind in sys.argv[1:] or KINDS}
    worse = []
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = {kind: [pool.submit(measure, make, n) for measure, n in
                       [(instructions, 1), (instructions, length), (instructions, 4 * length),
                        (memory, 1), (memory, longest // 4), (memory, longest)]]
                for kind, (length, longest, make) in chosen.items()}
        for kind, results in runs.items():
            figures = [run.result() for run in results]
            time, space = exponent(*figures[:3]), exponent(*figures[3:], least=1024)
            figure(f"{kind:<24} time {time:.2f}  memory {space:.2f}")
            if max(time, space) > LIMIT or time < 0.8:  # less: not all of the input is looked at
                worse.append(kind)
    if worse:
        sys.exit(f"grows faster than to the power of {LIMIT}, or hardly at all: {', '.join(worse)}")


PROGRAM = build("optimised", "hedro34") / "hedro34"
main()
