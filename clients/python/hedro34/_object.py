"""Objects of the library as Python objects.

Every class of the library is a Python class here, made from its description in `_classes.py` when it is first met:
properties are attributes, methods are methods, in any case of their letters. An object of a class that is not described
works the same way, by asking the object itself.
"""

from __future__ import annotations

import ctypes
import functools
import inspect
import os
import re
import threading
from collections import deque
from collections.abc import Callable, Iterator
from enum import IntEnum, IntFlag
from types import TracebackType
from typing import Any, Self

from . import _abi as abi
from . import _classes, _host, _show
from . import _values as values
from ._errors import ArgumentTypeError, Call, Error, MemberError, Parameter, result_text, suggestion, takes_words

_PUTS = abi.PUT | abi.PUTREF


# --- threads ---------------------------------------------------------------------------------------------------------


class _Owner:
    """A thread with objects, and those of them that other threads have dropped."""

    def __init__(self) -> None:
        self.thread = threading.current_thread()
        self.dropped: deque[int] = deque()

    def drop(self, pointer: int) -> None:
        self.dropped.append(pointer)
        _dropping.add(self)

    def collect(self) -> None:
        while self.dropped:
            abi.release(self.dropped.popleft())
        _dropping.discard(self)


_dropping: set[_Owner] = set()
_local = threading.local()
_ended = False


def _owner() -> _Owner:
    try:
        owner: _Owner = _local.owner
    except AttributeError:
        owner = _local.owner = _Owner()
    return owner


def collect() -> None:
    """Releases what other threads have dropped of this thread's objects, and of those of threads that have ended. Every call
    does so for its own thread."""
    _owner().collect()
    for owner in list(_dropping):
        if not owner.thread.is_alive():
            owner.collect()


def end() -> None:
    """At the end of Python: from now on nothing is released any more, and nothing of Python is called."""
    global _ended
    _ended = True
    _host.disarm()


# --- objects ---------------------------------------------------------------------------------------------------------


class Object:
    """An object of the library.

    It belongs to the thread that got it. It is released when nothing in Python refers to it any more, at `release()`,
    or at the end of a `with` block. Two of these are equal when they stand for the same object.
    """

    _members_: dict[str, _Member] = {}
    _ids_: dict[tuple[str, ...], tuple[int, ...]] | None = None  # shared by all objects of a class that is described

    def __init__(self, pointer: int) -> None:
        """Takes over one count of the pointer."""
        fields = self.__dict__
        fields["_pointer"], fields["_owner"] = pointer, _owner()
        fields["_calls"] = 0

    def _call(self, name: str, flags: int, arguments: tuple[Any, ...], named: dict[str, Any]) -> Any:
        pointer = self._enter()
        try:
            return self._called(pointer, name, flags, arguments, named)
        finally:
            fields = self.__dict__
            fields["_calls"] -= 1
            if "_late" in fields and not fields["_calls"]:
                abi.release(fields.pop("_late"))
            _host.raise_interrupt()

    def _enter(self) -> int:
        fields, owner = self.__dict__, _owner()
        pointer: int | None = fields.get("_pointer")
        if pointer is None:
            raise Error(f"{type(self).__name__}: the object has been released")
        if fields["_owner"] is not owner:
            here, there = owner.thread.name, fields["_owner"].thread.name
            raise Error(f'{type(self).__name__}: the object belongs to thread "{there}" and was used on "{here}"')
        if owner.dropped:
            owner.collect()
        fields["_calls"] += 1
        return pointer

    def _called(self, pointer: int, name: str, flags: int, arguments: tuple[Any, ...], named: dict[str, Any]) -> Any:
        member = self._members_.get(name.lower()) or (None if name else self._members_.get("item"))
        ids = self._dispids(pointer, name, named) if name else (abi.DISPID_VALUE,)
        count = len(arguments) + len(named)
        writes = bool(flags & _PUTS)
        params, result, exception = abi.DispParams(), abi.Variant(), abi.ExcepInfo()
        bad, placed = ctypes.c_uint32(0xFFFF), (abi.Variant * count)()
        references: list[tuple[values.ByRef[Any], abi.Variant]] = []
        what = f"{type(self).__name__}.{name}" if name else type(self).__name__
        call = Call(what, flags, arguments, named)
        if member:
            call.parameters, call.type = member.parameters, member.type
            call.is_method, call.is_written = member.is_method, member.is_written
        try:
            for i, value in enumerate([*named.values(), *reversed(arguments)]):
                try:
                    _place(placed[i], value, references)
                except (TypeError, OverflowError) as error:
                    code = abi.DISP_E_OVERFLOW if isinstance(error, OverflowError) else abi.DISP_E_BADVARTYPE
                    raise call.error(code, i, exception) from error
            if count:
                params.arguments, params.count = placed, count
                names = (abi.DISPID_PUT,) if writes else ids[1:]
                if names:
                    params.named_ids, params.named_count = (ctypes.c_int32 * len(names))(*names), len(names)
            code = abi.Table.of(pointer).invoke(
                pointer, ids[0], abi.IID_NULL, 0, flags, ctypes.byref(params),
                None if writes else ctypes.byref(result), ctypes.byref(exception), ctypes.byref(bad),
            )  # fmt: skip
            for reference, variant in references:
                reference.value = values.get(variant)
            if code & 0x80000000:
                if exception.fill_in:
                    ctypes.CFUNCTYPE(ctypes.c_uint32, ctypes.c_void_p)(exception.fill_in)(ctypes.byref(exception))
                raise call.error(code, bad.value, exception)
            hint = member.result if member else ""
            value = values.get(result, hint)
            return _enumerated(value, hint) if hint and type(value) is int else value
        finally:
            values.clear(result)
            for variant in (*placed, *(variant for _, variant in references)):
                values.clear(variant)
            for text in (exception.source, exception.description, exception.help_file):
                abi.free_text(text)

    def _dispids(self, pointer: int, name: str, named: dict[str, Any]) -> tuple[int, ...]:
        wanted = (name, *named)
        known = self._ids_
        if known is not None and wanted in known:
            return known[wanted]
        buffers = [ctypes.create_string_buffer(text.encode("utf-16-le", "surrogatepass") + b"\0\0") for text in wanted]
        names = (ctypes.c_void_p * len(wanted))(*map(ctypes.addressof, buffers))
        ids = (ctypes.c_int32 * len(wanted))(*[abi.DISPID_UNKNOWN] * len(wanted))
        code = abi.Table.of(pointer).ids(pointer, abi.IID_NULL, names, len(wanted), 0, ids)
        if ids[0] == abi.DISPID_UNKNOWN:
            own = type(self).__name__
            near = suggestion(name, (m.name for m in self._members_.values()))
            if code != abi.DISP_E_UNKNOWNNAME:
                raise Error(f"{own}.{name}: {result_text(code)}", code)
            raise MemberError(f'{own} has no member "{name}"{near}', code)
        for argument, id_ in zip(named, ids[1:]):
            if id_ == abi.DISPID_UNKNOWN:
                member = self._members_.get(name.lower())
                near = suggestion(argument, (p.name for p in member.parameters)) if member else ""
                takes = takes_words(member.parameters if member else None)
                raise ArgumentTypeError(f'{type(self).__name__}.{name} has no argument "{argument}"{near}{takes}', code)
        result = tuple(ids)
        if known is not None:
            known[wanted] = result
        return result

    # Names that the class does not have as they are written: another case, or a class that is not described.

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(name)
        member = self._members_.get(name.lower())
        if member:  # of the very name: reading it failed with an error that Python takes for its absence
            return getattr(self, member.name) if member.name != name else self._call(name, abi.GET, (), {})
        self._dispids(self._enter_once(), name, {})
        try:
            return self._call(name, abi.GET, (), {})
        except Error as error:
            if error.code not in (abi.DISP_E_MEMBERNOTFOUND, abi.DISP_E_BADPARAMCOUNT, abi.DISP_E_PARAMNOTOPTIONAL):
                raise
        return functools.partial(_method, self, name)

    def _enter_once(self) -> int:
        pointer = self._enter()
        self.__dict__["_calls"] -= 1
        return pointer

    def __setattr__(self, name: str, value: object) -> None:
        member = self._members_.get(name.lower())
        own = member.name if member else name
        is_object = value is None or isinstance(value, Object) or _is_host_object(value)
        self._call(own, abi.PUTREF if is_object else abi.PUT, (value,), {})

    def __dir__(self) -> list[str]:
        return sorted({*(m.name for m in self._members_.values() if m.name), *object.__dir__(self)})

    # The end of an object.

    def release(self) -> None:
        """Lets go of the object now. Once more does nothing; everything else is an error from then on."""
        fields = self.__dict__
        pointer: int | None = fields.pop("_pointer", None)
        if pointer is None or _ended:
            return
        owner: _Owner = fields["_owner"]
        fields.pop("_same", None)
        if owner is not _owner() and owner.thread.is_alive():
            owner.drop(pointer)
        elif fields["_calls"]:
            fields["_late"] = pointer  # at the end of the call that is under way
        else:
            try:
                abi.release(pointer)
            except RecursionError:
                owner.drop(pointer)  # with the next call, when there is room again

    def __del__(self) -> None:
        self.release()

    def __enter__(self) -> Self:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.release()

    def _identity(self) -> int:
        fields = self.__dict__
        if "_same" not in fields:
            fields["_same"] = abi.identity(self._enter_once())
        return int(fields["_same"])

    def __eq__(self, other: object) -> bool:
        return self is other or (isinstance(other, Object) and self._identity() == other._identity())

    def __hash__(self) -> int:
        return hash(self._identity())

    def __repr__(self) -> str:
        fields, name = self.__dict__, type(self).__name__
        pointer = fields.get("_pointer")
        if pointer is None:
            return f"<{name} released>"
        owner: _Owner = fields["_owner"]
        if owner is not _owner():
            return f'<{name} of thread "{owner.thread.name}">'
        said = _show.line(self)
        return f"<{name} {said}>" if said else f"<{name} at 0x{pointer:x}>"

    def __reduce__(self) -> Any:
        raise TypeError(f"a {type(self).__name__} cannot be copied or pickled")


class Collection(Object):
    """A collection of the library. Positions count from 1, in `[]` and in the library's own `Item` alike.

    `collection[n]` raises IndexError where nothing stands, `collection["key"]` KeyError; `collection(n)` and
    `collection.Item(n)` give what the library gives then: None, "" or 0.
    """

    def __call__(self, *arguments: Any, **named: Any) -> Any:
        """The default member."""
        return self._call("Item" if named else "", abi.METHOD | abi.GET, arguments, named)

    def __len__(self) -> int:
        return int(self.Count)

    def __iter__(self) -> Iterator[Any]:
        position = 1
        while position <= len(self):
            yield self(position)
            position += 1

    def __reversed__(self) -> Iterator[Any]:
        for position in range(len(self), 0, -1):
            yield self(position)

    def __getitem__(self, index: Any) -> Any:
        self._there(index)
        if isinstance(index, str) and not self._item_takes_keys:  # numbers whose keys are their texts
            return next(element for element in self if str(element) == index)
        return self(index)

    @property
    def _item_takes_keys(self) -> bool:
        item = self._members_.get("item")
        return item is None or item.parameters[0].type == "Any"

    def __setitem__(self, index: Any, value: Any) -> None:
        self._there(index)
        self._call("", abi.PUT, (index, value), {})

    def _there(self, index: Any) -> None:
        name = type(self).__name__
        if isinstance(index, str):
            if not self.Exists(index):
                raise KeyError(f'{name} has no element under the key "{index}"')
        elif isinstance(index, int) and not isinstance(index, bool):
            if not 1 <= index <= len(self):
                raise IndexError(f"{name}: position {index} is not in 1 to {len(self)}")
        else:
            raise TypeError(f"{name}: an index is a position from 1 or a key, not {values.article(index)}")


class AnyObject(Collection):
    """An object of a class that is not described."""

    def __bool__(self) -> bool:
        return True


class _WithDefault(Object):
    def __call__(self, *arguments: Any, **named: Any) -> Any:
        """The default member; with arguments, that of the object that it gives."""
        if arguments or named:
            value = self._call("", abi.GET, (), {})
            if isinstance(value, Collection):  # a Python object of its own class, which one call would not tell
                return value(*arguments, **named)
        return self._call("", abi.METHOD | abi.GET, arguments, named)


def _place(target: abi.Variant, value: Any, references: list[tuple[values.ByRef[Any], abi.Variant]]) -> None:
    if not isinstance(value, values.ByRef):
        values.put(target, value)
        return
    held = abi.Variant()
    values.put(held, value.value)
    references.append((value, held))
    if held.vt in (abi.VT_BOOL, abi.VT_I4, abi.VT_R8, abi.VT_BSTR) or held.vt & abi.VT_ARRAY:
        target.vt, target.pointer = abi.VT_BYREF | held.vt, ctypes.addressof(held) + abi.Variant.value.offset
    else:
        target.vt, target.pointer = abi.VT_BYREF | abi.VT_VARIANT, ctypes.addressof(held)


def _is_host_object(value: object) -> bool:
    plain = (bool, int, float, str, list, tuple, os.PathLike, values.ByRef, type(values.MISSING))
    return not isinstance(value, plain)


def _method(self: Object, name: str, *arguments: Any, **named: Any) -> Any:
    return self._call(name, abi.METHOD | abi.GET, arguments, named)


# --- the classes of `_classes.py` ------------------------------------------------------------------------------------


class _Member:
    def __init__(self, owner: str, name: str, described: Any) -> None:
        self.owner, self.name = owner, name
        self.is_method = inspect.isfunction(described)
        self.is_written = isinstance(described, property) and described.fset is not None
        function = described if self.is_method else described.fget
        self.doc = inspect.getdoc(function) or ""
        self.signature = inspect.signature(function)
        self.type = str(self.signature.return_annotation)
        self.parameters: list[Parameter] = []
        for parameter in list(self.signature.parameters.values())[1:]:
            optional = parameter.default is not inspect.Parameter.empty
            self.parameters.append(Parameter(parameter.name, str(parameter.annotation), optional))
        first = re.match(r"\w+", self.type)
        self.result = first[0] if first and isinstance(getattr(_classes, first[0], None), type) else ""


class _Words(str):
    """An annotation that is shown without quotes."""

    def __repr__(self) -> str:
        return str(self)


def _in_words(signature: inspect.Signature) -> inspect.Signature:
    own, *others = signature.parameters.values()
    parameters = [own, *(p.replace(annotation=_Words(p.annotation)) for p in others)]
    return signature.replace(parameters=parameters, return_annotation=_Words(signature.return_annotation))


def _enumerated(value: int, hint: str) -> Any:
    kind = getattr(_classes, hint)
    try:
        named = kind(value) if issubclass(kind, (IntEnum, IntFlag)) else value
    except ValueError:  # a field of such a type takes any number
        return value
    return named if named == value else value  # flags would make another number of one below 0


def _attribute(member: _Member) -> Any:
    name = member.name
    if member.is_method:

        def method(self: Object, *arguments: Any, **named: Any) -> Any:
            return self._call(name, abi.METHOD | abi.GET, arguments, named)

        method.__name__, method.__qualname__, method.__module__ = name, f"{member.owner}.{name}", "hedro34"
        method.__doc__ = member.doc
        method.__signature__ = _in_words(member.signature)  # type: ignore[attr-defined]
        return method

    def read(self: Object) -> Any:
        return self._call(name, abi.GET, (), {})

    def write(self: Object, value: object) -> None:
        setattr(self, name, value)

    return property(read, write if member.is_written else None, doc=member.doc)


@functools.cache
def class_named(name: str) -> type[Object]:
    """The Python class of a class of the library; `AnyObject` for one that is not described."""
    described = getattr(_classes, name, None)
    if not isinstance(described, type) or not getattr(described, "_is_protocol", False):
        return AnyObject
    members = [_Member(name, key, row) for key, row in vars(described).items() if not key.startswith("_")]
    space: dict[str, Any] = {member.name: _attribute(member) for member in members}
    space["_members_"] = {member.name.lower(): member for member in members}
    space["_ids_"] = {}
    space["__doc__"], space["__module__"] = described.__doc__, "hedro34"
    space["__signature__"] = inspect.Signature()  # nobody calls the class: `create` makes objects
    if name in _show.PAGES:
        space["_repr_html_"] = _show.page
    base: type[Object] = Collection if "count" in space["_members_"] else Object
    if "__call__" in vars(described):
        space["_members_"][""] = _Member(name, "", vars(described)["__call__"])
        base = _WithDefault
    made: Callable[..., type[Object]] = type
    return made(name, (base,), space)


def adopt(pointer: int, hint: str) -> Any:
    """The Python object for a pointer that somebody else counts; one that is Python's own is that object itself."""
    exposed = _host.target_of(pointer)
    if exposed is not None:
        return exposed.target
    kind = class_named(hint)
    abi.add_ref(pointer)
    try:
        return kind(pointer)
    except BaseException:
        abi.release(pointer)
        raise


def pointer_of(value: object) -> int:
    """A counted pointer."""
    if not isinstance(value, Object):
        return _host.expose(value)
    pointer = value._enter_once()
    abi.add_ref(pointer)
    return pointer


values.expose, values.adopt = pointer_of, adopt
