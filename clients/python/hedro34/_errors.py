"""The exception class with its kinds, and its messages in plain words."""

from __future__ import annotations

import difflib
import re
from collections.abc import Iterable, Sequence
from dataclasses import dataclass

from . import _abi as abi
from ._values import article


class Error(Exception):
    """A call that failed.

    `code` is the 32-bit result code, `number` the failure's number where it has one (such as 91 for an empty
    reference), else 0; `source` and `description` are what the other side says. A host's object that raises one passes
    all of these on.
    """

    def __init__(
        self, message: str, code: int = abi.E_FAIL, *, number: int = 0, source: str = "", description: str = ""
    ) -> None:
        super().__init__(message)
        self.number = number or (code & 0xFFFF if code & 0xFFFF0000 == abi.FAILURES else 0)
        self.code = abi.FAILURES | number if 0 < number <= 0xFFFF else code
        self.source = source
        self.description = description or message


class MemberError(Error, AttributeError):
    """There is no member of this name, or none that can be assigned; also an AttributeError, so that `hasattr` works."""


class ArgumentTypeError(Error, TypeError):
    """A call with an argument of a wrong type or of no such name, or with too few or too many; also a TypeError."""


class ArgumentValueError(Error, ValueError):
    """A call with a value that the library does not take, such as a number that is too large; also a ValueError."""


def suggestion(name: str, known: Iterable[str]) -> str:
    by_small = {other.lower(): other for other in known}
    near = difflib.get_close_matches(name.lower(), by_small, 1)
    return f' (did you mean "{by_small[near[0]]}"?)' if near else ""


_RESULTS = {
    abi.E_NOINTERFACE: "the object cannot be called by name",
    abi.E_OUTOFMEMORY: "out of memory",
    abi.CLASS_E_CLASSNOTAVAILABLE: "the library has no such class",
    abi.REGDB_E_READREGDB: "the class registry cannot be read",
    abi.REGDB_E_WRITEREGDB: "the class registry cannot be written",
}


def result_text(code: int) -> str:
    return _RESULTS.get(code, f"result code 0x{code:08X}")


def _in_words(type_: str) -> str:
    return re.sub(r"\bAny\b", "an object", type_)


# Failures of an operation that say what was wrong with what it was given.
_FAILURES: dict[int, type[Error]] = {5: ArgumentValueError, 6: ArgumentValueError, 13: ArgumentTypeError}
_KINDS: dict[int, type[Error]] = {
    abi.DISP_E_MEMBERNOTFOUND: MemberError,
    abi.DISP_E_UNKNOWNNAME: ArgumentTypeError,
    abi.DISP_E_BADPARAMCOUNT: ArgumentTypeError,
    abi.DISP_E_PARAMNOTOPTIONAL: ArgumentTypeError,
    abi.DISP_E_PARAMNOTFOUND: ArgumentTypeError,
    abi.DISP_E_TYPEMISMATCH: ArgumentTypeError,
    abi.DISP_E_BADVARTYPE: ArgumentTypeError,
    abi.DISP_E_OVERFLOW: ArgumentValueError,
}


def takes_words(parameters: Sequence[Parameter] | None) -> str:
    """What a call takes, at the end of a message; nothing where that is not known."""
    if parameters is None:
        return ""
    names = ", ".join(f"[{p.name}]" if p.optional else p.name for p in parameters)
    return f"; it takes ({names})" if names else "; it takes none"


@dataclass
class Parameter:
    """An argument of a member, as far as it is known."""

    name: str
    type: str = ""
    optional: bool = False


@dataclass
class Call:
    """What was tried: enough to say what was wrong with it."""

    what: str  # "clsHEDROTest.LoadXML"
    flags: int
    arguments: Sequence[object]
    named: dict[str, object]
    parameters: Sequence[Parameter] | None = None  # None: not known
    type: str = ""  # of a property that is known
    is_method: bool = False
    is_written: bool = False

    def error(self, code: int, bad: int, exception: abi.ExcepInfo) -> Error:
        if code == abi.DISP_E_EXCEPTION:
            return self._exception(exception)
        kind = _KINDS.get(code, Error)
        if kind is MemberError and self.is_written:
            kind = ArgumentTypeError  # it can be assigned, but not that
        return kind(f"{self.what}: {self._words(code, bad)}", code)

    def _exception(self, exception: abi.ExcepInfo) -> Error:
        source, description = abi.read_text(exception.source), abi.read_text(exception.description)
        code = exception.scode or abi.FAILURES | exception.code
        number = code & 0xFFFF if code & 0xFFFF0000 == abi.FAILURES else 0
        ending = f" (error {number})" if number else f" ({result_text(code)})"
        message = f"{self.what}: {description or 'failed'}{ending}"
        return _FAILURES.get(number, Error)(message, code, source=source, description=description)

    def _words(self, code: int, bad: int) -> str:
        if code == abi.DISP_E_MEMBERNOTFOUND:
            return self._not_so()
        if code == abi.DISP_E_BADPARAMCOUNT:
            count = len(self.arguments) + len(self.named)
            twice = [p.name for p in (self.parameters or ())[: len(self.arguments)] if p.name.lower() in self._names()]
            given = f'argument "{twice[0]}" is given twice' if twice else f"{count} argument{'s' * (count != 1)} given"
            return given + takes_words(self.parameters)
        if code in (abi.DISP_E_PARAMNOTOPTIONAL, abi.DISP_E_PARAMNOTFOUND):
            return f"an argument is missing{takes_words(self.parameters)}"
        if code in (abi.DISP_E_TYPEMISMATCH, abi.DISP_E_BADVARTYPE):
            which, value, wanted = self._argument(bad)
            what, shown = article(value), f"{value!r:.60}"
            if shown.startswith(f"<{type(value).__name__} "):
                what = shown
            elif what != shown:
                what = f"{what}, {shown}"
            if wanted == "Any" and code == abi.DISP_E_BADVARTYPE:
                return f"{which} has the wrong type: {what}, which cannot be passed on"
            return f"{which} has the wrong type: {what}" + (f", not {_in_words(wanted)}" if wanted else "")
        if code == abi.DISP_E_OVERFLOW:
            which, value, _ = self._argument(bad)
            return f"{which} is too large: {value!r:.60}"
        return result_text(code)

    def _names(self) -> set[str]:
        return {name.lower() for name in self.named}

    def _not_so(self) -> str:
        if not self.flags & (abi.PUT | abi.PUTREF):
            return "cannot be read or called"
        if self.is_method:
            return "is a method and cannot be assigned"
        what = f"{article(self.arguments[-1])} cannot be assigned"
        if self.is_written:
            return f"{what}: it is {_in_words(self.type)}"
        return f"{what}: it is read only" if self.type else what

    def _argument(self, bad: int) -> tuple[str, object, str]:
        """The argument at a place of the call's backward list: its name, its value, the type that it should have."""
        if self.flags & (abi.PUT | abi.PUTREF):
            if bad == 0:
                return "the value", self.arguments[-1], self.type
            return "the index", self.arguments[-1 - bad] if bad < len(self.arguments) else None, ""
        names = list(self.named)
        if bad < len(names):
            known = [p for p in self.parameters or () if p.name.lower() == names[bad].lower()]
            return f'argument "{names[bad]}"', self.named[names[bad]], known[0].type if known else ""
        position = len(self.arguments) - 1 - (bad - len(names))
        if position not in range(len(self.arguments)):
            return "an argument", None, ""
        if self.parameters and position < len(self.parameters):
            parameter = self.parameters[position]
            return f'argument {position + 1} "{parameter.name}"', self.arguments[position], parameter.type
        return f"argument {position + 1}", self.arguments[position], ""
