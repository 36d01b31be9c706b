"""The library's file: loading, registering, creating objects."""

from __future__ import annotations

import atexit
import ctypes
import json
import os
from collections.abc import Callable
from pathlib import Path
from types import SimpleNamespace
from typing import Any, cast
from uuid import UUID

from . import _abi as abi
from . import _classes, _object
from ._errors import Error, result_text, suggestion


class Library:
    """A loaded library file. There is one for each file; it stays loaded to the end of the process."""

    def __init__(self, path: Path) -> None:
        self.path = path
        try:
            file = ctypes.CDLL(str(path))
            self._functions = {name: getattr(file, name) for name in _EXPORTS}
        except (OSError, AttributeError) as error:
            raise Error(f"{path} cannot be loaded as a component library: {error}") from error
        for function in self._functions.values():
            function.restype = ctypes.c_uint32
        self._functions["DllGetClassObject"].argtypes = [ctypes.c_char_p, ctypes.c_char_p, ctypes.c_void_p]

    def create(self, name: str, class_id: str = "") -> Any:
        """A new object of a class, by its name, or by its identifier where the name is not one of the library's own."""
        known = _class_ids().get(name.lower()) or _class_ids().get(f"hedro34.{name.lower()}")
        if not class_id and known is None:
            raise Error(f'{self.path} has no class "{name}"' + suggestion(name, _classes.CLASSES))
        factory, pointer = ctypes.c_void_p(), ctypes.c_void_p()
        clsid = UUID(class_id or known).bytes_le
        found = self._functions["DllGetClassObject"](clsid, abi.IID_ICLASSFACTORY, ctypes.byref(factory))
        if found & 0x80000000 or not factory.value:
            raise Error(f'"{name}" cannot be created from {self.path}: {result_text(found)}', found)
        table = abi.Table.of_factory(factory.value)
        try:
            code = table.rest[0](factory, None, abi.IID_IDISPATCH, ctypes.byref(pointer))
        finally:
            table.release(factory)
        if code & 0x80000000 or not pointer.value:
            raise Error(f'"{name}" cannot be created: {result_text(code)}', code)
        return _object.class_named(name[name.rfind(".") + 1 :] if known is None else _own_name(name))(pointer.value)

    def can_unload(self) -> bool:
        """Whether no object of the library is alive."""
        _object.collect()
        return bool(self._functions["DllCanUnloadNow"]() == abi.S_OK)

    def register(self) -> None:
        """Enters the library's classes in the user's class registry."""
        self._registry("DllRegisterServer")

    def unregister(self) -> None:
        """Takes the library's classes out of the user's class registry."""
        self._registry("DllUnregisterServer")

    def _registry(self, export: str) -> None:
        code = self._functions[export]()
        if code & 0x80000000:
            raise Error(f"{export} of {self.path}: {result_text(code)}: {registry_path()}", code)


_EXPORTS = ("DllGetClassObject", "DllCanUnloadNow", "DllRegisterServer", "DllUnregisterServer")
_libraries: dict[Path, Library] = {}
_current: Library | None = None


def _class_ids() -> dict[str, str]:
    return {name.lower(): class_id for name, class_id in _classes.CLASSES.items()}


def _own_name(name: str) -> str:
    small = name.lower().removeprefix("hedro34.")
    return next(n for n in (own.partition(".")[2] for own in _classes.CLASSES) if n.lower() == small)


def _opened(path: str | os.PathLike[str]) -> Library:
    absolute = Path(path).absolute()
    key = absolute.resolve()
    if key not in _libraries:
        _libraries[key] = Library(absolute)
    return _libraries[key]


def load(path: str | os.PathLike[str]) -> Library:
    """Loads a library file; `create` takes its classes from there from now on, without asking the registry."""
    global _current
    _current = _opened(path)
    return _current


def registry_path() -> Path:
    """The user's class registry."""
    data = os.environ.get("XDG_DATA_HOME", "")
    base = Path(data) if os.path.isabs(data) else Path.home() / ".local" / "share"
    return base / "hedro34" / "classes.json"


def registered() -> dict[str, tuple[str, Path]]:
    """The registered classes: the identifier and the library's file under each name."""
    path = registry_path()
    try:
        content = json.loads(path.read_bytes())
        if content["format"] != "hedro34-classes" or content["version"] != 1:
            raise ValueError("it has another format or version")
        result = {}
        for row in content["classes"]:
            name, class_id, library = row["name"], row["class"], row["library"]
            if not all(isinstance(text, str) for text in (name, class_id, library)) or not os.path.isabs(library):
                raise ValueError(f"the entry {row!r} is not one of a class")
            UUID(class_id)
            result[name] = (class_id, Path(library))
        return result
    except FileNotFoundError:
        return {}
    except OSError as error:
        raise Error(f"the class registry {path} cannot be read: {error.strerror}", abi.REGDB_E_READREGDB) from error
    except (ValueError, KeyError, TypeError, AttributeError, RecursionError) as error:
        message = f"the class registry {path} is damaged ({error}): remove it and register the library again"
        raise Error(message, abi.REGDB_E_READREGDB) from error


def _create(name: str, library: Library | str | os.PathLike[str] | None = None) -> Any:
    """A new object of a class, by its name in any case, such as "HEDRO34.clsHEDROTest"; "HEDRO34." may be left out.

    It comes from `library` (a file or what `load` gave), else from the library that was loaded last, else from the one
    that is registered under the name.
    """
    if library is not None:
        return (library if isinstance(library, Library) else _opened(library)).create(name)
    if _current is not None:
        return _current.create(name)
    rows = {known.lower(): (known, row) for known, row in registered().items()}
    found = rows.get(name.lower()) or rows.get(f"hedro34.{name.lower()}")
    if found is None:
        near = suggestion(name, [known for known, _ in rows.values()])
        raise Error(
            f'"{name}" is not registered in {registry_path()}{near}: run '
            "`python3 -m hedro34 register /path/to/libHEDRO34.so` once, or call hedro34.load with the path"
        )
    known, (class_id, path) = found
    return _opened(path).create(known, class_id)


create = cast(_classes.Create, _create)


def can_unload() -> bool:
    """Whether no object of any loaded library is alive."""
    return all([library.can_unload() for library in _libraries.values()])


def last_refusal() -> str:
    """Why the last file on this thread was refused: "path: line 3, column 14: reason"."""
    with create("HEDRO34.Platform") as platform:
        return platform.LastRefusal


def register_class(name: str, make: Callable[[], object]) -> None:
    """Registers a class of the host in this process: `make()` gives a new object.

    What a merge creates for a template or document of the host comes from the names "TIBTemplate81.TIBRegion",
    "WENKtd81.WENKtdDocument", "WENKtd81.WENKtdQuestion", "WENKtd81.WENKtdObjective" and "WENKtd81.WENKtdOrder".
    """
    with create("HEDRO34.Platform") as platform:
        platform.RegisterClass(name, SimpleNamespace(CreateInstance=make))


def revoke_class(name: str) -> bool:
    """Takes a class of the host out again; whether there was one."""
    with create("HEDRO34.Platform") as platform:
        return platform.RevokeClass(name)


atexit.register(_object.end)
