"""What the tests of packages share: a folder for what they build, and how the sources are built there."""

import os
import pathlib
import re
import shutil
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent))
from tree import NOT_HERE, SOURCES, attempt, run  # noqa: E402

OUT = SOURCES / "build" / "packages"  # kept from run to run, so that only what changed is built again
VERSION = re.search(r"^project\(HEDRO34 VERSION (\S+)", (SOURCES / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
INTERFACE = VERSION.rpartition(".")[0]  # as file names have it


def fresh(name):
    """An empty folder below OUT."""
    folder = OUT / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def configure(build, *options):
    """Configures the sources into a folder below OUT, as a release; the folder."""
    folder = OUT / build
    run("cmake", "-S", SOURCES, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", "-DHEDRO34_BUILD_TESTS=OFF",
        *options)
    return folder


def make(folder, *targets):
    """Builds targets, all when none is named."""
    names = ["--target", *targets] if targets else []
    run("cmake", "--build", folder, "-j", os.cpu_count(), *names, timeout=1800)
