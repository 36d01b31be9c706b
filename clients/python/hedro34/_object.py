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
from collections.abc import Callable, Iterable, Iterator
from enum import IntEnum, IntFlag
from types import TracebackType
from typing import Any, Self

from . import _abi as abi
from . import _classes, _host, _show
from . import _values as values
from ._errors import ArgumentTypeError, Call, Error, MemberError, Parameter, result_text, suggestion, takes_words
from ._frame import AT_NO_PARAMS, MOST_ARGUMENTS, Frame

_PUTS = abi.PUT | abi.PUTREF


# --- threads ---------------------------------------------------------------------------------------------------------


class _Owner:
    """A thread with objects, and those of them that other threads have dropped."""

    def __init__(self) -> None:
        self.thread = threading.current_thread()
        self.dropped: deque[int] = deque()
        self.frames: list[Frame] = []  # empty ones

    def drop(self, pointer: int) -> None:
        self.dropped.append(pointer)
        _dropping.add(self)

    def collect(self) -> None:
        while self.dropped:
            abi.release(self.dropped.popleft())
        _dropping.discard(self)


_dropping: set[_Owner] = set()
_ended = False


class _Local(threading.local):
    def __init__(self) -> None:
        self.owner = _Owner()


_local = _Local()


def collect() -> None:
    """Releases what other threads have dropped of this thread's objects, and of those of threads that have ended. Every call
    does so for its own thread."""
    _local.owner.collect()
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

    def __init__(self, pointer: int) -> None:
        """Takes over one count of the pointer."""
        fields = self.__dict__
        fields["_table"] = table = abi.Table.of(pointer)
        fields["_numbers"] = table.numbers[type(self)] if table.numbers is not None and self._members_ else None
        fields["_this"] = abi.at(pointer)  # ready to be passed
        fields["_calls"] = 0
        fields["_owner"], fields["_pointer"] = _local.owner, pointer

    def _call(
        self, name: str, flags: int, arguments: tuple[Any, ...], named: dict[str, Any], member: _Member | None = None
    ) -> Any:
        fields, owner = self.__dict__, _local.owner
        if owner is not fields["_owner"] or owner.dropped or "_pointer" not in fields:
            self._check_use()
        fields["_calls"] += 1
        frame: Frame | None = None
        try:
            if member is None:
                member = self._member(name)
            count = len(arguments) + len(named)
            frame = owner.frames.pop() if owner.frames and count <= MOST_ARGUMENTS else Frame(count)
            numbers: abi.Numbers | None = fields["_numbers"]
            writes = flags & _PUTS
            ids = numbers and numbers.get((name, *named) if named else name) or self._dispids(name, named)
            if count:
                try:
                    frame.place((*named.values(), *arguments[::-1]) if named else arguments[::-1], ids[1:], writes)
                except (TypeError, OverflowError) as error:
                    code = abi.DISP_E_OVERFLOW if isinstance(error, OverflowError) else abi.DISP_E_BADVARTYPE
                    raise self._failure(code, frame, member, name, flags, arguments, named) from error
            code = fields["_table"].invoke(
                fields["_this"], ids[0], abi.AT_IID_NULL, 0, flags, frame.at_params if count else AT_NO_PARAMS,
                None if writes else frame.at_result, frame.at_exception, frame.at_bad,
            )  # fmt: skip
            if frame.references:
                frame.read_references()
            if code & 0x80000000:
                if frame.exception.fill_in:
                    ctypes.CFUNCTYPE(ctypes.c_uint32, ctypes.c_void_p)(frame.exception.fill_in)(frame.at_exception)
                raise self._failure(code, frame, member, name, flags, arguments, named)
            value = values.take(frame.result, member.result if member else "")
            if numbers is None:
                frame.clear()  # an object of another make fills in what it likes
            else:
                if frame.owners:
                    frame.clear_arguments()
                owner.frames.append(frame)
        except BaseException:
            if frame is not None:
                frame.clear()
            raise
        finally:
            fields["_calls"] -= 1
            if "_late" in fields and not fields["_calls"]:
                abi.release(fields.pop("_late"))
            if _host.interrupted:
                _host.raise_interrupt()
        return _enumerated(value, member.kind) if type(value) is int and member and member.kind else value

    def _check_use(self) -> None:
        """Before a call: whether the object may be used here. Releases what other threads have dropped."""
        fields, owner = self.__dict__, _local.owner
        if "_pointer" not in fields:
            raise Error(f"{type(self).__name__}: the object has been released")
        if fields["_owner"] is not owner:
            here, there = owner.thread.name, fields["_owner"].thread.name
            raise Error(f'{type(self).__name__}: the object belongs to thread "{there}" and was used on "{here}"')
        if owner.dropped:
            owner.collect()

    def _checked_pointer(self) -> int:
        self._check_use()
        return int(self.__dict__["_pointer"])

    def _member(self, name: str) -> _Member | None:
        return self._members_.get(name.lower()) or (None if name else self._members_.get("item"))

    def _failure(self, code: int, frame: Frame, member: _Member | None, name: str, *tried: Any) -> Error:
        call = Call(f"{type(self).__name__}.{name}" if name else type(self).__name__, *tried)
        if member:
            call.parameters, call.type = member.parameters, member.type
            call.is_method, call.is_written = member.is_method, member.is_written
        return call.error(code, frame.bad.value, frame.exception)

    def _dispids(self, name: str, named: Iterable[str] = ()) -> tuple[int, ...]:
        """The numbers of a member and of arguments of it."""
        if not name:
            return (abi.DISPID_VALUE,)
        fields, wanted = self.__dict__, (name, *named)
        buffers = [ctypes.create_string_buffer(text.encode("utf-16-le", "surrogatepass") + b"\0\0") for text in wanted]
        names = (ctypes.c_void_p * len(wanted))(*map(ctypes.addressof, buffers))
        ids = (ctypes.c_int32 * len(wanted))(*[abi.DISPID_UNKNOWN] * len(wanted))
        code = fields["_table"].ids(fields["_pointer"], abi.IID_NULL, names, len(wanted), 0, ids)
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
        if fields["_numbers"] is not None:
            fields["_numbers"][wanted if named else name] = result
        return result

    # Names that the class does not have as they are written: another case, or a class that is not described.

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(name)
        member = self._members_.get(name.lower())
        if member:  # of the very name: reading it failed with an error that Python takes for its absence
            return getattr(self, member.name) if member.name != name else self._call(name, abi.GET, (), {})
        self._check_use()
        self._dispids(name)
        try:
            return self._call(name, abi.GET, (), {})
        except Error as error:
            if error.code not in (abi.DISP_E_MEMBERNOTFOUND, abi.DISP_E_BADPARAMCOUNT, abi.DISP_E_PARAMNOTOPTIONAL):
                raise
        return functools.partial(_method, self, name)

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
        if owner is not _local.owner and owner.thread.is_alive():
            owner.drop(pointer)
        elif fields["_calls"]:
            fields["_late"] = pointer  # at the end of the call that is under way
        else:
            try:
                fields["_table"].release(pointer)
            except RecursionError:
                owner.drop(pointer)  # with the next call, when there is room again

    __del__ = release

    def __enter__(self) -> Self:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.release()

    def _identity(self) -> int:
        fields = self.__dict__
        if "_same" not in fields:
            fields["_same"] = abi.identity(self._checked_pointer())
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
        if owner is not _local.owner:
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
        kind = getattr(_classes, first[0], None) if first else None
        self.result = kind.__name__ if isinstance(kind, type) else ""
        self.kind = kind if isinstance(kind, type) and issubclass(kind, (IntEnum, IntFlag)) else None


class _Words(str):
    """An annotation that is shown without quotes."""

    def __repr__(self) -> str:
        return str(self)


def _in_words(signature: inspect.Signature) -> inspect.Signature:
    own, *others = signature.parameters.values()
    parameters = [own, *(p.replace(annotation=_Words(p.annotation)) for p in others)]
    return signature.replace(parameters=parameters, return_annotation=_Words(signature.return_annotation))


def _enumerated(value: int, kind: type[IntEnum | IntFlag]) -> int:
    try:
        named = kind(value)
    except ValueError:  # a field of such a type takes any number
        return value
    return named if named == value else value  # flags would make another number of one below 0


def _attribute(member: _Member) -> Any:
    name, call = member.name, Object._call
    if member.is_method:

        def method(self: Object, *arguments: Any, **named: Any) -> Any:
            return call(self, name, abi.METHOD | abi.GET, arguments, named, member)

        method.__name__, method.__qualname__, method.__module__ = name, f"{member.owner}.{name}", "hedro34"
        method.__doc__ = member.doc
        method.__signature__ = _in_words(member.signature)  # type: ignore[attr-defined]
        return method

    def read(self: Object) -> Any:
        return call(self, name, abi.GET, (), {}, member)

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
    """The Python object for a counted pointer; one that is Python's own is that object itself."""
    exposed = _host.by_address.get(pointer)
    if exposed is not None:
        target = exposed.target
        abi.release(pointer)
        return target
    try:
        return class_named(hint)(pointer)
    except BaseException:
        abi.release(pointer)
        raise


def pointer_of(value: object) -> int:
    """A counted pointer."""
    if not isinstance(value, Object):
        return _host.expose(value)
    pointer = value._checked_pointer()
    abi.add_ref(pointer)
    return pointer


values.expose, values.adopt = pointer_of, adopt
