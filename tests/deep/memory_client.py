"""Merges through the Python client, `memory_client.py LIBRARY COUNT`: a line after a tenth of them and one at the end, as
tests/deep/memory.cpp has them, each with the blocks of the interpreter behind."""

import ctypes
import gc
import os
import pathlib
import sys

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "clients" / "python"))
import hedro34  # noqa: E402

SAMPLES = SOURCES / "examples" / "versions"
libc = ctypes.CDLL(None)


class Mallinfo2(ctypes.Structure):
    _fields_ = [(name, ctypes.c_size_t) for name in "arena ordblks smblks hblks hblkhd usmblks fsmblks uordblks fordblks keepcost".split()]


libc.mallinfo2.restype = Mallinfo2


def tell_state():
    gc.collect()
    libc.malloc_trim(0)
    resident = int(pathlib.Path("/proc/self/statm").read_text().split()[1]) * os.sysconf("SC_PAGESIZE")
    print(libc.mallinfo2().uordblks, resident, sys.getallocatedblocks())


class Boxes:
    shown = 0

    def Show(self, text, flags, title):
        self.shown += 1
        return 1


class Errors:
    told = 0

    def RaiseError(self, number, *others):
        self.told += 1


def test(version):
    result = hedro34.create("HEDRO34.clsHEDROTest")
    assert result.LoadXML(SAMPLES / f"unit-{version}.xml")
    return result


def merge_object():
    merge = hedro34.create("HEDRO34.clsHEDRO")
    merge.TemplateIn = hedro34.create("HEDRO34.FormTemplate")
    assert merge.TemplateIn.Load(SAMPLES / "unit.form.json")
    merge.TemplateOut = hedro34.create("HEDRO34.FormTemplate")
    for version in "ab":
        merge.Tests.Add(test(version))
    return merge


def main():
    hedro34.load(sys.argv[1])
    count = int(sys.argv[2])
    platform = hedro34.create("HEDRO34.Platform")
    platform.MessageBox = boxes = Boxes()
    lasting = merge_object()
    errors = Errors()
    lasting.SetError(errors)
    for i in range(1, count + 1):
        merge = merge_object() if i % 20 == 0 else lasting
        merge.SequenceQuestion = 0 if i % 7 == 0 else 1  # 0: a box, and no merge
        if i % 11 == 0:
            merge.TemplateOut = None  # a failure
        told = boxes.shown + errors.told
        merged = merge.Merge()
        assert merged == (i % 7 != 0 and i % 11 != 0), i
        assert boxes.shown + errors.told == told + (not merged), i
        merge.TemplateOut = hedro34.create("HEDRO34.FormTemplate")
        if i % 50 == 0:
            report = hedro34.create("HEDRO34.Report")
            report.Document = merge.WENKTD
            report.AddTest(merge.Tests[1])
            assert report.Page.endswith("</html>\n")
        if i in (count // 10, count):
            tell_state()
    lasting.SetError(None)
    platform.MessageBox = None
    del merge, lasting, report, platform
    gc.collect()
    assert hedro34.can_unload(), "an object is left behind"


main()
