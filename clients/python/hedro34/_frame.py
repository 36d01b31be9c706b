"""What one call passes by reference."""

from __future__ import annotations

import ctypes
from collections.abc import Sequence
from typing import Any

from . import _abi as abi
from . import _values as values

MOST_ARGUMENTS = 6  # of a member of the library, with the value of a put

AT_NO_PARAMS = ctypes.byref(abi.DispParams())
_NUMBERS = (int, float, bool)  # a variant owns nothing then


class Frame:
    """The arguments of a call, its result and what is said of its failure. One that is empty again serves the next call."""

    def __init__(self, count: int = 0) -> None:
        """Has room for so many arguments, and for those of any member of the library."""
        self.params, self.result, self.exception = abi.DispParams(), abi.Variant(), abi.ExcepInfo()
        self.bad = ctypes.c_uint32(0xFFFF)
        self._placed = (abi.Variant * max(count, MOST_ARGUMENTS))()
        self._arguments = list(self._placed)  # each stands at its place among them
        self.params.arguments = self._placed
        self._shape: tuple[int, tuple[int, ...]] = (0, ())  # what stands in `params`: how many, the numbers of the names
        references = (self.params, self.result, self.exception, self.bad)
        self.at_params, self.at_result, self.at_exception, self.at_bad = map(ctypes.byref, references)
        self.references: list[tuple[values.ByRef[Any], abi.Variant]] = []
        self.owners: list[abi.Variant] = []

    def place(self, given: Sequence[object], names: tuple[int, ...], writes: int) -> None:
        """Places arguments, the last one first, behind those that have names, or behind the value of a put. At a TypeError
        or OverflowError `bad` is the index of the one that does not fit."""
        shape = (len(given), (abi.DISPID_PUT,) if writes else names)
        if shape != self._shape:
            self._shape = self.params.count, names = shape
            self.params.named_ids, self.params.named_count = (ctypes.c_int32 * len(names))(*names), len(names)
        for argument, value in zip(self._arguments, given):
            try:
                if type(value) in _NUMBERS:
                    values.put(argument, value)
                elif isinstance(value, values.ByRef):
                    self._place_reference(argument, value)
                else:
                    values.put(argument, value)
                    self.owners.append(argument)
            except (TypeError, OverflowError):
                self.bad.value = self._arguments.index(argument)
                raise

    def _place_reference(self, argument: abi.Variant, reference: values.ByRef[Any]) -> None:
        held = abi.Variant()
        values.put(held, reference.value)
        self.owners.append(held)
        self.references.append((reference, held))
        if held.vt in (abi.VT_BOOL, abi.VT_I4, abi.VT_R8, abi.VT_BSTR) or held.vt & abi.VT_ARRAY:
            argument.vt, argument.pointer = abi.VT_BYREF | held.vt, ctypes.addressof(held) + abi.Variant.value.offset
        else:
            argument.vt, argument.pointer = abi.VT_BYREF | abi.VT_VARIANT, ctypes.addressof(held)

    def read_references(self) -> None:
        """Gives the by-reference arguments the values that they have now."""
        for reference, held in self.references:
            reference.value = values.get(held)

    def clear_arguments(self) -> None:
        self.references.clear()
        while self.owners:
            values.clear(self.owners.pop())

    def clear(self) -> None:
        """Frees all that is in it. It serves no further call: anything may have been left in it."""
        self.clear_arguments()
        values.clear(self.result)
        exception, self.exception = self.exception, abi.ExcepInfo()
        for text in (exception.source, exception.description, exception.help_file):
            abi.free_text(text)
