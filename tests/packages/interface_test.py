#!/usr/bin/env python3
"""The shared library: what it shows stays as tests/interface/symbols.txt has it (--update enters what is new on purpose), all that
the public headers call is there, and programs of either compiler run with it."""

import pathlib
import re
import subprocess
import sys
import tempfile

from support import INTERFACE, SOURCES, configure, make, run

sys.path.insert(0, str(SOURCES / "tests/interface"))
from frozen import compare  # noqa: E402
from headers import UMBRELLAS, Headers  # noqa: E402

HOST_SAYS = """\
reported 4711: own words at HEDRO34 - clsHEDROTest.LoadXML
0
reported 5: no failure of ours at HEDRO34 - clsHEDROTest.LoadXML
0
reported 10005: Access Violation at HEDRO34 - clsHEDROTest.LoadXML
0
box Error# 4711: own words, Location: HEDRO34 - clsHEDROTest.LoadXML
caught 9
caught hedro34::Failure
casts 111011
position 2, renamed 1
"""


def symbols(file, *options):
    """Pairs of name and kind, as `nm` has them."""
    return [line.split()[:2] for line in run("nm", "--format=posix", *options, file).splitlines()]


def demangled(names):
    text = subprocess.run(["c++filt"], input="\n".join(names), capture_output=True, text=True, check=True).stdout
    for unit, name in (("char", ""), ("char16_t", "u16")):
        traits = f"{unit}, std::char_traits<{unit}>"
        text = text.replace(f"std::__cxx11::basic_string<{traits}, std::allocator<{unit}> >", f"std::{name}string")
        text = text.replace(f"std::basic_string_view<{traits} >", f"std::{name}string_view")
    return text.splitlines()


def shown(library, headers, called):
    """The demangled names of what a program can need of the library: its functions that a header lets it call or calls itself,
    and the tables of classes. All else is written into the program itself, by one compiler more of it than by another."""
    with_version = dict(symbols(library, "--dynamic", "--defined-only"))
    version = f"HEDRO34_{INTERFACE}"
    assert with_version.pop(version) == "A", f"no version {version}"
    kinds = {name.removesuffix(f"@@{version}"): kind for name, kind in with_version.items()}
    assert called <= kinds.keys(), f"headers call what is hidden: {demangled(called - kinds.keys())}"
    tables = {f"{what} for hedro34::{name}" for name in headers.with_tables() for what in ("vtable", "typeinfo")}
    of_no_use = headers.hidden() - called
    return sorted({text for text, (name, kind) in zip(demangled(kinds), kinds.items())
                   if text in tables or kind == "T" and name not in of_no_use})


build = configure("shared", "-DBUILD_SHARED_LIBS=ON", "-DHEDRO34_BUILD_PROGRAM=OFF", "-DHEDRO34_BUILD_COMPONENT=OFF",
                  "-DCMAKE_INSTALL_LIBDIR=lib")
make(build)
with tempfile.TemporaryDirectory(prefix="a folder ") as name:
    folder = pathlib.Path(name)
    prefix = folder / "prefix"
    run("cmake", "--install", build, "--prefix", prefix, "--component", "development")
    (folder / "examples").symlink_to(SOURCES / "examples")
    link = [f"-I{prefix}/include", f"-L{prefix}/lib", "-lhedro34", f"-Wl,-rpath,{prefix}/lib"]
    for compiler in ("g++", "clang++"):
        for program, says in (("examples/merge.cpp", r"1\. .*"), ("tests/interface/host.cpp", re.escape(HOST_SAYS))):
            run(compiler, "-std=c++20", "-O2", SOURCES / program, *link, "-o", folder / "program")
            said = run(folder / "program", cwd=folder)
            assert re.fullmatch(says, said, re.DOTALL), f"{program} by {compiler} said\n{said}"

    # What the headers' own functions call.
    (folder / "headers.cpp").write_text(UMBRELLAS)
    run("g++", "-std=c++20", "-fkeep-inline-functions", *link[:1], "-c", folder / "headers.cpp", "-o", folder / "headers.o")
    called = {name for name, _ in symbols(folder / "headers.o", "--undefined-only") if name.startswith(("_ZN7hedro34", "_ZNK7hedro34"))}
    assert called
    headers = Headers(prefix / "include")
    compare(SOURCES / "tests/interface/symbols.txt", shown(prefix / f"lib/libhedro34.so.{INTERFACE}", headers, called))
