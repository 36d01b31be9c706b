#!/usr/bin/env python3
"""The library as it is installed: a program elsewhere finds it, builds with it and runs; each public header stands alone."""

import os
import pathlib
import subprocess
import tempfile

from program import SOURCES

CMAKE, BUILD, COMPILER, FLAGS = (os.environ["HEDRO34_" + name] for name in ("CMAKE", "BUILD", "COMPILER", "FLAGS"))


def run(*command, cwd):
    done = subprocess.run(command, cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    assert done.returncode == 0, f"{' '.join(map(str, command))}\n{done.stdout}"
    return done.stdout


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    prefix, build = folder / "in stalled", folder / "build"
    record = pathlib.Path(BUILD, "installed.txt")
    others = record.read_bytes() if record.exists() else b""
    run(CMAKE, "--install", BUILD, "--prefix", prefix, cwd=folder)
    record.write_bytes(others)  # what was installed for good can still be taken back
    run(CMAKE, "-S", SOURCES / "tests/installed", "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}",
        f"-DSOURCES={SOURCES}", f"-DCMAKE_CXX_COMPILER={COMPILER}", f"-DCMAKE_CXX_FLAGS={FLAGS}",
        cwd=folder)
    run(CMAKE, "--build", build, cwd=folder)
    (folder / "examples").symlink_to(SOURCES / "examples")
    lines = run(build / "example", cwd=folder).splitlines()
    assert lines and lines[0].startswith("1. "), lines
    assert (folder / "biology.ktd").is_file()
    for name in ("man/man1/hedro34.1", "bash-completion/completions/hedro34", "zsh/site-functions/_hedro34",
                 "fish/vendor_completions.d/hedro34.fish"):
        assert "hedro34" in (prefix / "share" / name).read_text(encoding="utf-8").lower(), name
