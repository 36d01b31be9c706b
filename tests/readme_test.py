#!/usr/bin/env python3
"""The C++ block of README.md is the whole of examples/merge.cpp, which saves nothing after a reported failure; links lead on."""

import functools
import os
import pathlib
import re
import unittest

from program import SOURCES, ProgramTest, run

EXAMPLE = pathlib.Path(os.environ.get("HEDRO34_BUILD", "the folder named by HEDRO34_BUILD")) / "example_merge"


@functools.cache
def targets(page):
    """What a link to the page may name: as browsers of code make it, the words of each heading in small letters."""
    text = re.sub(r"^```.*?^```$", "", page.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
    seen, names = {}, set()
    for heading in re.findall(r"^#+ (.*)$", text, re.MULTILINE):
        shown = re.sub(r"\[(.*?)\]\(.*?\)", r"\1", heading)
        name = re.sub(r"[^\w\- ]", "", shown.lower()).replace(" ", "-")
        seen[name] = seen.get(name, -1) + 1
        names.add(f"{name}-{seen[name]}" if seen[name] else name)
    return names


PAGES = [page for pattern in ("*.md", "*/*.md", "clients/*/*.md", "tests/*/*.md") for page in SOURCES.glob(pattern)]


class Readme(ProgramTest):
    def test_links(self):
        links = [(page, *link) for page in PAGES
                 for link in re.findall(r"\]\((?!https?:)([^)#\s]*)#?([^)\s]*)\)", page.read_text(encoding="utf-8"))]
        self.assertGreater(len(links), 60)
        for page, file, heading in links:
            with self.subTest(page=str(page.relative_to(SOURCES)), link=f"{file}#{heading}"):
                target = page.parent / file if file else page
                self.assertTrue(target.exists())
                self.assertTrue(not heading or heading in targets(target))

    def test_each_document_is_in_the_index(self):
        index = (SOURCES / "docs/README.md").read_text(encoding="utf-8")
        for page in (SOURCES / "docs").glob("*.md"):
            self.assertTrue(page.name == "README.md" or f"({page.name})" in index, page.name)

    def test_scripts_are_there(self):
        named = {(page.name, name) for page in PAGES if page.name != "CHANGELOG.md"
                 for name in re.findall(r"\bscripts/[a-z-]*[a-z]\b(?!-\*)", page.read_text(encoding="utf-8"))}
        self.assertGreater(len(named), 15)
        for page, name in sorted(named):
            self.assertTrue((SOURCES / name).is_file(), f"{page}: {name}")

    def test_version_is_that_of_the_interface(self):
        build = (SOURCES / "CMakeLists.txt").read_text(encoding="utf-8")
        interface = re.search(r"^project\(HEDRO34 VERSION (\d+\.\d+)\.", build, re.MULTILINE)[1]
        named = [(page.name, number) for page in PAGES if page.name != "CHANGELOG.md" for number in re.findall(
            r"(?:find_package\(HEDRO34 |libhedro34(?:-component)?\.so\.)(\d[\d.]*\d)", page.read_text(encoding="utf-8"))]
        self.assertGreater(len(named), 5)
        self.assertEqual([name for name in named if name[1] != interface], [])

    def test_block_is_the_example(self):
        readme, source = ((SOURCES / name).read_text(encoding="utf-8") for name in ("README.md", "examples/merge.cpp"))
        self.assertEqual(re.findall(r"^```cpp\n(.*?)^```$", readme, re.MULTILINE | re.DOTALL), [source])

    def test_example(self):
        samples = SOURCES / "examples"
        biology = (samples / "biology.xml").read_text(encoding="utf-8")
        self.file("examples/biology.form.json", (samples / "biology.form.json").read_text(encoding="utf-8"))
        for content, code, said in [
            (biology.replace("question-id='7'", "question-id='3'"), 1, "(?s)^failure 457: .*\nnothing is saved: "),
            (biology, 0, "^$"),
        ]:
            self.file("examples/biology.xml", content)
            before = self.files()
            outcome = run(cwd=self.folder, program=str(EXAMPLE))
            self.assertRegex(outcome.err, said)
            written = sorted(self.files().keys() - before.keys())
            expected = [] if code else ["biology-merged.form.json", "biology.ktd"]
            self.assertEqual((outcome.code, written), (code, expected))


if __name__ == "__main__":
    unittest.main()
