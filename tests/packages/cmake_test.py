#!/usr/bin/env python3
"""The library for C++: by find_package, pkg-config and add_subdirectory, for both compilers and standards, and away again."""

import pathlib
import shutil

from support import INTERFACE, OUT, SOURCES, VERSION, attempt, configure, fresh, make, run

FIRST_KEY = "1. "  # what the example of the README prints first
COMPILERS, STANDARDS = ("g++", "clang++"), (20, 23)


def works(program, examples, name):
    """The example of the README runs where only its samples lie, and leaves its results there."""
    folder = fresh("run")
    shutil.copytree(examples, folder / "examples")
    printed = run(program, cwd=folder)
    assert printed.startswith(FIRST_KEY) and len(printed.splitlines()) == 20, f"{name}: {printed}"
    assert (folder / "biology.ktd").is_file() and (folder / "biology-merged.form.json").is_file(), name


def by_find_package(prefix, *options, source=None):
    """Builds the program against what is installed in `prefix`, or in several; what that printed."""
    build = fresh("found")
    prefixes = ";".join(map(str, prefix if isinstance(prefix, list) else [prefix]))
    # What only a build of the library needs is not there.
    hidden = [f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON" for name in ("nlohmann_json", "CLI11", "GTest")]
    run("cmake", "-S", SOURCES / "tests/packages/found", "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefixes}",
        f"-DEXAMPLE={source or SOURCES / 'examples/merge.cpp'}", *hidden, *options)
    return run("cmake", "--build", build)


def by_pkg_config(prefix, compiler, standard, program):
    """Builds the program by the line of docs/install.md for a prefix with blanks."""
    shutil.copy(SOURCES / "examples/merge.cpp", program.parent)
    name = "2b" if standard == 23 else standard  # as older compilers know it
    line = f"{compiler} -std=c++{name} merge.cpp -o {program.name} $(pkg-config --cflags --libs hedro34)"
    run("sh", "-c", f'eval "{line}"', cwd=program.parent, env={"PKG_CONFIG_PATH": str(prefix / "lib/pkgconfig")})


def two_versions(first, scratch):
    """Side by side each program gets the version that it asks for; one that is not there is refused."""
    second = scratch / "later"
    shutil.copytree(first, second, symlinks=True)
    for file in ("lib/cmake/HEDRO34/HEDRO34ConfigVersion.cmake", "include/hedro34/version.h"):
        text = (second / file).read_text(encoding="utf-8")
        assert VERSION in text, file
        (second / file).write_text(text.replace(VERSION, "7.8.9"), encoding="utf-8")
    source = scratch / "version.cpp"
    source.write_text("#include <hedro34/hedro34.h>\n#include <iostream>\n"
                      "int main() { std::cout << hedro34::version << '\\n'; }\n", encoding="utf-8")
    for prefixes in ([first, second], [second, first]):
        for wanted, expected in ((INTERFACE, VERSION), ("7.8", "7.8.9")):
            printed = by_find_package(prefixes, f"-DWANTED={wanted}", source=source)
            assert f"version: {expected}" in printed, printed
            assert run(OUT / "found/example").strip() == expected
    (second / f"lib/hedro34/libhedro34-component.so.{INTERFACE}").unlink()
    for wanted, said in (("9.9", 'compatible with requested version "9.9"'),
                         ("7.8", "the component is not installed beside the library")):
        code, printed = attempt("cmake", "-S", SOURCES / "tests/packages/found", "-B", fresh("found"), f"-DWANTED={wanted}",
                                f"-DCMAKE_PREFIX_PATH={first};{second}", f"-DEXAMPLE={source}")
        assert code != 0 and said in " ".join(printed.split()), printed


def component(prefix, printed):
    """The component is where both package files say, and makes objects."""
    variable = run("pkg-config", "--variable=component", "hedro34-component",
                   env={"PKG_CONFIG_PATH": str(prefix / "lib/pkgconfig")})
    file = pathlib.Path(run("sh", "-c", f"printf %s {variable}")).resolve()
    assert file == prefix / f"lib/hedro34/libhedro34-component.so.{INTERFACE}" and file.is_file(), file
    assert f"component: {file}" in printed, printed
    python = "import hedro34, sys; print(repr(hedro34.create('clsHEDROTest', library=sys.argv[1])))"
    made = run("python3", "-c", python, file, env={"PYTHONPATH": str(SOURCES / "clients/python")})
    assert "clsHEDROTest" in made, made


def inside():
    """A project that builds the library with itself needs neither CLI11 nor GoogleTest and sees the public headers alone."""
    # As the release above is built, by the same name of the compiler too, so that the compiler cache has it; and quickly.
    for compiler, options in (("c++", ["-DCMAKE_BUILD_TYPE=Release"]),
                              ("clang++", ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_COMPILER=clang++"])):
        build = OUT / f"inside-{compiler}"
        run("cmake", "-S", SOURCES / "tests/packages/inside", "-B", build, "-G", "Ninja", *options,
            f"-DSOURCES={SOURCES}", f"-DEXAMPLE={SOURCES}/examples/merge.cpp",
            "-DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON", "-DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON",
            "-DCMAKE_COMPILE_WARNING_AS_ERROR=ON")
        make(build)
        for standard in STANDARDS:
            works(build / f"example{standard}", SOURCES / "examples", f"add_subdirectory, {compiler}, C++{standard}")


def missing():
    """What is missing is said in a line, with the way out."""
    for name, package, way in (("CLI11", "libcli11-dev", "-DHEDRO34_BUILD_PROGRAM=OFF"),
                               ("simdjson", "libsimdjson-dev", "-DHEDRO34_SIMDJSON=OFF"), ("EXPAT", "libexpat1-dev", "")):
        code, printed = attempt("cmake", "-S", SOURCES, "-B", fresh("missing"), f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON")
        said = " ".join(printed.split())
        assert code != 0 and f"HEDRO34 needs {name}, which is not here" in said and package in said and way in said, printed


def main():
    build = configure("static")
    make(build)
    scratch = fresh("C++ roads")
    prefix = scratch / "in stalled"
    run("cmake", "--install", build, "--prefix", prefix)
    for file in (prefix / "lib/cmake/HEDRO34").iterdir():
        for build_only in ("nlohmann", "CLI11", "utf8proc", str(SOURCES)):
            assert build_only not in file.read_text(encoding="utf-8"), f"{file} speaks of {build_only}"

    samples = prefix / "share/doc/hedro34/examples"
    ours = run("git", "ls-files", "--", ".", ":!windows", cwd=SOURCES / "examples").splitlines()
    assert sorted(str(path.relative_to(samples)) for path in samples.rglob("*") if path.is_file()) == sorted(ours)
    for compiler in COMPILERS:
        for standard in STANDARDS:
            printed = by_find_package(prefix, f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_CXX_STANDARD={standard}")
            works(OUT / "found/example", samples, f"find_package, {compiler}, C++{standard}")
            by_pkg_config(prefix, compiler, standard, scratch / "example")
            works(scratch / "example", samples, f"pkg-config, {compiler}, C++{standard}")
    component(prefix, printed)
    two_versions(prefix, scratch)
    inside()
    missing()

    other = scratch / "hedro34 [2]" / "p"  # CMake's own patterns, and our name in somebody else's folder
    run("cmake", "--install", build, "--prefix", other, "--component", "program")
    mine = other / "share/doc/hedro34/examples/mine.ktd"
    mine.touch()
    make(build, "hedro34_uninstall")
    left = [path for folder in (prefix, other) for path in folder.rglob("*")
            if not path.is_dir() or "hedro34" in path.name.lower()]
    assert prefix.is_dir() and sorted(left) == [mine.parent.parent, mine], left
    code, printed = attempt("cmake", "--build", build, "--target", "hedro34_uninstall")
    assert code != 0 and "nothing was installed from this build folder" in printed, printed


if __name__ == "__main__":
    main()
