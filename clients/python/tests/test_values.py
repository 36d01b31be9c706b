"""Values through the boundary, and Python objects as the library meets them: no library is needed."""

from __future__ import annotations

import contextlib
import copy
import io
import threading
import unittest
from pathlib import Path
from typing import Any

import support  # noqa: F401  (the path)

import hedro34
from hedro34 import _host, _object


class Teacher:
    subject = "Biology"

    def __init__(self) -> None:
        self.marks = {1: "A"}
        self._secret = "hidden"

    def Echo(self, value: Any = "nothing", second: Any = None) -> Any:
        return value

    def Item(self, index: int) -> str:
        return self.marks[index]

    def SetItem(self, index: int, value: str) -> None:
        self.marks[index] = value

    def Fail(self, error: str) -> None:
        own, bare = hedro34.Error("jam", number=57), hedro34.Error("crease")
        raise {"plain": ValueError("no paper"), "own": own, "bare": bare, "stop": KeyboardInterrupt()}[error]


def proxy(target: object) -> Any:
    """The object as the other side sees it: through its table of functions only."""
    return _object.AnyObject(_host.expose(target))


class Values(unittest.TestCase):
    def setUp(self) -> None:
        self.teacher = Teacher()
        self.proxy = proxy(self.teacher)
        self.addCleanup(lambda: self.assertEqual(hedro34.exposed_objects(), []))
        self.addCleanup(lambda: self.proxy.release())

    def test_come_back_as_they_went(self) -> None:
        texts = ["", "a\0b", "\U0001f600", "half \ud83d"]
        numbers = [0, -1, 2**31 - 1, -(2**31), 2**31, 2**63 - 1, -(2**63), 0.1, float("inf")]
        numbers.append(hedro34.HEDROTestQuestionType.Case)
        markers = [None, True, False, hedro34.NULL]
        arrays = [["a", ""], [1, -2], [1, "a", None, [2.5]], [True], [2**40], []]
        for value in [*texts, *numbers, *markers, *arrays, self.teacher]:
            with self.subTest(value=value):
                back = self.proxy.Echo(value)
                self.assertEqual((back, type(back) in (type(value), int, hedro34.Array)), (value, True))
                reference = hedro34.ByRef(value)
                self.assertEqual((self.proxy.Echo(reference), reference.value), (value, value))
        self.assertIs(self.proxy.Echo(self.proxy), self.teacher)
        self.assertIsNone(self.proxy.Echo(hedro34.EMPTY))
        self.assertEqual(self.proxy.Echo(Path("a/b.xml")), "a/b.xml")
        self.assertEqual(self.proxy.Echo(hedro34.MISSING), "nothing")
        array = self.proxy.Echo(hedro34.Array(["a", "b"], 7))
        self.assertEqual((array.lower_bound, array.upper_bound), (7, 8))
        self.assertIsNone(self.proxy.Echo([]).lower_bound)

    def test_members(self) -> None:
        self.assertEqual((self.proxy.SUBJECT, self.proxy.echo(2)), ("Biology", 2))
        self.proxy.subject = "Physics"
        self.assertEqual(self.teacher.subject, "Physics")
        self.assertEqual(self.proxy(1), "A")
        self.proxy._call("Item", 4, (2, "B"), {})  # Item(2) = "B"
        self.assertEqual(self.teacher.marks, {1: "A", 2: "B"})
        for name in ("Subjekt", "_secret"):
            self.assertFalse(hasattr(self.proxy, name))

    def test_failures_of_the_host(self) -> None:
        own, bare = ("own", "jam .error 57", 57), ("bare", "crease .error 440", 440)
        with contextlib.redirect_stderr(io.StringIO()) as printed:
            for error, message, number in (("plain", "ValueError: no paper .error 440", 440), own, bare):
                with self.assertRaisesRegex(hedro34.Error, f"Fail: {message}") as caught:
                    self.proxy.Fail(error)
                self.assertEqual((caught.exception.number, caught.exception.source), (number, "Teacher.Fail"))
            with self.assertRaises(KeyboardInterrupt):
                self.proxy.Fail("stop")
        self.assertIn('raise {"plain"', hedro34.last_host_error())
        self.assertEqual(printed.getvalue().count("Teacher.Fail failed when the library called it"), 1)

    def test_identity_and_release(self) -> None:
        other = proxy(self.teacher)
        self.assertEqual((other, hash(other)), (self.proxy, hash(self.proxy)))
        self.assertEqual(hedro34.exposed_objects(), [self.teacher])
        other.release()
        with self.assertRaises(TypeError):
            copy.copy(self.proxy)
        with self.assertRaisesRegex(hedro34.Error, "has been released"):
            other.subject

    def test_threads(self) -> None:
        seen: list[object] = []

        def use() -> None:
            try:
                self.proxy.subject
            except hedro34.Error as error:
                seen.append(str(error))

        thread = threading.Thread(target=use, name="Worker")
        thread.start()
        thread.join()
        self.assertIn('belongs to thread "MainThread" and was used on "Worker"', str(seen[0]))


if __name__ == "__main__":
    unittest.main()
