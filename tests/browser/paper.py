"""What stands on the pages of a PDF, by the tools of poppler-utils."""

import re
import subprocess
import xml.etree.ElementTree as tree


def call(*command):
    return subprocess.run([str(word) for word in command], capture_output=True, timeout=60, check=True).stdout


class Word:
    """A word with its place on the page, in points from the upper left corner."""

    def __init__(self, element):
        self.text = "".join(element.itertext())
        self.left, self.top, self.right, self.bottom = (float(element.get(key)) for key in ("xMin", "yMin", "xMax", "yMax"))


class Paper:
    """A PDF: for each page its text in the order in which it was written, and its words."""

    def __init__(self, path):
        self.path = path
        self.information = dict(line.split(":", 1) for line in call("pdfinfo", path).decode().splitlines() if ":" in line)
        self.texts = call("pdftotext", "-raw", path, "-").decode().split("\f")[:-1]
        boxes = tree.fromstring(re.sub(rb"&#\d+;|[\0-\x08\x0b\x0c\x0e-\x1f]", b" ", call("pdftotext", "-bbox", path, "-")))
        space = "{http://www.w3.org/1999/xhtml}"
        self.pages = [[Word(word) for word in page.iter(f"{space}word")] for page in boxes.iter(f"{space}page")]

    def darkness(self, number):
        """A function that tells how dark a point of a page is, from 0 for paper to 1 for ink."""
        data = call("pdftoppm", "-gray", "-r", "144", "-f", number, "-l", number, self.path)
        header = re.match(rb"P5\s+(\d+)\s+(\d+)\s+255\s", data)
        width, height = int(header[1]), int(header[2])
        dots = data[header.end() :]

        def at(x, y):
            column, row = min(max(int(x * 2), 0), width - 1), min(max(int(y * 2), 0), height - 1)
            return 1 - dots[row * width + column] / 255

        return at
