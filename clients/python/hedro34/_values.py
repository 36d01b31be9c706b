"""Python values as variants and back.

    None                  the empty reference            bool, int, float, str   themselves; ints of 64 bits at most
    MISSING               an argument that is left out   pathlib.Path            its text
    NULL, EMPTY           the database null, no value    list, tuple, Array      an array
    ByRef                 a by-reference argument        every other object      an object, called by name
"""

from __future__ import annotations

import ctypes
import os
from collections.abc import Callable, Iterable
from typing import Any, Final, Generic, TypeVar

from . import _abi as abi
from ._abi import Variant

T = TypeVar("T")


class _Marker:
    def __init__(self, name: str) -> None:
        self._name = name

    def __repr__(self) -> str:
        return self._name


MISSING: Final[Any] = _Marker("MISSING")  # of any type: it may stand for every argument that is optional
NULL: Final = _Marker("NULL")
EMPTY: Final = _Marker("EMPTY")


class ByRef(Generic[T]):
    """A by-reference argument: pass it, then read `value`.

    cancelled = hedro34.ByRef(False)
    test.LoadXML("unit1.xml", bUserCancelled=cancelled)
    if cancelled.value: ...
    """

    def __init__(self, value: T) -> None:
        self.value = value

    def __repr__(self) -> str:
        return f"ByRef({self.value!r})"


class Array(list[T]):
    """A list that knows under which number the other side counts its first element. Python's own indexes start at 0.

    `lower_bound` is None for an array without bounds, which has no elements.
    """

    def __init__(self, elements: Iterable[T] = (), lower_bound: int | None = 0) -> None:
        super().__init__(elements)
        self.lower_bound = lower_bound if self else None

    @property
    def upper_bound(self) -> int | None:
        return None if self.lower_bound is None else self.lower_bound + len(self) - 1


# Set by `_object`: a counted pointer to a Python object, and the Python object for one; the hint names its class.
expose: Callable[[object], int]
adopt: Callable[[int, str], Any]


def _fits(value: int, bits: int) -> bool:
    return -(1 << bits - 1) <= value < 1 << bits - 1


def put(target: Variant, value: object) -> None:
    """Fills an empty variant, which owns what is made. A TypeError or OverflowError leaves it empty."""
    if value is None:
        target.vt, target.pointer = abi.VT_DISPATCH, None
    elif isinstance(value, bool):
        target.i2, target.vt = -1 if value else 0, abi.VT_BOOL
    elif isinstance(value, int):
        if _fits(value, 32):
            target.i4, target.vt = value, abi.VT_I4
        elif _fits(value, 64):
            target.i8, target.vt = value, abi.VT_I8
        else:
            raise OverflowError("an int of more than 64 bits")
    elif isinstance(value, float):
        target.r8, target.vt = value, abi.VT_R8
    elif isinstance(value, str):
        target.pointer, target.vt = abi.new_text(value), abi.VT_BSTR
    elif value is MISSING:
        target.ui4, target.vt = abi.DISP_E_PARAMNOTFOUND, abi.VT_ERROR
    elif value is NULL:
        target.vt = abi.VT_NULL
    elif value is EMPTY:
        target.vt = abi.VT_EMPTY
    elif isinstance(value, (list, tuple)):
        _put_array(target, value)
    elif isinstance(value, os.PathLike):
        put(target, os.fsdecode(value))
    elif isinstance(value, ByRef):
        raise TypeError("a ByRef can only be an argument itself")
    elif type(value).__module__ == "builtins" and type(value).__name__ not in ("type", "module"):
        raise TypeError(f"{article(value)} has no counterpart")
    else:
        target.pointer, target.vt = expose(value), abi.VT_DISPATCH


def _put_array(target: Variant, values: list[Any] | tuple[Any, ...]) -> None:
    if all(type(value) is int and _fits(value, 32) for value in values) and values:
        element, size, features = abi.VT_I4, 4, 0
    elif all(isinstance(value, str) for value in values):
        element, size, features = abi.VT_BSTR, 8, abi.FADF_BSTR
    else:
        element, size, features = abi.VT_VARIANT, 24, abi.FADF_VARIANT
    target.pointer, target.vt = None, abi.VT_ARRAY | element
    if not values:
        return
    target.pointer = address = abi.allocate(ctypes.sizeof(abi.SafeArray))
    array = abi.SafeArray.from_address(address)
    array.dimensions, array.features, array.element_size = 1, features, size
    try:
        array.lower_bound = getattr(values, "lower_bound", 0) or 0
        array.data = data = abi.allocate(size * len(values))
        array.count = len(values)
        for i, value in enumerate(values):
            at = data + i * size
            if element == abi.VT_I4:
                ctypes.c_int32.from_address(at).value = value
            elif element == abi.VT_BSTR:
                ctypes.c_void_p.from_address(at).value = abi.new_text(value)
            else:
                put(Variant.from_address(at), value)
    except BaseException:
        clear(target)
        raise


def clear(target: Variant) -> None:
    vt, target.vt = target.vt, abi.VT_EMPTY
    if vt in _FIELDS or vt & abi.VT_BYREF:
        return
    pointer = target.pointer
    if not pointer:
        return
    if vt & abi.VT_ARRAY:
        _free_array(pointer)
    elif vt == abi.VT_BSTR:
        abi.free_text(pointer)
    elif vt in (abi.VT_DISPATCH, abi.VT_UNKNOWN):
        abi.release(pointer)


def _free_array(pointer: int) -> None:
    array = abi.SafeArray.from_address(pointer)
    if array.data:
        for i in range(array.count):
            if array.features & abi.FADF_BSTR:
                abi.free_text(ctypes.c_void_p.from_address(array.data + i * 8).value)
            elif array.features & abi.FADF_VARIANT:
                clear(Variant.from_address(array.data + i * 24))
        abi.free(array.data)
    abi.free(pointer)


_FIELDS = {
    abi.VT_I1: "i1", abi.VT_UI1: "ui1", abi.VT_I2: "i2", abi.VT_UI2: "ui2", abi.VT_I4: "i4", abi.VT_INT: "i4",
    abi.VT_UI4: "ui4", abi.VT_UINT: "ui4", abi.VT_I8: "i8", abi.VT_UI8: "ui8", abi.VT_R4: "r4", abi.VT_R8: "r8",
    abi.VT_DATE: "r8",
}  # fmt: skip


def get(source: Variant, hint: str = "") -> Any:
    """The Python value; the variant keeps what it owns. A value by reference is read through."""
    vt = source.vt
    if vt in _FIELDS:
        return getattr(source, _FIELDS[vt])
    if vt & abi.VT_BYREF:
        if not source.pointer:
            raise TypeError("a by-reference value without a place")
        return _at(vt & ~abi.VT_BYREF, source.pointer, hint)
    if vt & abi.VT_ARRAY:
        return _get_array(source.pointer, vt & ~abi.VT_ARRAY)
    if vt == abi.VT_BSTR:
        return abi.read_text(source.pointer)
    if vt == abi.VT_BOOL:
        return source.i2 != 0
    if vt in (abi.VT_DISPATCH, abi.VT_UNKNOWN):
        pointer = source.pointer
        if not pointer:
            return None
        abi.add_ref(pointer)
        return adopt(pointer, hint)
    if vt == abi.VT_EMPTY:
        return None
    if vt == abi.VT_NULL:
        return NULL
    if vt == abi.VT_CY:
        return source.i8 / 10000
    if vt == abi.VT_ERROR and source.ui4 == abi.DISP_E_PARAMNOTFOUND:
        return MISSING
    raise TypeError(f"a value of kind {vt} has no counterpart in Python")


def take(source: Variant, hint: str = "") -> Any:
    """The Python value, with all that the variant owns: it is empty then."""
    vt = source.vt
    if vt in _FIELDS:
        source.vt = abi.VT_EMPTY
        return getattr(source, _FIELDS[vt])
    pointer = source.pointer
    if vt == abi.VT_BSTR:
        source.vt = abi.VT_EMPTY
        try:
            return abi.read_text(pointer)
        finally:
            abi.free_text(pointer)
    if vt in (abi.VT_DISPATCH, abi.VT_UNKNOWN):
        source.vt = abi.VT_EMPTY
        return adopt(pointer, hint) if pointer else None
    try:
        return get(source, hint)
    finally:
        clear(source)


def _at(vt: int, address: int, hint: str = "") -> Any:
    """The value of a kind that stands at an address."""
    if vt == abi.VT_VARIANT:
        return get(Variant.from_address(address), hint)
    copy = Variant(vt)
    size = int(_FIELDS[vt][-1]) if vt in _FIELDS else {abi.VT_BOOL: 2, abi.VT_ERROR: 4}.get(vt, 8)
    ctypes.memmove(ctypes.addressof(copy) + Variant.value.offset, address, size)
    return get(copy, hint)


def _get_array(pointer: int | None, element: int) -> Array[Any]:
    if not pointer:
        return Array()
    array = abi.SafeArray.from_address(pointer)
    if array.dimensions != 1:
        raise TypeError("an array of more than one dimension")
    elements = range(array.data or 0, (array.data or 0) + array.count * array.element_size, array.element_size or 1)
    return Array([_at(element, address) for address in elements], array.lower_bound)


def article(value: object) -> str:
    """What a value is, in words."""
    if value is None or isinstance(value, _Marker):
        return repr(value)
    name = type(value).__name__
    return ("an " if name[0] in "aeiouAEIOU" else "a ") + name
