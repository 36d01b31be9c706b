#!/usr/bin/env python3
"""The Debian packages: made, read by lintian, installed into a minimal system of their own, used there, and removed again."""

import csv
import os
import pathlib
import re
import shutil
import signal
import sys
import tempfile
import time

from support import INTERFACE, NOT_HERE, OUT, SOURCES, VERSION, attempt, run

KEPT = OUT / "system"  # the minimal system as an archive, and what was downloaded for it
ARCHIVES = KEPT / "archives"
AS_ROOT = [] if os.geteuid() == 0 else ["sudo", "-n"]
KEYS = "B B C C C B B B B (A,C,E) (C,A) (A,C,E) T F F T Y N B T".split()  # of biology.xml
DOCUMENTS = "/usr/share/doc/hedro34"
FROM_A_TERMINAL = [  # the exit code of each command that the README shows there, and a line that it prints; "" for nothing
    (0, "      Key: (A,C,E)"),
    (0, "Questions merged          20"),
    (0, "  Key       (A,C,E)  T   F   F   T   Y   N   B   T   -   -   -   -"),
    (0, ""),
    (0, ""),
    (0, ""),
    (1, "examples/versions/refused-answer.xml: question 6 (ID 5G5): key is A, in examples/versions/unit-a.xml B"),
    (0, "Versions                  4"),
]

# The mounts are those of one command: they end with it, whatever happens.
OWN_MOUNTS = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "sh", "-euc", """
root=$1 archives=$2
shift 2
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mount --bind "$archives" "$root/var/cache/apt/archives"
cp /etc/resolv.conf "$root/etc/resolv.conf"
exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive HOME=/home/teacher "$@"
""", "-"]


def step(words, started=[time.monotonic()]):  # one value for all calls
    now = time.monotonic()
    print(f"  {words}: {now - started[0]:.0f} s", flush=True)
    started[0] = now


def inside(root, script, user="root"):
    """What a script of the shell prints in the system below `root`."""
    return run(*AS_ROOT, *OWN_MOUNTS, root, ARCHIVES, "chroot", f"--userspec={user}", root, "sh", "-euc", script)


def system(root):
    """Unpacks a minimal system with the archives that this one has; that is made once."""
    base = KEPT / "base.tar"
    if not base.exists():
        archives = run("apt-get", "indextargets", "--format", "$(ORIGIN) deb $(REPO_URI) $(CODENAME) $(COMPONENT)",
                       "Created-By: Packages")
        archives = sorted(set(re.findall(r"^Debian (deb .*)$", archives, re.MULTILINE)))
        codename = re.search(r"^VERSION_CODENAME=(\w+)", pathlib.Path("/etc/os-release").read_text(), re.MULTILINE)[1]
        run(*AS_ROOT, "mmdebstrap", "--variant=minbase", "--format=tar", codename, f"{base}.part", *archives)
        os.replace(f"{base}.part", base)
    run(*AS_ROOT, "tar", "-C", root, "-xf", base)
    inside(root, "apt-get -qq update; useradd --create-home teacher")


def install(root, *names):
    """As an administrator does; what this system has downloaded before is not downloaded again."""
    command = "apt-get -qq -o Dpkg::Options::=--force-unsafe-io -o APT::Sandbox::User=root install -y --no-install-recommends"
    names = " ".join(names)
    for name in re.findall(r"^'\S+' (\S+\.deb) ", inside(root, f"{command} --print-uris {names}"), re.MULTILINE):
        here = pathlib.Path("/var/cache/apt/archives", name)
        if here.is_file() and not (ARCHIVES / name).exists():
            shutil.copy(here, ARCHIVES)
    inside(root, f"{command} {names}")


def files(root):
    """All paths but those of the packaging system's own books and of users."""
    paths = run(*AS_ROOT, "find", root, "-xdev", "-printf", "%P\\n").splitlines()
    return {path for path in paths if not re.match(r"(home|tmp|var/lib/dpkg|var/lib/apt|var/cache|var/log)/", path)}


def purge(root, before, *names):
    with_ours = files(root)
    assert any("hedro34" in path for path in with_ours - before)
    inside(root, f"apt-get -qq purge -y --autoremove {' '.join(names)}")
    assert files(root) == before, sorted(files(root) ^ before)


def use(root):
    """What the README shows of a terminal, with the samples as they are installed."""
    part = re.search(r"^## From a terminal$(.*?)^## ", (SOURCES / "README.md").read_text(encoding="utf-8"),
                     re.MULTILINE | re.DOTALL)[1]
    shown = "".join(re.findall(r"^```\n(.*?)^```$", part, re.MULTILINE | re.DOTALL))
    commands = re.findall(r"(?:.*\\\n)*.+\n", shown)
    script = "".join(f"{command}echo = $?\n" for command in commands)
    said = inside(root, f"cd; cp -r {DOCUMENTS}/examples .; set +e\n{script}", user="teacher")
    answers = re.findall(r"(.*?)^= (\d+)\n", said, re.MULTILINE | re.DOTALL)
    for command, (printed, code), (expected, line) in zip(commands, answers, FROM_A_TERMINAL, strict=True):
        right = line in printed.splitlines() if line else not printed
        assert int(code) == expected and right, f"{command}{printed}exit code {code}"
    home = root / "home/teacher"
    for name in set(re.findall(r"(?:--\w+-out|--out|>) ?(\S+)", shown)):
        assert (home / name).stat().st_size > 0, name
    for name, words in (("biology.html", "(A,C,E)"), ("blank.form.json", '"Q50"')):
        assert words in (home / name).read_text(encoding="utf-8"), name
    with open(home / "keys.csv", encoding="utf-8", newline="") as rows:
        assert [row["key"] for row in csv.DictReader(rows)] == KEYS

    said = inside(root, f"""
        hedro34 --version
        zcat /usr/share/man/man1/hedro34.1.gz | grep '^.TH'
        bash -c '. /usr/share/bash-completion/completions/hedro34; complete -p hedro34'
        grep '^#compdef' /usr/share/zsh/vendor-completions/_hedro34
        grep -c 'complete -c hedro34' /usr/share/fish/vendor_completions.d/hedro34.fish
        zcat {DOCUMENTS}/changelog.gz | head -1
        head -2 {DOCUMENTS}/copyright
        ldd /usr/lib/*/hedro34/libhedro34-component.so.{INTERFACE} | grep 'not found' || true
    """, user="teacher")
    expected = (rf"hedro34 {VERSION}\n.TH .*\ncomplete .* hedro34\n#compdef hedro34\n\d+\n"
                rf"hedro34 \({VERSION}\) .*\nHEDRO34\nCopyright .*\n")
    assert re.fullmatch(expected, said), said


def compile_programs(root):
    """The program of the README in both standards with both compilers, by pkg-config and by find_package."""
    run(*AS_ROOT, "cp", "-r", SOURCES / "tests/packages/found", root / "home/teacher")
    for compiler in ("g++", "clang++"):
        for standard, name in ((20, "20"), (23, "2b")):  # as both compilers of that system know it
            said = inside(root, f"""
                cd
                test -s /usr/share/man/man3/hedro34-interfaces.3.gz
                rm -rf build biology.ktd biology-merged.form.json
                {compiler} -std=c++{name} {DOCUMENTS}/examples/merge.cpp -o example $(pkg-config --cflags --libs hedro34)
                ./example
                cmake -S found -B build -DCMAKE_CXX_COMPILER={compiler} -DCMAKE_CXX_STANDARD={standard} \
                  -DEXAMPLE={DOCUMENTS}/examples/merge.cpp >log && cmake --build build >>log || {{ cat log; exit 1; }}
                build/example
                test -s biology.ktd
                test -s biology-merged.form.json
                grep '^component: ' log | cut -d' ' -f2 | xargs readlink -e
                pkg-config --variable=component hedro34-component | xargs readlink -e
            """, user="teacher")
            keys = [line.rpartition("  ")[2] for line in said.splitlines()]
            places = {line for line in said.splitlines()[2 * len(KEYS):]}
            assert keys[:2 * len(KEYS)] == KEYS + KEYS and len(places) == 1, f"{compiler}, C++{standard}: {said}"
            assert re.fullmatch(rf"/usr/lib/[\w-]+/hedro34/libhedro34-component.so.{INTERFACE}", places.pop()), said


def main():
    run(SOURCES / "scripts/package-debian")
    package = SOURCES / "build/package"
    ours = sorted(package.glob(f"*hedro34*_{VERSION}_*.deb"))
    assert [file.name.partition("_")[0] for file in ours] == ["hedro34", "libhedro34-dev"], ours
    step("made")
    run("lintian", "--fail-on", "error,warning", *ours)
    step("read by lintian")
    if AS_ROOT and (not shutil.which("sudo") or attempt(*AS_ROOT, "true")[0] != 0):
        print("debian_test: the packages were not installed: that takes root or sudo", file=sys.stderr)
        sys.exit(NOT_HERE)

    ARCHIVES.mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    root = pathlib.Path(tempfile.mkdtemp(prefix="hedro34-debian.", dir="/var/tmp"))
    try:
        root.chmod(0o755)
        system(root)
        step("a minimal system")
        run(*AS_ROOT, "cp", *ours, root / "tmp")
        before = files(root)
        install(root, f"/tmp/{ours[0].name}")
        use(root)
        purge(root, before, "hedro34")
        step("the program installed, used and removed")
        install(root, "g++", "clang", "cmake", "make", "pkg-config")
        step("compilers installed")
        before = files(root)
        install(root, *(f"/tmp/{file.name}" for file in ours))
        compile_programs(root)
        purge(root, before, "hedro34", "libhedro34-dev")
        step("the library installed, used and removed")
    finally:
        run(*AS_ROOT, "rm", "-rf", "--one-file-system", root)


if __name__ == "__main__":
    main()
