"""The binary interface of the component library: layouts, constants, texts, and calls through tables of functions.

Memory that changes hands is malloc's, as the library expects: a text is 4 unused bytes, its length in bytes, its 16-bit
units and a zero unit, named by the address of the first unit. Whoever gets a text or an array frees it.
"""

from __future__ import annotations

import codecs
import ctypes
from collections import defaultdict
from ctypes import POINTER, c_int32, c_int64, c_uint8, c_uint16, c_uint32, c_uint64, c_void_p
from typing import Any
from uuid import UUID

VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BSTR, VT_DISPATCH, VT_ERROR, VT_BOOL = range(12)
VT_VARIANT, VT_UNKNOWN = 12, 13
VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT = range(16, 24)
VT_ARRAY, VT_BYREF = 0x2000, 0x4000
FADF_BSTR, FADF_VARIANT = 0x100, 0x800

METHOD, GET, PUT, PUTREF = 1, 2, 4, 8
DISPID_VALUE, DISPID_UNKNOWN, DISPID_PUT = 0, -1, -3

S_OK = 0
E_NOINTERFACE = 0x80004002
E_FAIL = 0x80004005
E_POINTER = 0x80004003
E_OUTOFMEMORY = 0x8007000E
E_INVALIDARG = 0x80070057
DISP_E_MEMBERNOTFOUND = 0x80020003
DISP_E_PARAMNOTFOUND = 0x80020004
DISP_E_TYPEMISMATCH = 0x80020005
DISP_E_UNKNOWNNAME = 0x80020006
DISP_E_NONAMEDARGS = 0x80020007
DISP_E_BADVARTYPE = 0x80020008
DISP_E_EXCEPTION = 0x80020009
DISP_E_OVERFLOW = 0x8002000A
DISP_E_BADINDEX = 0x8002000B
DISP_E_BADPARAMCOUNT = 0x8002000E
DISP_E_PARAMNOTOPTIONAL = 0x8002000F
CLASS_E_CLASSNOTAVAILABLE = 0x80040111
REGDB_E_READREGDB = 0x80040150
REGDB_E_WRITEREGDB = 0x80040151
FAILURES = 0x800A0000  # the low 16 bits are a failure number

IID_NULL = UUID(int=0).bytes_le
IID_IUNKNOWN = UUID("00000000-0000-0000-C000-000000000046").bytes_le
IID_IDISPATCH = UUID("00020400-0000-0000-C000-000000000046").bytes_le
IID_ICLASSFACTORY = UUID("00000001-0000-0000-C000-000000000046").bytes_le


class _Value(ctypes.Union):
    _fields_ = [
        ("i1", ctypes.c_int8), ("ui1", c_uint8), ("i2", ctypes.c_int16), ("ui2", c_uint16),
        ("i4", c_int32), ("ui4", c_uint32), ("i8", c_int64), ("ui8", c_uint64),
        ("r4", ctypes.c_float), ("r8", ctypes.c_double), ("pointer", c_void_p), ("record", c_void_p * 2),
    ]  # fmt: skip


class Variant(ctypes.Structure):
    _anonymous_ = ("value",)
    _fields_ = [("vt", c_uint16), ("reserved", c_uint16 * 3), ("value", _Value)]


class DispParams(ctypes.Structure):
    _fields_ = [
        ("arguments", POINTER(Variant)),  # the last one first, behind the named ones
        ("named_ids", POINTER(c_int32)),
        ("count", c_uint32),
        ("named_count", c_uint32),
    ]


class ExcepInfo(ctypes.Structure):
    _fields_ = [
        ("code", c_uint16),
        ("reserved", c_uint16),
        ("source", c_void_p),
        ("description", c_void_p),
        ("help_file", c_void_p),
        ("help_context", c_uint32),
        ("reserved_pointer", c_void_p),
        ("fill_in", c_void_p),
        ("scode", c_uint32),
    ]


class SafeArray(ctypes.Structure):
    _fields_ = [
        ("dimensions", c_uint16),
        ("features", c_uint16),
        ("element_size", c_uint32),
        ("locks", c_uint32),
        ("data", c_void_p),
        ("count", c_uint32),
        ("lower_bound", c_int32),
    ]


assert [ctypes.sizeof(t) for t in (Variant, DispParams, ExcepInfo, SafeArray)] == [24, 24, 64, 32], "a 64-bit system"

_libc = ctypes.CDLL(None)
_malloc = _libc.malloc
_malloc.restype, _malloc.argtypes = c_void_p, [ctypes.c_size_t]
free = _libc.free
free.restype, free.argtypes = None, [c_void_p]


def allocate(size: int) -> int:
    """A zeroed block."""
    block: int | None = _malloc(size)
    if not block:
        raise MemoryError
    ctypes.memset(block, 0, size)
    return block


# --- texts -----------------------------------------------------------------------------------------------------------


def new_text(text: str) -> int:
    """Lone surrogates and zero characters pass as they are."""
    data = text.encode("utf-16-le", "surrogatepass")
    block = allocate(len(data) + 10)
    c_uint32.from_address(block + 4).value = len(data)
    ctypes.memmove(block + 8, data, len(data))
    return block + 8


def read_text(text: int | None) -> str:
    if not text:
        return ""
    size = c_uint32.from_address(text - 4).value & ~1
    return codecs.utf_16_le_decode(ctypes.string_at(text, size), "surrogatepass", True)[0]


def free_text(text: int | None) -> None:
    if text:
        free(text - 8)


# --- interfaces ------------------------------------------------------------------------------------------------------

_prototypes = (
    ctypes.CFUNCTYPE(c_uint32, c_void_p, c_void_p, c_void_p),  # QueryInterface
    ctypes.CFUNCTYPE(c_uint32, c_void_p),  # AddRef
    ctypes.CFUNCTYPE(c_uint32, c_void_p),  # Release
    ctypes.CFUNCTYPE(c_uint32, c_void_p, c_void_p),  # GetTypeInfoCount
    ctypes.CFUNCTYPE(c_uint32, c_void_p, c_uint32, c_uint32, c_void_p),  # GetTypeInfo
    ctypes.CFUNCTYPE(c_uint32, c_void_p, c_void_p, c_void_p, c_uint32, c_uint32, c_void_p),  # GetIDsOfNames
    ctypes.CFUNCTYPE(  # Invoke
        c_uint32, c_void_p, c_int32, c_void_p, c_uint32, c_uint16, c_void_p, c_void_p, c_void_p, c_void_p
    ),
)
_factory_prototypes = (
    *_prototypes[:3],
    ctypes.CFUNCTYPE(c_uint32, c_void_p, c_void_p, c_void_p, c_void_p),  # CreateInstance
    ctypes.CFUNCTYPE(c_uint32, c_void_p, c_int32),  # LockServer
)


# Invoke takes arguments that are ready to be passed: pointers as `byref` and `from_param` make them, and small numbers. Were
# their types declared, ctypes would convert them again at each call, which takes as long as all else there.
_ready_made = ctypes.CFUNCTYPE(c_uint32)
at = c_void_p.from_param
AT_IID_NULL = at(IID_NULL)

Numbers = dict[str | tuple[str, ...], tuple[int, ...]]  # of a member and of arguments of it, by their names


class Table:
    """The functions behind an IDispatch. One for each table in memory; all objects of a library share theirs."""

    _known: dict[int, Table] = {}

    def __init__(self, address: int, prototypes: tuple[Any, ...] = _prototypes) -> None:
        slots = (c_void_p * len(prototypes)).from_address(address)
        functions = [prototype(slot) for prototype, slot in zip(prototypes, slots)]
        self.query, self.add_ref, self.release = functions[:3]
        self.rest = functions[3:]
        self.ids = functions[-2]
        self.invoke = _ready_made(slots[len(slots) - 1] or 0)
        self.numbers: defaultdict[type, Numbers] | None = None  # of each class; None where each object may have its own

    @classmethod
    def of(cls, pointer: int) -> Table:
        address = c_void_p.from_address(pointer).value or 0
        return cls._known.get(address) or cls._known.setdefault(address, cls(address))

    def keep_numbers(self) -> None:
        """The objects are a library's: those of a class have the same numbers."""
        if self.numbers is None:
            self.numbers = defaultdict(lambda: {"": (DISPID_VALUE,)})

    @classmethod
    def of_factory(cls, pointer: int) -> Table:
        return cls(c_void_p.from_address(pointer).value or 0, _factory_prototypes)


def add_ref(pointer: int) -> None:
    Table.of(pointer).add_ref(pointer)


def release(pointer: int) -> None:
    Table.of(pointer).release(pointer)


def identity(pointer: int) -> int:
    """The address by which an object is the same one, not counted."""
    unknown = c_void_p()
    table = Table.of(pointer)
    if table.query(pointer, IID_IUNKNOWN, ctypes.byref(unknown)) != S_OK or not unknown.value:
        return pointer
    release(unknown.value)
    return unknown.value


def new_table(functions: tuple[Any, ...]) -> int:
    """A table of one's own, which is never freed. The functions have to be kept."""
    size = ctypes.sizeof(c_void_p)
    address = allocate(size * len(functions))
    for i, function in enumerate(functions):
        c_void_p.from_address(address + i * size).value = ctypes.cast(function, c_void_p).value
    return address


def new_functions(*functions: Any) -> tuple[Any, ...]:
    return tuple(prototype(function) for prototype, function in zip(_prototypes, functions, strict=True))


def disarm(address: int) -> None:
    """Puts a harmless function of the system in every place of a table: what comes from now on runs no Python."""
    slots = (c_void_p * len(_prototypes)).from_address(address)
    harmless = ctypes.cast(_libc.getpid, c_void_p).value
    for i in range(len(slots)):
        slots[i] = harmless
