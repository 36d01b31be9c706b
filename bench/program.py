#!/usr/bin/env python3
"""CPU time of `hedro34 merge` on 10,000 questions against a Python that parses the same file with xml.etree.ElementTree and
does nothing else.

usage: bench/program.py [BUILD]     the folder with hedro34 and hedro34_bench, build/bench unless named
"""
import pathlib
import resource
import subprocess
import sys
import tempfile

QUESTIONS = 10_000
ROUNDS = 7


def cpu_seconds(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    build = sys.argv[1] if len(sys.argv) > 1 else str(root / "build/bench")
    program = f"{build}/hedro34"
    with tempfile.TemporaryDirectory() as folder:
        test, form = f"{folder}/test.xml", f"{folder}/form.json"
        subprocess.run([f"{build}/hedro34_bench", "--generate", str(QUESTIONS), test], check=True)
        subprocess.run([program, "form", "--questions", str(QUESTIONS), "--out", form], check=True)
        merge = [program, "merge", "--objectives", "learning", "--form", form, "--form-out", f"{folder}/out.json",
                 "--document-out", f"{folder}/out.ktd", test]
        parse = [sys.executable, "-c", "import sys, xml.etree.ElementTree as e; e.parse(sys.argv[1])", test]
        start = [sys.executable, "-c", "import xml.etree.ElementTree"]
        times = {"merge": [], "parse": [], "start": []}
        for _ in range(ROUNDS):
            for name, command in (("merge", merge), ("parse", parse), ("start", start)):
                times[name].append(cpu_seconds(command))
    merged, parsed, started = (min(times[name]) for name in ("merge", "parse", "start"))
    ratio = merged / parsed
    print(f"hedro34 merge {merged:.3f} s; Python parsing the same file {parsed:.3f} s, {started:.3f} s of it to start")
    print(f"process to process {ratio:.2f}, at most 1.00{'' if ratio <= 1 else '  EXCEEDED'}; "
          f"without Python's start {merged / (parsed - started):.2f}")
    return 0 if ratio <= 1 else 1


if __name__ == "__main__":
    sys.exit(main())
