#!/usr/bin/env python3
"""Writes the pictures of docs/screenshots.md into a folder: the page of a merge of the examples in several places."""

import os
import pathlib
import subprocess
import sys
import tempfile

import chromium
import samples
from paper import call


def main(folder):
    with tempfile.TemporaryDirectory() as temporary, chromium.Browser() as browser:
        make = samples.Maker(os.environ["HEDRO34_PROGRAM"], temporary)
        unit, mixed = make.unit(), make.mixed()

        def shot(name, sample, width, height, place="header", **look):
            with browser.page(width, height, **look) as page:
                page.open(sample.path)
                page.run(f"document.querySelector('{place}').scrollIntoView(), scrollBy(0, -16)")
                page.run("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))")
                page.picture(folder / f"{name}.png", whole=False)

        shot("light", unit, 1000, 920)
        shot("questions", unit, 1000, 640, "#questions")
        shot("dark", mixed, 1000, 820, scheme="dark")
        shot("telephone", unit, 360, 740, "#sheet")
        with browser.page() as page:
            page.open(unit.path)
            page.print(pathlib.Path(temporary, "unit.pdf"))
        for name, number in (("paper-sheet", 1), ("paper-key", 3)):
            call("pdftoppm", "-png", "-r", "60", "-f", number, "-singlefile", pathlib.Path(temporary, "unit.pdf"), folder / name)
    for picture in sorted(folder.glob("*.png")):
        subprocess.run(["pngquant", "--force", "--strip", "--ext", ".png", "32", picture], timeout=60, check=True)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
