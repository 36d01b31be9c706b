"""Runs every fuzzer of fuzz/ for a share of time, two at once, from the seeds that git holds, then counts which functions of which
room the inputs reach. A crash keeps its input; the line that is shown runs it again."""

import collections
import concurrent.futures
import json
import os
import re
import shlex
import shutil
import subprocess
import sys

from support import OUT, SHORT, SOURCES, build, figure, run

SEED = 34
SECONDS = 8 if SHORT else 75
FOLDER = OUT / "fuzz"
NAMES = sorted(path.stem for path in SOURCES.glob("fuzz/*.cpp"))
LEAST = 0.85  # of a room's functions
IN_MEMORY = {**os.environ, "TMPDIR": "/dev/shm"} if os.path.isdir("/dev/shm") else None  # the scratch folders
# What no target is meant to reach, by path or by a part of the name: native faults, which a sanitizer takes first
# (hedro34_fault_tests is for them), and the nodes of a host's own XML documents, which only tests make (import_test.cpp).
LEFT_OUT = re.compile(r"^hedro34/runtime/(fault_|modvbCodeShieldSupport|active_trap|hidden_traps)|HostNode|HostAttribute")


def corpora(name):
    return FOLDER / "found" / name, SOURCES / "fuzz" / "corpus" / name


def fuzz(folder, name):
    """Runs one fuzzer; its figures and, where it failed, what to look at."""
    found, seeds = corpora(name)
    shutil.rmtree(found, ignore_errors=True)
    found.mkdir(parents=True)
    kept = FOLDER / f"{name}-"
    log = FOLDER / f"{name}.log"
    program = folder / f"fuzz_{name}"
    command = [program, f"-max_total_time={SECONDS}", f"-seed={SEED}", f"-dict={SOURCES}/fuzz/hedro34.dict", "-max_len=8192",
               "-len_control=10", "-timeout=25", "-rss_limit_mb=2560", "-print_final_stats=1", "-reload=0", f"-artifact_prefix={kept}",
               found, seeds]
    with log.open("wb") as output:
        code = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=output, stderr=output, env=IN_MEMORY,
                              timeout=SECONDS + 300, check=False).returncode
    said = log.read_text(errors="replace")
    runs = re.search(r"^stat::number_of_executed_units: +(\d+)", said, re.M)
    if code == 0 and runs:
        return f"{name}: {int(runs[1]):,} runs, {len(list(found.iterdir())):,} inputs that found something", None
    unit = re.search(r"Test unit written to (.+)", said)
    lines = re.findall(r"^(?:.*: Failure$|Value of|  Actual|Expected| +Which is|==\d+==.*ERROR|SUMMARY|ALARM|.* leak).*", said, re.M)
    again = shlex.join([str(program), unit[1]]) if unit else f"see {log}"
    return f"{name}: exit code {code}", "\n".join([f"fuzz_{name} failed: {again}", *lines[:10]])


def functions(profile, programs):
    """Each function of the library and the program, by file and place: its name, and whether it was run."""
    objects = [word for program in programs[1:] for word in ("-object", program)]
    exported = run("llvm-cov-14", "export", "-skip-expansions", f"-instr-profile={profile}", programs[0], *objects)
    found = {}
    for function in json.loads(exported[exported.index("{"):])["data"][0]["functions"]:
        path = os.path.relpath(function["filenames"][0], SOURCES)
        if not path.startswith(("hedro34/", "host/")) or LEFT_OUT.search(path) or LEFT_OUT.search(function["name"]):
            continue
        name, reached = found.get((path, *function["regions"][0][:2]), (function["name"], False))
        found[(path, *function["regions"][0][:2])] = name, reached or function["count"] > 0
    return found


def by_room(found):
    """For each room how many functions there are, and how many were run."""
    counts = collections.defaultdict(lambda: [0, 0])
    for (path, *_), (_, reached) in found.items():
        parts = path.split("/")
        room = counts[parts[1] if parts[0] == "hedro34" and len(parts) > 2 else parts[0]]
        room[0] += 1
        room[1] += reached
    return counts


def coverage():
    """Replays what was found with a build that counts; prints a table, and gives the rooms that too little of was reached."""
    folder = FOLDER / "coverage"
    run("cmake", "-S", SOURCES, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_COMPILER=clang++",
        "-DCMAKE_CXX_FLAGS_DEBUG=-O1 -fprofile-instr-generate -fcoverage-mapping")
    run("cmake", "--build", folder, "-j", os.cpu_count(), "--target", *(f"fuzz_{name}" for name in NAMES), timeout=1800)
    programs = {name: folder / f"fuzz_{name}" for name in NAMES}
    for name, program in programs.items():
        run(program, *(path for path in corpora(name) if any(path.iterdir())), env={"LLVM_PROFILE_FILE": str(folder / f"{name}.raw")})
    for name in [*NAMES, "all"]:
        raw = [folder / f"{each}.raw" for each in (NAMES if name == "all" else [name])]
        run("llvm-profdata-14", "merge", "-sparse", *raw, "-o", folder / f"{name}.profile")
    together = functions(folder / "all.profile", list(programs.values()))
    rooms = by_room(together)
    single = {name: by_room(functions(folder / f"{name}.profile", [program])) for name, program in programs.items()}
    figure("functions reached  " + "".join(f"{name:>10}" for name in [*NAMES, "together"]))
    poor = []
    for room, (count, reached) in rooms.items():
        cells = [f"{single[name][room][1]:>10}" for name in NAMES]
        figure(f"{room:<12}{count:>7}" + "".join(cells) + f"{reached / count:>10.1%}")
        if reached < LEAST * count:
            missed = sorted(f"{path}: {name}" for (path, *_), (name, was_reached) in together.items()
                            if not was_reached and f"/{room}/" in f"/{path}")
            poor.append(f"fewer than {LEAST:.0%} of the functions of {room} are reached:\n" + "\n".join(missed))
    return poor


FOLDER.mkdir(parents=True, exist_ok=True)
BUILT = build("fuzz", *(f"fuzz_{name}" for name in NAMES))
figure(f"seed {SEED}, {SECONDS} s each, with address, undefined behaviour and leak sanitizers")
with concurrent.futures.ThreadPoolExecutor(2) as pool:
    results = list(pool.map(lambda name: fuzz(BUILT, name), NAMES))
for text, _ in results:
    figure(text)
failed = [text for _, text in results if text]
if not failed and not SHORT:
    failed = coverage()
if failed:
    sys.exit("\n".join(failed))
