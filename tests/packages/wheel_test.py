#!/usr/bin/env python3
"""The wheel: what is in it, its life in an empty environment, and where it meets another version or another system."""

import pathlib
import re
import shutil
import sys
import zipfile

from support import INTERFACE, NOT_HERE, SOURCES, VERSION, attempt, configure, fresh, make, run

PYTHON = "/usr/bin/python3"  # Debian's, which has what makes wheels and environments
CLIENT = SOURCES / "clients/python"
COMPONENT = f"libhedro34-component.so.{INTERFACE}"
LICENCES = {"HEDRO34", "expat", "gcc-runtime", "GPL-3", "nlohmann-json"}
SCRATCH = fresh("wheel roads") / "a user"
NOBODY = {"HOME": f"{SCRATCH}/home", "XDG_DATA_HOME": f"{SCRATCH}/data", "PYTHONPATH": "", "PYTHONDONTWRITEBYTECODE": "1",
          "PIP_CONFIG_FILE": "/dev/null", "PIP_NO_INDEX": "1", "PIP_NO_CACHE_DIR": "1"}
VERSIONS = "import hedro34; print(hedro34.create('Platform').Version, hedro34.__version__)"


class Environment:
    """A virtual environment of a user who has nothing else."""

    def __init__(self, name, *options):
        self.folder = SCRATCH / name
        run(PYTHON, "-m", "venv", *options, self.folder, env=NOBODY)

    def attempt(self, *arguments, cwd=SCRATCH, **more):
        return attempt(self.folder / "bin/python", *arguments, cwd=cwd, env=NOBODY | more)

    def run(self, *arguments, cwd=SCRATCH, **more):
        return run(self.folder / "bin/python", *arguments, cwd=cwd, env=NOBODY | more)

    def pip(self, *arguments):
        return self.run("-m", "pip", *arguments)


def look_inside(wheel):
    """The names of files, the tag, and what the component asks of a system and shows to it."""
    with zipfile.ZipFile(wheel) as file:
        texts = {name: file.read(name) for name in file.namelist()}
        component = file.extract(f"hedro34/{COMPONENT}", SCRATCH)
    information = f"hedro34-{VERSION}.dist-info"
    expected = {*run("git", "ls-files", "hedro34", cwd=CLIENT).splitlines(), f"hedro34/{COMPONENT}"}
    expected |= {f"{information}/licenses/{name}.txt" for name in LICENCES}
    expected |= {f"{information}/{name}" for name in ("METADATA", "RECORD", "WHEEL", "top_level.txt")}
    assert texts.keys() == expected, texts.keys() ^ expected
    for name, words in (("gcc-runtime", b"GCC RUNTIME LIBRARY EXCEPTION"), ("expat", b"Clark"), ("nlohmann-json", b"Lohmann")):
        assert words in texts[f"{information}/licenses/{name}.txt"], name

    headers = run("objdump", "-p", component)
    needed = set(re.findall(r"NEEDED +(\S+)", headers))
    assert "libc.so.6" in needed and needed <= {"libc.so.6", "libm.so.6", "ld-linux-x86-64.so.2"}, needed
    assert "PATH" not in headers, headers
    newest = max(int(minor) for minor in re.findall(r" GLIBC_2\.(\d+)$", headers, re.MULTILINE))
    tag = f"py3-none-manylinux_2_{newest}_x86_64"
    assert wheel.name == f"hedro34-{VERSION}-{tag}.whl", (wheel.name, newest)
    assert texts[f"{information}/WHEEL"].endswith(f"Root-Is-Purelib: false\nTag: {tag}\n\n".encode()), texts[f"{information}/WHEEL"]
    assert "no symbols" in run("nm", component)
    run(PYTHON, SOURCES / "tests/exports_test.py", env={"HEDRO34_COMPONENT": component})


def live(wheel):
    """Installed, used without a registration and with one, and taken away again."""
    environment = Environment("only this")
    environment.pip("install", wheel)
    readme = re.search(r"^```python\n(.*?)^```$", (SOURCES / "README.md").read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    lines = environment.run("-c", readme[1], cwd=SOURCES).splitlines()
    assert len(lines) == 20 and re.match(r"10 .*\(A,C,E\)$", lines[9]), lines
    merged = SCRATCH / "merged"
    merged.mkdir()
    lines = environment.run(CLIENT / "examples/merge.py", "--out", merged).splitlines()
    assert len(lines) == 20 and lines[9].startswith(" 10 (A,C,E) "), lines
    assert {path.name for path in merged.iterdir()} == {"biology.form.json", "biology.ktd"}

    file = environment.run("-m", "hedro34", "library").strip()
    assert list(environment.folder.rglob(COMPONENT)) == [pathlib.Path(file)], file
    environment.run("-m", "unittest", "discover", "-s", CLIENT / "tests", HEDRO34_LIBRARY=file)
    environment.pip("uninstall", "-y", "hedro34")
    left = [path for name in ("only this", "home", "data") for path in (SCRATCH / name).rglob("*hedro34*")]
    assert not left, left


def of_later_version(wheel):
    """A wheel of a version that is to come: the same but for its number."""
    number = "7.8.9"
    (SCRATCH / "later.cmake").write_text(f"set(PROJECT_VERSION {number})\nset(PROJECT_VERSION_MAJOR 7)\n"
                                         "set(PROJECT_VERSION_MINOR 8)\nset(PROJECT_VERSION_PATCH 9)\n", encoding="utf-8")
    build = configure("wheel later", "-DHEDRO34_STATIC_RUNTIME=ON", "-DHEDRO34_SIMDJSON=OFF", "-DHEDRO34_BUILD_PROGRAM=OFF",
                      f"-DCMAKE_PROJECT_HEDRO34_INCLUDE={SCRATCH}/later.cmake")
    make(build, "hedro34_component")
    run(PYTHON, "-m", "wheel", "unpack", "--dest", SCRATCH, wheel)
    content = SCRATCH / f"hedro34-{VERSION}"
    information = (content / f"hedro34-{VERSION}.dist-info").rename(content / f"hedro34-{number}.dist-info")
    for file in (content / "hedro34/_classes.py", information / "METADATA"):
        text = file.read_text(encoding="utf-8")
        assert VERSION in text, file
        file.write_text(text.replace(VERSION, number), encoding="utf-8")
    (content / "hedro34" / COMPONENT).unlink()
    shutil.copy(build / "libhedro34-component.so.7.8", content / "hedro34")
    run(PYTHON, "-m", "wheel", "pack", "--dest-dir", SCRATCH, content)
    return next(SCRATCH.glob(f"hedro34-{number}-*.whl")), number


def meet(wheel):
    """Side by side each version uses its own, whatever is registered; a client alone says that what is registered is not for it."""
    later_wheel, number = of_later_version(wheel)
    environment, later, pure = Environment("now"), Environment("later"), Environment("pure", "--system-site-packages")
    environment.pip("install", wheel)
    later.pip("install", later_wheel)
    shutil.copytree(CLIENT, SCRATCH / "client")
    pure.pip("install", "--no-build-isolation", SCRATCH / "client")

    code, said = pure.attempt("-c", VERSIONS)
    assert code != 0 and '"Platform" is not registered in ' in said and "python3 -m hedro34 register" in said, said
    later.run("-m", "hedro34", "register")
    for user, expected in ((environment, VERSION), (later, number)):
        printed = user.run("-c", VERSIONS)
        assert printed == f"{expected} {expected}\n", printed
    code, said = pure.attempt("-c", VERSIONS)
    file = later.run("-m", "hedro34", "library").strip()
    words = (f"hedro34._errors.Error: {file} is HEDRO34 {number}, and this client is for {INTERFACE}: give or register "
             f"(`python3 -m hedro34 register PATH`) a library of version {INTERFACE}, or install the client of version 7.8\n")
    assert code != 0 and said.endswith(words), said
    environment.run("-m", "hedro34", "register")
    assert pure.run("-c", VERSIONS) == f"{VERSION} {VERSION}\n"

    # One for a system that is to come.
    newer = SCRATCH / re.sub("manylinux_2_[0-9]+", "manylinux_2_99", wheel.name)
    shutil.copy(wheel, newer)
    code, said = pure.attempt("-m", "pip", "install", newer)
    assert code != 0 and f"ERROR: {newer.name} is not a supported wheel on this platform" in said, said


def main():
    SCRATCH.mkdir()
    stray = CLIENT / "hedro34/not_of_git.py"
    stray.touch()
    try:
        code, printed = attempt(SOURCES / "scripts/wheel")
    finally:
        stray.unlink()
    if "is not safe, and it becomes part of the wheel" in printed:
        print(printed, end="")  # the archives of this system offer no other expat
        sys.exit(NOT_HERE)
    assert code == 0, printed
    wheel, = (SOURCES / "build/package").glob("hedro34-*.whl")
    look_inside(wheel)
    live(wheel)
    meet(wheel)


if __name__ == "__main__":
    main()
