#!/usr/bin/env python3
"""Faults on purpose: a road through the program or the Python client is gone again and again, each time with one more thing that
goes wrong, and what it leaves is looked at.

    torture.py BUILD                 # all faults on all roads; BUILD is a folder such as build/optimised
    torture.py BUILD --sample 200    # so many of them, the same ones each time
    torture.py BUILD ROAD [FAULT]    # the faults of one road, or one of them, with what came of it

A fault is written as
    memory:17 memory:17-             the 17th allocation fails; that one and all behind it
    short:3                          the third read or write moves half of its bytes
    rename:2:EIO rename:2+:EIO       the process's second call of rename fails; that one and all behind it
    rename:2:KILL                    the process is killed at that call, before it is done

Killed behind a call is killed before the next one. Faults begin at main or, in Python, behind the imports, where those count that
the library's own code asks for. Without strace, or where it is not allowed, calls do not fail, and the exit code is 77."""

import argparse
import errno
import itertools
import json
import os
import pathlib
import random
import re
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import threading
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parent))
from program import THREE, examview, question  # noqa: E402
from tree import NOT_HERE, run  # noqa: E402

SEED = 34
# The same addresses each time, on which the number of some calls depends; a container may not let a process ask for them.
STEADY = [] if subprocess.run(["setarch", "-R", "true"], capture_output=True, check=False).returncode else ["setarch", "-R"]
UNCAUGHT = 70  # the exit code of a road in Python that ends with a traceback
TIMEOUT = 60  # seconds that a run may take before it counts as hanging

# What each call can fail with, the most usual one first: it stays for good in one more run. A call without errors is one to be
# killed at.
ERRORS = {
    "access": "EACCES EIO", "brk": "ENOMEM", "clock_nanosleep": "EINTR", "close": "EIO EINTR ENOSPC EDQUOT",
    "exit_group": "", "faccessat2": "EACCES EIO ENOMEM EROFS", "fchmod": "EPERM EIO EROFS", "fchown": "EPERM EIO EDQUOT EROFS",
    "fcntl": "EMFILE EINVAL ENOMEM", "flock": "ENOLCK EINTR EAGAIN", "fsync": "EIO EINTR ENOSPC EDQUOT EROFS",
    "futex": "", "getcwd": "ENOENT EACCES ENOMEM", "getdents64": "EIO ENOENT", "geteuid": "", "getpid": "",
    "getrandom": "ENOSYS EINTR", "gettid": "", "ioctl": "ENOTTY EIO", "kill": "EPERM",
    "link": "EPERM EMLINK EXDEV ENOSPC EDQUOT EIO EACCES EROFS ENOMEM", "lseek": "ESPIPE", "madvise": "ENOMEM EAGAIN",
    "mkdir": "EACCES ENOSPC EDQUOT EIO EROFS", "mmap": "ENOMEM EAGAIN", "mprotect": "ENOMEM", "munmap": "ENOMEM",
    "newfstatat": "EACCES EIO ENOMEM ELOOP",
    "openat": "EMFILE EACCES EDQUOT EINTR EIO ELOOP ENFILE ENOMEM ENOSPC EROFS", "prlimit64": "EPERM",
    "read": "EIO EINTR ESTALE", "readlink": "EACCES EIO ENOMEM", "rename": "EIO EACCES EBUSY EDQUOT ENOMEM ENOSPC EPERM EROFS EXDEV",
    "rt_sigaction": "", "rt_sigprocmask": "", "sched_getaffinity": "EPERM", "sigaltstack": "ENOMEM",
    "unlink": "EIO EACCES EBUSY EROFS", "unlinkat": "EIO EACCES EBUSY EROFS", "write": "ENOSPC EIO EINTR EDQUOT EFBIG EPIPE",
}
# Faults that once did harm are part of each sample: the road, the call, what comes of it.
MENDED = [
    ("show", r"(openat|read)\(.*/d\.ktd", "EIO"),  # a document was shown without its versions
    ("show-stdin", r"(openat|unlink)\(.*/tmp", "EINTR|KILL"),  # standard input stayed on the disk, or could not be kept there
    ("merge-old", r'readlink\("form|newfstatat\(.*"form".*NOFOLLOW', "EIO"),  # a link was replaced by a file
    ("merge-new", r'newfstatat\(\d+.*S_IFDIR|newfstatat\(.*tmp", .*NOFOLLOW', "EIO"),  # a temporary file stayed, a folder locked itself
]
TEMPORARY = re.compile(r"(tmp/hedro34-.{6}|(kept/)?\.hedro34-\d+-\d+\.tmp)$")
FORM, DOCUMENT, PAGE, MESSAGES = "kept/form", "document", "page", "m"


class Road:
    """One command: its words, what goes to standard input, what it writes as one and in this order, and whether that was there
    before. In Python the words are those of the client's example."""

    def __init__(self, words, stdin=None, writes=(), old=False, python=False):
        self.words, self.stdin, self.writes, self.old, self.python = words.split(), stdin, writes, old, python


MERGE = "merge --objectives learning --form ../in/f --sequence-question 1 --form-out form --document-out document --messages m "
TO_FILES = MERGE + "--report page ../in/A.xml ../in/B.xml"
ROADS = {
    "show": Road("show --objectives learning ../in/A.xml ../in/d.ktd ../in/f"),
    "show-stdin": Road("show --json --messages m -", stdin="A.xml"),
    "merge-new": Road(TO_FILES, writes=(FORM, DOCUMENT, PAGE)),
    "merge-old": Road(TO_FILES, writes=(FORM, DOCUMENT, PAGE), old=True),
    "merge-keep-going": Road(TO_FILES + " --keep-going", writes=(FORM, DOCUMENT, PAGE), old=True),
    "merge-streams": Road(MERGE + "--report - - ../in/B.xml", stdin="A.xml", writes=(FORM, DOCUMENT)),
    "report-new": Road("report --form ../in/g --out page ../in/d.ktd", writes=(PAGE,)),
    "report-old": Road("report --form ../in/g --out page ../in/d.ktd", writes=(PAGE,), old=True),
    "report-streams": Road("report --form ../in/g --out - -", stdin="d.ktd"),
    "python-new": Road("A.xml B.xml", writes=("A.form.json", "A.ktd"), python=True),
    "python-old": Road("A.xml B.xml", writes=("A.form.json", "A.ktd"), old=True, python=True),
}


class Outcome:
    def __init__(self, code, out, err, files, told):
        self.code, self.out, self.err, self.files, self.told = code, out, err, files, told
        self.came = code == -9 or "INJECTED" in told or told.startswith("!")

    def __str__(self):
        files = "".join(f"{name}: {content if isinstance(content, str) else content[1][:60]}\n"
                        for name, content in sorted(self.files.items())[:9])
        return f"exit code {self.code}\n--- standard output\n{self.out[:2000]}--- standard error\n{self.err}--- files\n{files}"


class Fault:
    def __init__(self, text, call=None):
        self.text, self.call = text, call  # the call as it is without a fault
        self.name, _, self.what = text.rpartition(":") if text.count(":") == 2 else (text, "", "")
        self.kind = {"": text.partition(":")[0], "KILL": "kill"}.get(self.what, "call")
        self.for_good = text.endswith("-") or "+" in text

    def is_of(self, name, road, call, what):
        return self.call is not None and name == road and re.search(call, self.call) and re.fullmatch(what, self.what)

    def options(self):
        """Those of strace; none when the fault is not one of a system call."""
        if not self.what:
            return []
        name, number = self.name.split(":")
        what = f"error={self.what}" if self.kind == "call" else "signal=KILL"
        if name == "brk" and self.kind == "call":
            what = "retval=0"  # which is how it says that there is no more
        # Nothing but this call stops for strace then; with which no kill comes in time.
        quick = ["--seccomp-bpf"] if self.kind == "call" else []
        return [*quick, "-e", f"trace={name}", "-e", f"inject={name}:{what}:when={number}"]


def text_of(version, order):
    """A test of four questions with one key each, and two that no sheet holds."""
    keys = {"w": "A", "x": "B", "y": "C", "z": "A"}
    objective = "<text-objective>Objective {}</text-objective>"
    asked = [question(i, "mc", keys[i], THREE, info=objective.format(i)) for i in order]
    return examview(*asked, question("s", "essay"), question("p", "pr", "7"), title="Unit", version=version)


def snapshot(folder):
    """What is in a folder: permissions and content of each file, where each link leads."""
    found = {}
    for path in folder.rglob("*"):
        if path.is_symlink():
            found[str(path.relative_to(folder))] = os.readlink(path)
        elif path.is_file():
            found[str(path.relative_to(folder))] = (stat.S_IMODE(path.stat().st_mode), path.read_bytes())
    return found


def scratch():
    """A new folder whose path has no blank, at which a list of libraries to preload is parted."""
    place = tempfile.gettempdir()
    return tempfile.TemporaryDirectory(prefix="hedro34-torture-", dir="/tmp" if re.search(r"[\s:]", place) else place)


class Torture:
    """The roads of one build, gone in folders below `base`."""

    def __init__(self, build, base):
        self.program, self.base, self.inputs = build / "hedro34", base, base / "in"
        self.component, self.preloaded = build / "libhedro34-component.so", base / "preloaded.so"
        self.preloaded.symlink_to(build / "libhedro34_preloaded.so")
        self.sanitizer = re.findall(r"=> (\S*/lib(?:asan|stdc\+\+)\.so\S*)", run("ldd", self.component))
        self.sanitizer = self.sanitizer if any("asan" in library for library in self.sanitizer) else []
        self.environment = os.environ | {
            "LC_ALL": "C.UTF-8", "PYTHONHASHSEED": "0", "ASAN_OPTIONS": "alloc_dealloc_mismatch=0:verify_asan_link_order=0:detect_leaks=0"}
        self.numbers = itertools.count()
        self.of_thread = threading.local()
        self.unknown = set()  # calls that are only killed at
        self.inputs.mkdir()
        for version, order in [("A", "wxyz"), ("B", "zyxw")]:
            (self.inputs / f"{version}.xml").write_text(text_of(version, order))
        self.plainly("form --questions 5 --choices 3 --versions A,B --out f")
        self.plainly("merge --objectives learning --form f --sequence-question 1 --form-out g --document-out d.ktd A.xml B.xml")
        read = json.loads((self.inputs / "d.ktd").read_bytes())["questions"]
        if (keys := "".join(key for field in read for key in field["answerKey"])) != "ABCA":
            sys.exit(f"the keys of the merge are {keys}, not ABCA")
        self.given = snapshot(self.inputs)
        self.before = {name: snapshot(self.folder_for(road)) for name, road in ROADS.items()}
        self.right = {name: self.go(road, Fault("")) for name, road in ROADS.items()}
        for name, outcome in self.right.items():
            if outcome.code != 0:
                sys.exit(f"{name} without a fault: {outcome}")

    def plainly(self, words):
        run(self.program, *words.split(), cwd=self.inputs)

    def folder_for(self, road):
        """A new folder with the files that are there before."""
        folder = self.base / str(next(self.numbers))
        for name in ("tmp", "kept"):
            (folder / name).mkdir(parents=True)
        if not road.python:
            (folder / "form").symlink_to(FORM)
        for name in road.writes if road.old else ():
            (folder / name).write_text("old " + name)
            (folder / name).chmod(0o640)
        return folder

    def go(self, road, fault, folder=None, options=()):
        """Goes a road once, in a new folder or, again, in one where it was gone; what came of it."""
        folder = folder or self.folder_for(road)
        options = options or fault.options()
        if road.python and not options:
            return self.in_child(road, fault, folder)
        environment = {"HEDRO34_FAULT": fault.text, "TMPDIR": folder / "tmp", "LD_PRELOAD": self.preloaded}
        command = [self.program, *road.words]
        if road.python:
            command, more = self.in_python(road)
            command.insert(2, folder)
            environment |= more
        with tempfile.TemporaryFile() as told, open(self.inputs / road.stdin if road.stdin else os.devnull, "rb") as stdin:
            if not options:
                environment["HEDRO34_FAULT_TOLD"] = told.fileno()
            else:
                options = ["strace", "-f", "-qq", "-o", f"/dev/fd/{told.fileno()}", *options]
                for name in environment:
                    options += ["-E", f"{name}={environment[name]}"]
                command, environment = [*STEADY, *options, *command], {}
            process = subprocess.Popen([str(word) for word in command], cwd=folder, pass_fds=[told.fileno()], start_new_session=True,
                                       stdin=stdin, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                       env=self.environment | {name: str(value) for name, value in environment.items()})
            hangs = False
            try:
                out, err = process.communicate(timeout=TIMEOUT)
            except subprocess.TimeoutExpired:
                hangs = True
                os.killpg(process.pid, signal.SIGKILL)  # strace and what it runs
                out, err = process.communicate()
            told.seek(0)
            return Outcome("none, it hangs" if hangs else process.returncode, out.decode(), err.decode(), snapshot(folder),
                           told.read().decode(errors="replace"))

    def in_python(self, road):
        """The command of a road in Python, and its environment."""
        tests = [self.inputs / word for word in road.words]
        return ([sys.executable, HERE / "python_road.py", "--library", self.component, "--form", self.inputs / "f",
                 "--sequence-question", "1", *tests],
                {"LD_PRELOAD": ":".join([str(self.preloaded), *self.sanitizer]), "PYTHONDONTWRITEBYTECODE": "1",
                 "HEDRO34_FAULT_OF": "libhedro34-component libexpat libsimdjson libstdc++"})

    def in_child(self, road, fault, folder):
        """In a child of an interpreter that has the client already, one for each thread."""
        served = self.of_thread.__dict__
        if road not in served:
            command, environment = self.in_python(road)
            environment = self.environment | environment | {"HEDRO34_FAULT_TOLD": "9"}
            command.insert(2, "serve")
            served[road] = subprocess.Popen([str(word) for word in command], env=environment, text=True, stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE)
        server = served[road]
        print(folder, fault.text or "none", file=server.stdin, flush=True)
        code = int(server.stdout.readline())
        out, err, told = (folder.with_suffix(suffix).read_bytes().decode(errors="replace") for suffix in (".out", ".err", ".told"))
        return Outcome("none, it hangs" if code == -14 else code, out, err, snapshot(folder), told)

    def faults(self, name, with_calls):
        """All that can go wrong on a road."""
        road = ROADS[name]
        allocations, transfers = map(int, self.right[name].told.split())
        texts = [f"memory:{n}{behind}" for n in range(1, allocations + 1) for behind in ("", "-")]
        found = [Fault(text) for text in [*texts, *(f"short:{n}" for n in range(1, transfers + 1))]]
        if not with_calls:
            return found
        trace = self.go(road, Fault(""), options=["-y", "-s", "300"]).told
        flushed, renamed = (set(re.findall(pattern, trace)) for pattern in (r"fsync\(\d+<.*/(.*\.tmp)>", r'rename\(".*?([^/"]*\.tmp)"'))
        if not flushed >= renamed or len(renamed) < len(road.writes):
            sys.exit(f"{name}: a file takes the place of another without having been flushed to disk:\n{trace}")
        counted, started = Counter(), False
        # Else than an interpreter's, which has the folder as well, or a sanitizer's.
        ours = rf"^(?!.*AT_FDCWD).*{self.base}|\"{self.base}" if road.python else rf"{self.base}|^(rename|(read)?link|unlink|write\(1)"
        for call in re.findall(r"^\d+ +(\w+\(.*)", trace, re.MULTILINE):
            kind = call.partition("(")[0]
            counted[kind] += 1
            if "the faults start here" in call:
                started = True
            elif started and (not (road.python or self.sanitizer) or re.search(ours, call)):
                if kind not in ERRORS:
                    self.unknown.add(kind)
                at, errors = f"{kind}:{counted[kind]}", ERRORS.get(kind, "").split()
                whats = ["KILL", *errors]
                found += [Fault(f"{at}:{what}", call) for what in whats]
                found += [Fault(f"{at}+:{error}", call) for error in errors[:1]]
        return found

    def wrong(self, name, fault, got):
        """What is wrong with an outcome; nothing when all is well."""
        road, right, before = ROADS[name], self.right[name], self.before[name]
        files = {file: content for file, content in got.files.items() if not TEMPORARY.search(file)}
        left = got.files.keys() - files.keys()
        messages, right_messages = files.pop(MESSAGES, None), right.files.get(MESSAGES)
        # The states on the way from the former files to the new ones.
        states = [before | {file: right.files[file] for file in road.writes[:count]} for count in range(len(road.writes) + 1)]
        mute = fault.call is not None and fault.call.startswith("write(" if fault.for_good else "write(2")  # standard error

        if "Sanitizer" in got.err or "runtime error:" in got.err:
            return "a sanitizer's report"
        if not got.came:
            return "the fault did not come"
        if fault.kind == "kill":
            if files not in states or messages not in (None, right_messages):
                return "files in between"
        elif got.code not in ((0, 1, UNCAUGHT) if road.python else (0, 1, 3, 4, 5)):
            return "a wrong end"
        elif got.code == 0:
            seen_enough = fault.what == "EPIPE" and not re.search("--(out|report) -( |$)", " ".join(road.words))  # the reader has
            out = got.out if seen_enough else right.out
            if (files, messages, got.out) != (states[-1], right_messages, out) or not (mute or got.err == right.err):
                return "exit code 0 with something else than without the fault"
            if fault.kind == "call" and fault.what != "EINTR" and re.match(r"(fsync|close)\(.*\.tmp>", fault.call):
                return "exit code 0 though the file may not be on the disk"
        else:
            if trouble := self.wrong_failure(road, fault, got, files, states, mute):
                return trouble
            if messages is not None and not all(re.fullmatch(rb'\{"kind":".*\}', line) for line in messages[1].splitlines()):
                return "half a message"
            if not road.python and got.code != 5 and not right.out.startswith(got.out):
                return "a wrong output"
        if left and fault.kind != "kill" and not re.match("unlink|flock:.*:EAGAIN", fault.text):
            return "a temporary file is left"
        return None

    def wrong_failure(self, road, fault, got, files, states, mute):
        lines = re.findall("hedro34: .*", got.err) if not road.python else got.err.splitlines()[-1:]
        # The messages may be what cannot be written behind a command that failed.
        if not mute and not 0 < len(lines) <= 1 + ("--messages" in road.words):
            return "no line, or several"
        # Python goes on with an object whose making failed, which was said, until it lacks what is not in it.
        if "Traceback" in got.err and not re.search("(Error# |failure )7: .*\n(.*\n)*Traceback", got.err):
            return "a traceback"
        line = "".join(lines)
        if got.code in (3, 4) and not mute and not re.match("hedro34: cannot (read|write) (the [a-z]+( to|:) [^:]+|standard output): .", line):
            return "no line that says what and where"
        if got.code == 5 and "--keep-going" in road.words:
            if files.keys() != states[-1].keys() or (PAGE in files and not files[PAGE][1].endswith(b"</html>\n")):
                return "not all files though it goes on"
        elif files not in ((states[0], states[-1]) if got.code in (1, 4) else states[:1]):
            if not road.python and "could not be taken back" not in line or files not in states:
                return "files in between"
        if fault.kind == "call" and not mute and os.strerror(getattr(errno, fault.what)) not in got.err and "memory" not in line:
            return "another reason"
        return None

    def verdict(self, name, fault):
        """What came of a fault, and what is wrong with it."""
        road, folder = ROADS[name], self.folder_for(ROADS[name])
        got = self.go(road, fault, folder)
        trouble = self.wrong(name, fault, got)
        if trouble is None and got.code == 5 and "--keep-going" in road.words:
            pair = subprocess.run([self.program, "report", "--form", "form", "--out", "-", "document"], cwd=folder, check=False,
                                  capture_output=True)
            trouble = None if pair.returncode == 0 else "form and document are no pair"
        if trouble is None and any(map(TEMPORARY.search, got.files)):
            again = self.go(road, Fault(""), folder)
            trouble = None if (again.code, again.files) == (0, self.right[name].files) else f"in the next run {again}"
        shutil.rmtree(folder)
        for suffix in (".out", ".err", ".told"):
            folder.with_suffix(suffix).unlink(missing_ok=True)
        return got, trouble


def strace_works():
    try:
        return subprocess.run(["strace", "-o", os.devnull, "true"], capture_output=True, check=False).returncode == 0
    except OSError:
        return False


def torture(build, roads=tuple(ROADS), sample=None, say=print):
    """Goes the roads with all faults, or a sample of them; the exit code."""
    with_calls = strace_works()
    failed = 0
    with scratch() as base, ThreadPoolExecutor(os.cpu_count()) as pool:
        all_roads = Torture(build, pathlib.Path(base))
        points = [(name, fault) for name in roads for fault in all_roads.faults(name, with_calls)]
        if sample is not None and sample < len(points):
            always = []
            for row in MENDED if with_calls else []:
                of_row = [(name, fault) for name, fault in points if fault.is_of(name, *row)]
                if not of_row and row[0] in roads:
                    sys.exit(f"no fault of {row[0]} is one of {row[1]}: {row[2]}")
                always += of_row
            points = always + random.Random(SEED).sample(points, sample)
        kinds, codes = {name: Counter() for name in roads}, {name: Counter() for name in roads}
        for (name, fault), (got, trouble) in zip(points, pool.map(lambda point: all_roads.verdict(*point), points)):
            kinds[name][fault.kind] += 1
            codes[name][got.code] += 1
            if trouble:
                failed += 1
                again = f"python3 tests/torture/torture.py {build} {name} {fault.text}"
                print(f"{name} {fault.text}: {trouble}\n{fault.call or ''}\n{got}\nagain: {again}", flush=True)
        if snapshot(all_roads.inputs) != all_roads.given:
            failed += 1
            print("an input was changed")
    for name in roads:
        say(f"{name}: " + ", ".join(f"{kinds[name][kind]} {kind}" for kind in sorted(kinds[name])) + "; exit codes " +
            ", ".join(f"{code}: {codes[name][code]}" for code in sorted(codes[name])))
    if all_roads.unknown:
        print(f"what can {', '.join(sorted(all_roads.unknown))} fail with? Not in ERRORS of {__file__}, so only killed at")
    if not with_calls:
        print("strace is not here or not allowed: no system call failed, none was killed at")
    return 1 if failed else 0 if with_calls else NOT_HERE


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("road", nargs="?", choices=[*ROADS])
    parser.add_argument("fault", nargs="?")
    parser.add_argument("--sample", type=int)
    words = parser.parse_args()
    build = words.build.resolve()
    if words.fault is None:
        sys.exit(torture(build, [words.road] if words.road else [*ROADS], words.sample))
    with scratch() as base:
        one = Torture(build, pathlib.Path(base))
        fault = next((fault for fault in one.faults(words.road, strace_works()) if fault.text == words.fault), None)
        if fault is None:
            sys.exit(f"{words.road} has no {words.fault} with this build")
        got, trouble = one.verdict(words.road, fault)
        print(f"{fault.call or ''}\n{got}\n{trouble or 'as it should be'}")
        sys.exit(bool(trouble))


if __name__ == "__main__":
    main()
