"""HEDRO34 from Python.

    import hedro34

    test = hedro34.create("HEDRO34.clsHEDROTest")
    test.LoadXML("unit1.xml")
    for question in test.Questions:
        print(question.ID, question.QuestionText)

Positions count from 1, as in the library. An object belongs to the thread that made it.
"""

from . import _classes as types
from ._classes import HEDROTestImportObjectives, HEDROTestQuestionType, HEDROTestSourceType
from ._errors import Error, MemberError
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

__all__ = [
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
