#!/usr/bin/env python3
"""The program as a whole against what others take for a part of its work, on the same bytes and in one run.

  merge of 10,000 questions, all files read and written     Python that parses the test with xml.etree.ElementTree, CPU time
  the test of 10,000 questions into an object model         xmllint (libxml2's tree) and ElementTree, CPU time
  its form and its data document into objects               jq, which reads them and prints nothing, CPU time
  merge of 50 questions, from process start to its end      the same parse by Python, and a process that does nothing, elapsed

A peer that is not installed is left out. The shortest of some rounds counts, of commands in turn.

usage: bench/program.py [BUILD]     the folder with hedro34 and hedro34_bench, build/bench unless named
"""
import pathlib
import resource
import shutil
import subprocess
import sys
import tempfile
import time

QUESTIONS = 10_000
FEW = 50
PARSE = "import sys, xml.etree.ElementTree as e; e.parse(sys.argv[1])"


def cpu_seconds(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def elapsed_seconds(command):
    start = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    return time.perf_counter() - start


def shortest(measure, commands, rounds):
    """The shortest time of each command, by its name."""
    commands = {name: command for name, command in commands.items() if shutil.which(command[0])}
    times = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            times[name].append(measure(command))
    return {name: min(of_one) for name, of_one in times.items()}


def say(what, measured, peer, limit=None):
    """Prints a ratio; False when it exceeds its limit."""
    if measured is None or peer is None:
        return True
    ratio = measured / peer
    held = limit is None or ratio <= limit
    told = "" if limit is None else f"  at most {limit:.2f}{'' if held else '  EXCEEDED'}"
    print(f"{what:<72} {ratio:6.2f}{told}")
    return held


def make_inputs(program, bench, folder, questions):
    """The test, a form of as many fields, and the words of their merge."""
    test, form = f"{folder}/{questions}.xml", f"{folder}/{questions}.json"
    subprocess.run([bench, "--generate", str(questions), test], check=True)
    subprocess.run([program, "form", "--questions", str(questions), "--out", form], check=True)
    return test, form, [program, "merge", "--objectives", "learning", "--form", form, "--form-out", f"{folder}/out.json",
                        "--document-out", f"{folder}/out.ktd", test]


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    build = sys.argv[1] if len(sys.argv) > 1 else str(root / "build/bench")
    program, bench = f"{build}/hedro34", f"{build}/hedro34_bench"
    with tempfile.TemporaryDirectory() as folder:
        test, form, merge = make_inputs(program, bench, folder, QUESTIONS)
        subprocess.run(merge, check=True, stdout=subprocess.DEVNULL)
        document = shutil.copy(f"{folder}/out.ktd", f"{folder}/document.ktd")
        cpu = shortest(cpu_seconds, {
            "merge": merge,
            "read test": [bench, "--read", test],
            "read form": [bench, "--read", form],
            "read document": [bench, "--read", document],
            "ElementTree": [sys.executable, "-c", PARSE, test],
            "Python": [sys.executable, "-c", "import xml.etree.ElementTree"],
            "xmllint": ["xmllint", "--noout", test],
            "jq form": ["jq", "empty", form],
            "jq document": ["jq", "empty", document],
        }, 7)
        few_test, _, few_merge = make_inputs(program, bench, folder, FEW)
        elapsed = shortest(elapsed_seconds, {
            "merge": few_merge,
            "ElementTree": [sys.executable, "-c", PARSE, few_test],
            "nothing": ["true"],
        }, 40)

    held = say(f"merge of {QUESTIONS:,} questions to ElementTree's parse, process to process", cpu["merge"],
               cpu["ElementTree"], 0.6)
    say("the same without Python's start", cpu["merge"], cpu["ElementTree"] - cpu["Python"])
    say("the test into the object model to ElementTree's parse", cpu["read test"], cpu["ElementTree"])
    say("the same to libxml2's tree (xmllint)", cpu["read test"], cpu.get("xmllint"))
    say("the form into objects to jq", cpu["read form"], cpu.get("jq form"))
    say("the data document into objects to jq", cpu["read document"], cpu.get("jq document"))
    say(f"merge of {FEW} questions to ElementTree's parse, start to end", elapsed["merge"], elapsed["ElementTree"])
    print(f"merge of {FEW} questions: {elapsed['merge'] * 1000:.1f} ms from start to end; a process that does nothing "
          f"{elapsed['nothing'] * 1000:.1f} ms, Python's parse {elapsed['ElementTree'] * 1000:.1f} ms")
    return 0 if held else 1


if __name__ == "__main__":
    sys.exit(main())
