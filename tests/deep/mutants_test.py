#!/usr/bin/env python3
"""Mutations of import, merge and model: one operator, number, condition, text or statement is changed, and a test has to fail.

  tests/deep/mutants_test.py [--all | FILE ...]   a sample, or all, or all of these files

All mutants of a source are compiled at once, each behind a switch (mutants.h); those that need the compiler for the change
itself are built one by one. A mutant meets the tests of hedro34_tests that come past it, and where these notice nothing, the
script tests. What survives with good reason stands in equivalent_mutants.txt.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import resource
import shlex
import subprocess
import sys
import tempfile
import time

from mutations import Source
from support import OUT, SHORT, SOURCES, build, figure, run

ROOMS = ["import", "merge", "model"]
SCRIPTS = ["whole_test", "host_show_test", "host_merge_test", "host_test", "python_client"]
LIST = pathlib.Path(__file__).with_name("equivalent_mutants.txt")
LEAST = 94  # percent of a sample that are noticed: so the list is no way out. What survives without it fails anyway
SAMPLE = 0.05 if SHORT else 0.49  # of all
SLOW = [0, 300, 3000, sys.maxsize]  # milliseconds: tests that take longer wait for those below
HERE = OUT / "mutants"
TREE = HERE / "tree"  # the sources with switches, before the others in the search for headers


def in_parallel(function, items):
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return list(pool.map(function, items))


class Build:
    """Objects of the sources with switches, and in front of the other objects: programs and component with these inside."""

    def __init__(self, sources):
        self.folder = build("asan", "hedro34_tests", "hedro34", "hedro34_component")
        HERE.mkdir(parents=True, exist_ok=True)
        self.sources = {source.name: source for source in sources}
        self.live = {name: [mutant for mutant in source.mutants if mutant.edits] for name, source in self.sources.items()}
        commands = json.loads((self.folder / "compile_commands.json").read_text(encoding="utf-8"))
        self.commands = {str(pathlib.Path(command["file"]).relative_to(SOURCES)): shlex.split(command["command"])
                         for command in commands}
        for name in self.live:
            self.write(name)
        remaining = [name for name in self.sources if name.endswith(".cpp")]
        while remaining:
            outcomes = in_parallel(self.compile, remaining)
            remaining = [name for name, (code, _) in zip(remaining, outcomes) if code]
            self.drop([printed for code, printed in outcomes if code])
        self.tests, self.program, self.component = (
            self.link(target, "") for target in ("hedro34_tests", "hedro34", "libhedro34-component.so.0.1"))

    def write(self, name):
        path, text = TREE / name, '#include "tests/deep/mutants.h"\n' if name.endswith(".cpp") else ""
        text += self.sources[name].switched(self.live[name])
        if name.endswith(".h"):
            text = text.replace("#pragma once\n", '#pragma once\n#include "tests/deep/mutants.h"\n', 1)
        path.parent.mkdir(parents=True, exist_ok=True)
        if not path.is_file() or path.read_text(encoding="utf-8") != text:
            path.write_text(text, encoding="utf-8")

    def object(self, name, suffix=""):
        return HERE / f"{name.replace('/', '_')}{suffix}.o"

    def compile(self, name, source=None, suffix=""):
        words = [word for word in self.commands.get(name, self.commands["tests/merge_test.cpp"])
                 if not word.startswith(("-W", "-g", "-O"))]
        first = words.index(f"-I{SOURCES}")
        words = words[: words.index("-o")]
        words[first:first] = [f"-I{TREE}"]
        command = ["ccache", *words, "-w", "-O0", "-fno-diagnostics-show-caret", "-fdiagnostics-color=never",
                   "-o", self.object(name, suffix), "-c", source or TREE / name]
        done = subprocess.run(command, cwd=self.folder, capture_output=True, text=True, check=False,
                              env={**os.environ, "LC_ALL": "C", "CCACHE_BASEDIR": str(SOURCES)})
        return done.returncode, done.stderr

    def drop(self, outcomes):
        """Takes one switch away for each line with an error, the most suspect."""
        lines = set()
        for printed in outcomes:
            last = None
            for path, line, what in re.findall(r"^(\S+?):(\d+):(?:\d+:)?(.*)", printed, re.MULTILINE):
                path = os.path.normpath(self.folder / path)
                if path.startswith(f"{TREE}/"):
                    last = (path.removeprefix(f"{TREE}/"), int(line) - 1)  # below the line that mutants.h takes
                if "error:" in what and last:
                    lines.add(last)
        suspects = []
        for name, line in lines:
            near = [mutant for mutant in self.live[name] if line - 8 < mutant.line <= line]
            suspects += [max(near, key=lambda mutant: (mutant.line, mutant.rank))] if near else []
        if outcomes and not suspects:
            sys.exit(f"the sources with switches do not compile\n{outcomes[0]}")
        for mutant in suspects:
            if mutant in self.live[mutant.file]:
                self.live[mutant.file].remove(mutant)
        for name in {mutant.file for mutant in suspects}:
            self.write(name)

    def link(self, target, suffix, *replaced):
        """The file that a command of the build links, with our objects before all others."""
        made = HERE / (target + suffix)
        commands = run("ninja", "-C", self.folder, "-t", "commands", target).splitlines()
        words = shlex.split(next(line for line in commands if f" -o {target} " in line).split("&& ", 1)[1])
        words = words[: words.index("&&")]
        words[words.index("-o") + 1] = str(made)
        objects = [str(self.object(name, suffix if name in replaced else "")) for name in self.sources
                   if name.endswith(".cpp")]
        if target == "hedro34_tests":
            self.compile("reached.cpp", SOURCES / "tests/deep/reached.cpp")
            objects.append(str(self.object("reached.cpp")))
        words[1:1] = objects
        run(*words, cwd=self.folder)
        return made

    def alone(self, mutant):
        """The tests with a mutant that has no switch; None where it does not compile."""
        source, suffix = self.sources[mutant.file], f"-{mutant.number}"
        path = HERE / f"{mutant.number}.cpp"
        path.write_text('#include "tests/deep/mutants.h"\n' + source.edited([mutant.plain]), encoding="utf-8")
        code, _ = self.compile(mutant.file, path, suffix)
        return None if code else self.link("hedro34_tests", suffix, mutant.file)


class Judge:
    def __init__(self, built, mutants):
        self.built = built
        self.expected = {line for line in LIST.read_text(encoding="utf-8").splitlines() if line.startswith("hedro34/")}
        missing = self.expected - {str(mutant) for mutant in mutants}
        if missing:
            sys.exit(f"{LIST.name} names what is no mutant of today: {sorted(missing)}")
        properties = json.loads(run("ctest", "--test-dir", built.folder, "--show-only=json-v1"))["tests"]
        self.scripts = {test["name"]: test for test in properties if test["name"] in SCRIPTS}
        self.record()
        failing = [name for name in SCRIPTS if not self.passes(name, 0)]
        if failing:
            sys.exit(f"without a mutant there fails: {', '.join(failing)}")

    def record(self):
        """Which tests come past which mutants, and how long each takes."""
        self.tests_of, self.impossible, self.always, self.times = {}, set(), set(), {}
        with tempfile.TemporaryDirectory() as folder:
            def shard(index):
                return run(self.built.tests, env={"HEDRO34_REACHED": folder, "GTEST_TOTAL_SHARDS": str(os.cpu_count()),
                                                  "GTEST_SHARD_INDEX": str(index)})
            for printed in in_parallel(shard, range(os.cpu_count())):
                self.times |= {name: int(time) for name, time in re.findall(r"OK \] (\S+).* \((\d+) ms\)", printed)}
            for path in pathlib.Path(folder).iterdir():
                for word in path.read_text().split():
                    number = abs(int(word))
                    if word.startswith("-"):
                        self.impossible.add(number)
                    elif path.name == "start":
                        self.always.add(number)
                    else:
                        self.tests_of.setdefault(number, []).append(path.name)

    def runs(self, command, seconds, **environment):
        """Whether a command comes to a good end within so many seconds of the processor."""
        def limits():
            resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        options = "symbolize=0:hard_rss_limit_mb=2000:" + environment.get("ASAN_OPTIONS", "")
        try:
            done = subprocess.run(command, cwd=self.built.folder, env={**os.environ, **environment, "ASAN_OPTIONS": options},
                                  stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  timeout=300, check=False, preexec_fn=limits)
        except subprocess.TimeoutExpired:
            return False
        return done.returncode == 0

    def noticed(self, program, tests, number):
        for least, most in zip(SLOW, SLOW[1:]):
            chosen = [test for test in tests if least <= self.times[test] < most]
            seconds = 5 + 2 * sum(self.times[test] for test in chosen) // 1000
            command = [program, "--gtest_fail_fast", f"--gtest_filter={':'.join(chosen)}"]
            if chosen and not self.runs(command, seconds, HEDRO34_MUTANT=str(number)):
                return True
        return False

    def passes(self, script, number):
        test = self.scripts[script]
        environment = dict(entry.split("=", 1) for entry in
                           next(value["value"] for value in test["properties"] if value["name"] == "ENVIRONMENT"))
        for variable in ("HEDRO34_COMPONENT", "HEDRO34_LIBRARY"):
            if variable in environment:
                environment[variable] = str(self.built.component)
        environment |= {"HEDRO34_PROGRAM": str(self.built.program), "HEDRO34_MUTANT": str(number)}
        return self.runs(test["command"], 60, **environment)

    def judge(self, mutant):
        """What became of a mutant: noticed, survived, none (it cannot be)."""
        if mutant.number in self.impossible:
            return "none"
        tests = list(self.times) if mutant.number in self.always else self.tests_of.get(mutant.number, [])
        if mutant not in self.built.live[mutant.file]:
            if mutant.change.startswith("return"):
                return "none"  # it did not compile behind its switch, nor would it without
            if mutant.file.endswith(".h"):
                return "untried"
            program = self.built.alone(mutant)
            if not program:
                return "none"
            near = {test for other in self.built.live[mutant.file] for test in self.tests_of.get(other.number, [])}
            noticed = self.noticed(program, sorted(near), mutant.number)
            program.unlink()
            return "noticed" if noticed else "survived"
        if not tests and mutant.file.endswith(".h"):
            return "untried"  # only what is compiled without switches uses it
        if self.noticed(self.built.tests, tests, mutant.number):
            return "noticed"
        if str(mutant) in self.expected or all(self.passes(script, mutant.number) for script in SCRIPTS):
            return "survived"
        return "noticed by a script"


def main():
    arguments = sys.argv[1:]
    share = 1 if arguments else SAMPLE
    files = [argument for argument in arguments if argument != "--all"]
    sources = []
    for room in ROOMS:
        for path in sorted((SOURCES / "hedro34" / room).glob("*.*")):
            source = Source(path.relative_to(SOURCES).as_posix(), path.read_text(encoding="utf-8"))
            sources.append(source)
            for nth, mutant in enumerate(source.mutants, 1):
                mutant.number = len(sources) * 1000 + nth
    mutants = [mutant for source in sources for mutant in source.mutants]
    judge = Judge(Build(sources), mutants)
    chosen = [mutant for mutant in mutants if not files or mutant.file in files]
    # The lot falls by the mutant's own text: the same each time, and for the others when a source changes.
    lot = {id(mutant): int(hashlib.sha1(str(mutant).encode()).hexdigest(), 16) / 16**40 for mutant in chosen}
    chosen = sorted((mutant for mutant in chosen if lot[id(mutant)] < share), key=lambda mutant: lot[id(mutant)])
    fates = {}
    with open(HERE / "fates.txt", "w", encoding="utf-8") as log:
        def one(mutant):
            started = time.monotonic()
            fate = judge.judge(mutant)
            print(f"{fate}\t{time.monotonic() - started:.1f}\t{mutant.number}\t{mutant}", file=log, flush=True)
            return fate
        fates = dict(zip(map(id, chosen), in_parallel(one, chosen)))
    of = {fate: [mutant for mutant in chosen if fates[id(mutant)] == fate] for fate in set(fates.values())}
    tried = len(chosen) - len(of.get("none", [])) - len(of.get("untried", []))
    survived = of.get("survived", [])
    unexpected = [mutant for mutant in survived if str(mutant) not in judge.expected]
    noticed, listed = tried - len(survived), len(survived) - len(unexpected)
    share_noticed = 100 * noticed / max(tried, 1)
    by_script = len(of.get("noticed by a script", []))
    figure(f"{len(mutants)} mutants; of {tried} tried {noticed} were noticed ({share_noticed:.1f}%), "
           f"{by_script} by scripts alone;")
    figure(f"{listed} change nothing, {len(unexpected)} survived: "
           f"{100 * noticed / max(tried - listed, 1):.1f}% of what changes something")
    stale = [mutant for mutant in chosen if str(mutant) in judge.expected and mutant not in survived]
    for mutant in unexpected:
        print(f"SURVIVED {mutant}\n  line {mutant.line}; again: HEDRO34_MUTANT={mutant.number} {judge.built.tests}")
    for mutant in stale:
        print(f"NOTICED, but {LIST.name} says that it survives: {mutant}")
    too_few = not files and share_noticed < LEAST
    if too_few:
        print(f"fewer than {LEAST}% were noticed: write tests, or make the code of {LIST.name} simpler")
    return 1 if unexpected or stale or too_few or not tried else 0


if __name__ == "__main__":
    sys.exit(main())
