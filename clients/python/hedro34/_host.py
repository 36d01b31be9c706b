"""Python objects as objects of the host, which the library calls by name.

Members are found without regard to case; names that begin with "_" are hidden. Reading a member gives an attribute,
or what a method gives. Assigning one calls `Set<Name>` where the class has it, with the indexes in front of the value,
else it sets the attribute. The default member is the one that the class names in `_default_`, else `Value`, else
`Item`. Arguments by reference come as plain values, and those that were left out at the end do not come at all.

An exception in a member becomes a failed call; the library goes on and reports it. Its traceback is printed to standard
error and kept as text in `last_host_error()`. A `hedro34.Error` is a failure on purpose: it is not printed, and its
number and description pass on unchanged. KeyboardInterrupt and SystemExit are raised again when the call into the
library is over.
"""

from __future__ import annotations

import contextlib
import ctypes
import inspect
import sys
import threading
import traceback
import weakref
from typing import Any

from . import _abi as abi
from . import _values as values
from ._errors import Error

_lock = threading.RLock()  # one Python object may serve several threads
by_address: dict[int, Exposed] = {}
_by_target: dict[int, Exposed] = {}

_last_error = ""
_state = threading.local()
interrupted: set[int] = set()  # the threads that have an interrupt to raise


class Exposed:
    """A Python object while the other side holds it."""

    __slots__ = ("target", "address", "count")

    def __init__(self, target: object) -> None:
        self.target = target
        self.address = abi.allocate(16)
        self.count = 0
        ctypes.c_void_p.from_address(self.address).value = _table
        by_address[self.address] = _by_target[id(target)] = self

    def drop(self) -> None:
        del by_address[self.address], _by_target[id(self.target)]
        abi.free(self.address)


def expose(target: object) -> int:
    """A counted pointer to the object: always the same one while somebody holds it."""
    with _lock:
        exposed = _by_target.get(id(target)) or Exposed(target)
        exposed.count += 1
        return exposed.address


def exposed_objects() -> list[object]:
    """The Python objects that the library holds at this moment."""
    with _lock:
        return [exposed.target for exposed in by_address.values()]


def last_host_error() -> str:
    """The traceback of the last exception that a host's object raised when the library called it; "" for none."""
    return _last_error


def raise_interrupt() -> None:
    """Raises the KeyboardInterrupt or SystemExit that came while the library called a host's object."""
    interrupt = getattr(_state, "interrupt", None)
    if interrupt is not None:
        _state.interrupt = None
        interrupted.discard(threading.get_ident())
        raise interrupt


def _interrupt(interrupt: BaseException) -> None:
    _state.interrupt = interrupt
    interrupted.add(threading.get_ident())


# --- members ---------------------------------------------------------------------------------------------------------

_members: weakref.WeakKeyDictionary[type, dict[str, str]] = weakref.WeakKeyDictionary()
_ids: dict[str, int] = {}
_names: list[str] = [""]


def _find(target: object, name: str) -> str | None:
    """The object's own spelling of a name."""
    if not name or name.startswith("_"):
        return None
    own = getattr(target, "__dict__", {})
    if name in own:
        return name
    cls = type(target)
    known = _members.get(cls)
    if known is None:
        known = {}
        for base in reversed(cls.__mro__):
            for other in (*getattr(base, "__annotations__", {}), *base.__dict__):
                known[other.lower()] = other
        _members[cls] = known
    small = name.lower()
    if small in known:
        return known[small]
    for other in own:
        if other.lower() == small:
            return str(other)
    return name if hasattr(target, name) else None


def _default(target: object) -> str | None:
    named = getattr(type(target), "_default_", None)
    return _find(target, named) if named else _find(target, "Value") or _find(target, "Item")


def _read(target: object, name: str, arguments: list[Any]) -> Any:
    while arguments and arguments[-1] is values.MISSING:
        arguments.pop()
    member = getattr(target, name)
    if callable(member):
        return member(*arguments)
    if arguments:
        raise TypeError(f"{name} takes no arguments")
    return member


def _write(target: object, name: str, arguments: list[Any]) -> bool:
    """False when the member cannot be assigned."""
    setter = _find(target, "Set" + name)
    if setter is not None and callable(getattr(target, setter)):
        getattr(target, setter)(*arguments)
        return True
    if len(arguments) != 1 or inspect.isroutine(inspect.getattr_static(type(target), name, None)):
        return False
    setattr(target, name, arguments[0])
    return True


# --- the functions of the table --------------------------------------------------------------------------------------


def _query(this: int, iid: int, result: int) -> int:
    if not result:
        return abi.E_POINTER
    known = ctypes.string_at(iid, 16) in (abi.IID_IUNKNOWN, abi.IID_IDISPATCH)
    ctypes.c_void_p.from_address(result).value = this if known else None
    if not known:
        return abi.E_NOINTERFACE
    _add_ref(this)
    return abi.S_OK


def _add_ref(this: int) -> int:
    with _lock:
        exposed = by_address.get(this)
        if exposed is None:
            return 0
        exposed.count += 1
        return exposed.count


def _release(this: int) -> int:
    with _lock:
        exposed = by_address.get(this)
        if exposed is None:
            return 0
        exposed.count -= 1
        left = exposed.count
        if left == 0:
            exposed.drop()
    return left


def _type_info_count(this: int, count: int) -> int:
    if not count:
        return abi.E_POINTER
    ctypes.c_uint32.from_address(count).value = 0
    return abi.S_OK


def _type_info(this: int, index: int, locale: int, result: int) -> int:
    if result:
        ctypes.c_void_p.from_address(result).value = None
    return abi.DISP_E_BADINDEX


def _ids_of_names(this: int, iid: int, names: int, count: int, locale: int, ids: int) -> int:
    try:
        exposed = by_address.get(this)
        if exposed is None or not names or not ids or not count:
            return abi.E_INVALIDARG
        found = (ctypes.c_int32 * count).from_address(ids)
        found[:] = [abi.DISPID_UNKNOWN] * count
        name = _find(exposed.target, _wide_text(ctypes.c_void_p.from_address(names).value))
        if name is None:
            return abi.DISP_E_UNKNOWNNAME
        with _lock:
            found[0] = _ids.setdefault(name.lower(), len(_names))
            if found[0] == len(_names):
                _names.append(name)
        return abi.S_OK if count == 1 else abi.DISP_E_UNKNOWNNAME  # arguments have no names
    except Exception:
        return abi.DISP_E_UNKNOWNNAME
    except BaseException as interrupt:
        _interrupt(interrupt)
        return abi.DISP_E_UNKNOWNNAME


def _wide_text(address: int | None) -> str:
    units: list[int] = []
    while address and (unit := ctypes.c_uint16.from_address(address + 2 * len(units)).value):
        units.append(unit)
    return "".join(map(chr, units))


def _invoke(
    this: int, dispid: int, iid: int, locale: int, flags: int, params: int, result: int, exception: int, bad: int
) -> int:
    exposed = by_address.get(this)
    if exposed is None or not params:
        return abi.E_INVALIDARG
    name: str | None = ""
    try:
        target = exposed.target
        name = _default(target) if dispid == abi.DISPID_VALUE else None
        if 0 < dispid < len(_names):
            name = _find(target, _names[dispid])
        if name is None:
            return abi.DISP_E_MEMBERNOTFOUND
        given = abi.DispParams.from_address(params)
        writes = bool(flags & (abi.PUT | abi.PUTREF))
        if given.named_count != writes or (writes and given.named_ids[0] != abi.DISPID_PUT):
            return abi.DISP_E_NONAMEDARGS
        arguments = [values.get(given.arguments[i]) for i in reversed(range(given.count))]  # an assigned value is last
        if writes:
            return abi.S_OK if _write(target, name, arguments) else abi.DISP_E_MEMBERNOTFOUND
        if not flags & abi.METHOD and inspect.isroutine(getattr(target, name)):
            return abi.DISP_E_MEMBERNOTFOUND  # asked whether it is a property
        value = _read(target, name, arguments)
        if result:
            made = abi.Variant()
            if value is not None:  # a method without a result gives no value, not an empty reference
                values.put(made, value)
            ctypes.memmove(result, ctypes.addressof(made), ctypes.sizeof(made))
        return abi.S_OK
    except BaseException as error:
        return _failed(exposed.target, name or "", error, exception)


_NUMBERS = {IndexError: 9, KeyError: 5, OverflowError: 6, MemoryError: 7}
_AUTOMATION_ERROR = 440


def _failed(target: object, name: str, error: BaseException, exception: int) -> int:
    global _last_error
    what = f"{type(target).__name__}.{name}"
    description = f"{type(error).__name__}: {error}"
    code = abi.FAILURES | next((n for kind, n in _NUMBERS.items() if isinstance(error, kind)), _AUTOMATION_ERROR)
    source = what
    if isinstance(error, Error):
        code = code if error.code == abi.E_FAIL else error.code
        description, source = error.description, error.source or what
    elif not isinstance(error, Exception):
        _interrupt(error)
    else:
        with contextlib.suppress(Exception):
            trace = error.__traceback__
            while trace and trace.tb_frame.f_code.co_filename == __file__:
                trace = trace.tb_next
            _last_error = "".join(traceback.format_exception(type(error), error, trace))
            print(f"hedro34: {what} failed when the library called it:\n{_last_error}", file=sys.stderr, end="")
    if exception:
        ctypes.memset(exception, 0, ctypes.sizeof(abi.ExcepInfo))
        info = abi.ExcepInfo.from_address(exception)
        info.scode = code
        with contextlib.suppress(Exception):
            info.source, info.description = abi.new_text(source), abi.new_text(description)
    return abi.DISP_E_EXCEPTION


_functions = abi.new_functions(_query, _add_ref, _release, _type_info_count, _type_info, _ids_of_names, _invoke)
_table = abi.new_table(_functions)


def disarm() -> None:
    """At the end of Python: what the library still holds it may release without running any Python."""
    abi.disarm(_table)
