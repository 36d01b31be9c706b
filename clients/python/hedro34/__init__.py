"""HEDRO34 from Python.

    import hedro34

    test = hedro34.create("HEDRO34.clsHEDROTest")
    test.LoadXML("unit1.xml")
    for question in test.Questions:
        print(question.ID, question.QuestionText)

`create` makes clsHEDRO, the merge object, clsHEDROTest and its parts, FormTemplate and DataDocument, and Platform for what
the library asks of its host. Each member says what it does: help(test), help(test.LoadXML), help(hedro34.types.clsHEDROTest).

Positions count from 1, as in the library, and its empty reference is None. An object belongs to the thread that made it.
Operations report failures to the error object (`SetError`) or in a message box, and give False, 0, "" or None; what is wrong
with a call itself is an `Error`.
"""

from typing import TYPE_CHECKING

from . import _classes as types
from ._classes import HEDROTestImportObjectives, HEDROTestQuestionType, HEDROTestSourceType
from ._errors import ArgumentTypeError, Error, MemberError, ArgumentValueError
from ._host import exposed_objects, last_host_error
from ._library import (
    Library,
    can_unload,
    create,
    last_file_error,
    load,
    register_class,
    registered,
    registry_path,
    revoke_class,
)
from ._object import Collection, Object, collect
from ._values import EMPTY, MISSING, NULL, Array, ByRef

__version__ = types.VERSION

__all__ = [
    "ArgumentTypeError",
    "Array",
    "ByRef",
    "Collection",
    "EMPTY",
    "Error",
    "HEDROTestImportObjectives",
    "HEDROTestQuestionType",
    "HEDROTestSourceType",
    "Library",
    "MISSING",
    "MemberError",
    "NULL",
    "Object",
    "ArgumentValueError",
    "can_unload",
    "collect",
    "create",
    "exposed_objects",
    "last_file_error",
    "last_host_error",
    "load",
    "register_class",
    "registered",
    "registry_path",
    "revoke_class",
    "types",
]


if not TYPE_CHECKING:  # which would take it for a module that has every name

    def __getattr__(name: str) -> object:
        hint = f': hedro34.create("{name}") makes one' if f"HEDRO34.{name}" in types.CLASSES else ""
        raise AttributeError(f'module "{__name__}" has no attribute "{name}"{hint}', name=name)
