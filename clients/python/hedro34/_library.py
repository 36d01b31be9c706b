"""The library's file: loading, registering, creating objects."""

from __future__ import annotations

import atexit
import contextlib
import ctypes
import functools
import json
import os
import pwd
import re
from collections.abc import Callable
from pathlib import Path
from types import SimpleNamespace
from typing import Any, cast
from uuid import UUID

from . import _abi as abi
from . import _classes, _object
from ._errors import ArgumentTypeError, ArgumentValueError, Error, result_text, suggestion
from ._values import article


class Library:
    """A loaded library file. There is one for each file; it stays loaded to the end of the process."""

    is_own = True  # rather than of another make

    def __init__(self, path: Path, *, any_version: bool = False) -> None:
        """Opens the file; one of any version is good for `register` and `unregister` alone."""
        self.path = path
        try:
            file = ctypes.CDLL(str(path))
            self._functions = {name: getattr(file, name) for name in _EXPORTS}
        except (OSError, AttributeError) as error:
            raise Error(f"{path} cannot be loaded as a component library: {_in_words(error)}") from error
        for function in self._functions.values():
            function.restype = ctypes.c_uint32
        self._functions["DllGetClassObject"].argtypes = [ctypes.c_char_p, ctypes.c_char_p, ctypes.c_void_p]
        if any_version:
            return
        with self._platform() as platform:
            self._check_version(getattr(platform, "Version", ""))
            platform.HostFaults = False  # a failure must not unwind the frames of Python

    def create(self, name: str, class_id: str = "") -> Any:
        """A new object of a class, by its name, or by its identifier where the name is not one of the library's own."""
        known = _class_id(name)
        if not class_id and known is None:
            near = suggestion(name, _classes.CLASSES)
            names = ", ".join(own.partition(".")[2] for own in _classes.CLASSES)
            raise ArgumentValueError(f'{self.path} makes no class "{name}"{near}; it makes {names}')
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
        abi.Table.of(pointer.value).keep_numbers()
        return _object.class_named(name[name.rfind(".") + 1 :] if known is None else _own_name(name))(pointer.value)

    def _platform(self) -> Any:
        """The library's services; in a library of another make, which has none, something to write on."""
        try:
            return self.create("HEDRO34.Platform")
        except Error as error:
            if error.code != abi.CLASS_E_CLASSNOTAVAILABLE:
                raise
            self.is_own = False
            return contextlib.nullcontext(SimpleNamespace(LastFileError="", Version=_classes.VERSION))

    def _check_version(self, version: str) -> None:
        """The client was written from the tables of its own version; the first libraries told none."""
        own, other = _interface(_classes.VERSION), _interface(version)
        if other != own:
            what = f"HEDRO34 {version}" if version else "an older HEDRO34, which tells no version"
            client = f"of version {other}" if other else "that came with it"
            raise Error(
                f"{self.path} is {what}, and this client is for {own}: give or register (`python3 -m hedro34 register PATH`) "
                f"a library of version {own}, or install the client {client}"
            )

    def can_unload(self) -> bool:
        """Whether no object of the library is alive."""
        _object.collect()
        return bool(self._functions["DllCanUnloadNow"]() == abi.S_OK)

    def register(self) -> None:
        """Enters the library's classes in the user's class registry."""
        self._registry("DllRegisterServer")

    def unregister(self) -> None:
        """Takes the library's classes out of the user's class registry, whatever file is entered for them."""
        self._registry("DllUnregisterServer")

    def _registry(self, export: str) -> None:
        code = self._functions[export]()
        if code & 0x80000000:
            with self._platform() as platform:
                file_error = getattr(platform, "LastFileError", "")
            advice = _REGISTRY_ADVICE.get(code, "") if file_error else ""
            raise Error(f"{export} of {self.path}: {result_text(code)}" + (f": {file_error}" if file_error else "") + advice, code)


def _interface(version: str) -> str:
    """What a version may stand for: its first two numbers."""
    numbers = re.match(r"\d+\.\d+", version)
    return numbers[0] if numbers else ""


def _in_words(error: Exception) -> str:
    """Why a file is not loaded. The system names the first symbol version that it lacks; the file tells the newest."""
    said = str(error)
    lacking = re.search(r"version `GLIBC_2\.(\d+)[\d.]*' not found \(required by (.+)\)$", said)
    if not lacking:
        return said
    asked = [lacking[1].encode()]
    with contextlib.suppress(OSError):  # the name may be one that only the system's loader finds
        asked += re.findall(rb"\bGLIBC_2\.(\d+)", Path(lacking[2]).read_bytes())
    newest = max(map(int, asked))
    here = (os.confstr("CS_GNU_LIBC_VERSION") or "another").removeprefix("glibc ")
    return f"it needs glibc 2.{newest} or later, and this system has {here}; build the library here from its source"


_REGISTRY_ADVICE = {
    abi.REGDB_E_READREGDB: "; repair it, or remove it and register the library again",
    abi.REGDB_E_WRITEREGDB: "; the variable XDG_DATA_HOME can name another folder",
}
_EXPORTS = ("DllGetClassObject", "DllCanUnloadNow", "DllRegisterServer", "DllUnregisterServer")
_libraries: dict[Path, Library] = {}
_current: Library | None = None
_usual: Library | None = None  # from which `create` took a class of our own last, without being told
_host_classes: dict[str, tuple[str, object]] = {}


_class_ids = {name.lower(): class_id for name, class_id in _classes.CLASSES.items()}


def _class_id(name: str) -> str | None:
    """The identifier of one of the library's own classes."""
    return _class_ids.get(name.lower()) or _class_ids.get(f"hedro34.{name.lower()}")


def _own_name(name: str) -> str:
    small = name.lower().removeprefix("hedro34.")
    return next(n for n in (own.partition(".")[2] for own in _classes.CLASSES) if n.lower() == small)


def _opened(path: str | os.PathLike[str]) -> Library:
    absolute = Path(path).absolute()
    key = absolute.resolve()
    if key not in _libraries:
        library = Library(absolute)
        if library.is_own:
            for name, factory in _host_classes.values():
                _register_class(library, name, factory)
        _libraries[key] = library
    return _libraries[key]


def load(path: str | os.PathLike[str]) -> Library:
    """Loads a library file; `create` takes its classes from there from now on, without asking the registry."""
    global _current
    _current = _opened(path)
    return _current


def loaded() -> Library:
    """The library that was loaded last by `load`, else the one from which `create` took our own classes last without being
    told, else the first one of our own make that was opened, else the one from which `create` takes our own classes."""
    own = (library for library in _libraries.values() if library.is_own)
    return _current or _usual or next(own, None) or _source("HEDRO34.Platform")[0]


@functools.cache
def packaged() -> Path | None:
    """The library's file in this package, where that was built with one."""
    file = Path(__file__).with_name(f"libhedro34-component.so.{_interface(_classes.VERSION)}")
    return file if file.is_file() else None


def registry_path() -> Path:
    """The user's class registry."""
    data, home = os.environ.get("XDG_DATA_HOME", ""), os.environ.get("HOME", "")
    if not os.path.isabs(data):
        if not os.path.isabs(home):
            with contextlib.suppress(KeyError):
                home = pwd.getpwuid(os.geteuid()).pw_dir
        if not os.path.isabs(home):
            raise Error("there is no home folder for the class registry: set XDG_DATA_HOME", abi.REGDB_E_READREGDB)
        data = os.path.join(home, ".local", "share")
    return Path(data, "hedro34", "classes.json")


def registered() -> dict[str, tuple[str, Path]]:
    """The registered classes: the identifier and the library's file under each name."""
    path = registry_path()
    try:
        return _entries(path.read_bytes())
    except FileNotFoundError:
        return {}
    except OSError as error:
        raise Error(f"the class registry {path} cannot be read: {error.strerror}", abi.REGDB_E_READREGDB) from error
    except (ValueError, RecursionError) as error:
        message = f"the class registry {path} is damaged ({error}): remove it and register the library again"
        raise Error(message, abi.REGDB_E_READREGDB) from error


def _entries(data: bytes) -> dict[str, tuple[str, Path]]:
    """What a registry says; a ValueError for every one that the library rejects."""
    content = json.loads(data.decode("utf-8-sig"), object_pairs_hook=_once)
    if not isinstance(content, dict) or content.get("format") != "hedro34-classes" or content.get("version") != 1:
        raise ValueError("it has another format or version")
    rows = content.get("classes", [])
    if type(content["version"]) is not int or content.keys() - _HEAD or not isinstance(rows, list):
        raise ValueError("it has an unknown member or a value of another type")
    names, ids = set(), set()
    result = {}
    for row in rows:
        if not isinstance(row, dict) or row.keys() - _ENTRY or not all(isinstance(row.get(n), str) for n in _ENTRY):
            raise ValueError(f"the entry {row!r:.200} is not one of a class")
        name, class_id, library = row["name"], row["class"], row["library"]
        (name + library).encode()  # half of a surrogate pair is a ValueError
        if not (name and _IDENTIFIER.fullmatch(class_id) and os.path.isabs(library) and "\0" not in library):
            raise ValueError(f"the entry {row!r:.200} is not one of a class")
        if _folded(name) in names or class_id.upper() in ids:
            raise ValueError(f"the name {name} or its identifier stands there twice")
        names.add(_folded(name))
        ids.add(class_id.upper())
        result[name] = (class_id.upper(), Path(library))
    return result


_HEAD, _ENTRY = {"format", "version", "classes"}, {"name", "class", "library"}
_IDENTIFIER = re.compile(r"\{[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}\}")


def _once(members: list[tuple[str, Any]]) -> dict[str, Any]:
    result = dict(members)
    if len(result) != len(members):
        raise ValueError("a member stands twice")
    return result


def _folded(name: str) -> str:
    """The name without regard to case, as the library compares names: unit by unit."""
    return "".join(c.upper() if c < "\U00010000" and len(c.upper()) == 1 else c for c in name)


def _create(name: str, library: Library | str | os.PathLike[str] | None = None) -> Any:
    """A new object of a class, by its name in any case, such as "HEDRO34.clsHEDROTest"; "HEDRO34." may be left out.

    It comes from `library` (a file or what `load` gave), else from the library that was loaded last by `load`. Without
    either, the classes of HEDRO34 come from the library in this package, where it has one; all else comes from the library
    that is registered under the name.
    """
    if not isinstance(name, str):
        raise ArgumentTypeError(f"create: a class is named by a str, not {article(name)}")
    if library is not None:
        return (library if isinstance(library, Library) else _opened(library)).create(name)
    source, known, class_id = _source(name)
    return source.create(known, class_id)


_create.__name__ = _create.__qualname__ = "create"
create = cast(_classes.Create, _create)


def _source(name: str) -> tuple[Library, str, str]:
    """Where a class comes from when no library is named: that, and the class's name and identifier there."""
    global _usual
    if _current is not None:
        return _current, name, ""
    own = packaged()
    if own and _class_id(name):
        _usual = _opened(own)
        return _usual, name, ""
    rows = {_folded(known): (known, row) for known, row in registered().items()}
    found = rows.get(_folded(name)) or rows.get(_folded(f"hedro34.{name}"))
    if found is None:
        names = [known for known, _ in rows.values()]
        near = suggestion(name, [*names, *_classes.CLASSES])
        if _class_id(name) is None and (own or any(_class_id(known) for known in names)):
            raise ArgumentValueError(f'there is no class "{name}"{near}; none of that name is registered in {registry_path()}')
        raise ArgumentValueError(
            f'"{name}" is not registered in {registry_path()}{near}: run '
            "`python3 -m hedro34 register /path/to/libhedro34-component.so` once, or call hedro34.load with the path"
        )
    known, (class_id, path) = found
    if not path.exists():
        raise Error(
            f"{path} is gone, and {registry_path()} has it as the library of {known}: run "
            "`python3 -m hedro34 register PATH` with another one"
        )
    library = _opened(path)
    if _class_id(known) and library.is_own:
        _usual = library
    return library, known, class_id


def can_unload() -> bool:
    """Whether no object of any loaded library is alive."""
    return all([library.can_unload() for library in _libraries.values()])


def last_file_error() -> str:
    """What was wrong with the last file on this thread: "path: line 3, column 14: reason".

    Of several libraries that one tells it from which `create` takes the classes of HEDRO34 when none is named, or the first
    that was opened where only named ones were; any other by `create("HEDRO34.Platform", library).LastFileError`.
    """
    with create("HEDRO34.Platform", loaded()) as platform:
        return platform.LastFileError


def register_class(name: str, make: Callable[[], object]) -> None:
    """Registers a class of the host in this process, with all libraries of HEDRO34, also those that are opened later:
    `make()` gives a new object.

    What a merge creates for a template or document of the host comes from the names "TIBTemplate81.TIBRegion",
    "WENKtd81.WENKtdDocument", "WENKtd81.WENKtdQuestion", "WENKtd81.WENKtdObjective" and "WENKtd81.WENKtdOrder".
    """
    factory = SimpleNamespace(CreateInstance=make)
    for library in _for_the_host():
        _register_class(library, name, factory)
    _host_classes[_folded(name)] = name, factory


def revoke_class(name: str) -> bool:
    """Takes a class of the host out again, from all libraries; whether there was one."""
    found = False
    for library in _for_the_host():
        with create("HEDRO34.Platform", library) as platform:
            found |= platform.RevokeClass(name)
    _host_classes.pop(_folded(name), None)
    return found


def _register_class(library: Library, name: str, factory: object) -> None:
    with create("HEDRO34.Platform", library) as platform:
        platform.RegisterClass(name, factory)


def _for_the_host() -> list[Library]:
    """The opened libraries of our own make, at least one."""
    return list(dict.fromkeys([loaded(), *(library for library in _libraries.values() if library.is_own)]))


atexit.register(_object.end)
