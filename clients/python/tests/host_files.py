"""A form template and a data document in plain Python, with what a merge asks of them."""

from __future__ import annotations

import copy
import json
from collections.abc import Iterable, Iterator
from pathlib import Path
from types import SimpleNamespace
from typing import Any

import support  # noqa: F401  (the path)

import hedro34


class List:
    """Elements by positions from 1."""

    def __init__(self, elements: Iterable[Any] = ()) -> None:
        self.elements = list(elements)

    def __iter__(self) -> Iterator[Any]:
        return iter(self.elements)

    Count = property(lambda self: len(self.elements))

    def Item(self, index: int) -> Any:
        if not 1 <= index <= len(self.elements):
            raise IndexError(index)
        return self.elements[index - 1]

    def SetItem(self, index: int, element: Any) -> None:
        self.elements[index - 1] = element

    def Add(self, element: Any, *others: Any) -> int:
        self.elements.append(element)
        return len(self.elements)

    def AddArray(self, elements: list[Any]) -> None:
        self.elements += elements

    def AsArray(self, lower_bound: int = 1) -> hedro34.Array[Any]:
        return hedro34.Array(self.elements, lower_bound)


class Record:
    """Members with defaults, under the names of the files but for the case of the first letter."""

    DEFAULTS: dict[str, Any] = {}

    def __init__(self, values: dict[str, Any] | None = None) -> None:
        for name, default in self.DEFAULTS.items():
            value = (values or {}).get(name[0].lower() + name[1:], default)
            setattr(self, name, type(default)(value) if isinstance(default, List) else value)

    def as_json(self) -> dict[str, Any]:
        values = {name[0].lower() + name[1:]: getattr(self, name) for name in self.DEFAULTS}
        return {name: list(value) if isinstance(value, List) else value for name, value in values.items()}


class Field(Record):
    DEFAULTS = {
        "Name": "", "QuestionText": "", "ItemOption": 0, "Graded": False, "CorrectPoints": 1.0, "IncorrectPoints": 0.0,
        "NoResponsePoints": 0.0, "ChoiceLabels": List(), "ChoiceValues": List(), "ScaleOption": 0,
        "SubjectiveQuestion": False, "MultiplesAllowed": 0,
    }  # fmt: skip
    number = 0

    def FieldNumber(self, option: bool) -> int:
        return self.number


class Fields(List):
    def Add(self) -> None:  # type: ignore[override]
        self.elements.append(Field())


class Region(Record):
    DEFAULTS = {
        "Name": "", "RegionKind": 1, "ResponseKind": 1, "ValueKind": 1, "GroupNumber": 0, "SubjectiveRegion": False,
    }  # fmt: skip

    def __init__(self, values: dict[str, Any] | None = None) -> None:
        super().__init__(values)
        self.Questions = Fields(map(Field, (values or {}).get("questions", [])))

    QuestionCount = property(lambda self: self.Questions.Count)

    def as_json(self) -> dict[str, Any]:
        return super().as_json() | {"questions": [field.as_json() for field in self.Questions]}


class Template:
    def __init__(self, pages: Iterable[dict[str, Any]] = ()) -> None:
        self.Pages = List(SimpleNamespace(Regions=List(map(Region, page["regions"]))) for page in pages)
        for number, (_, field) in enumerate(self.walk(), 1):
            field.number = number

    @classmethod
    def read(cls, path: Path) -> Template:
        return cls(json.loads(path.read_text())["pages"])

    def walk(self) -> list[tuple[Region, Field]]:
        result, group = [], 0
        for page in self.Pages:
            for region in page.Regions:
                if not (region.GroupNumber and region.GroupNumber == group):
                    result += [(region, field) for field in region.Questions]
                group = region.GroupNumber
        return result

    PageCount = property(lambda self: self.Pages.Count)
    QuestionCount = property(lambda self: len(self.walk()))
    GradedQuestionCount = property(lambda self: sum(field.Graded for _, field in self.walk()))

    def Clear(self) -> None:
        self.Pages = List()

    def QuestionNames(self, first: int, last: int, option1: bool, delimiter: str, option2: bool) -> list[str]:
        return [field.Name or region.Name for region, field in self.walk()[first - 1 : last]]

    def Copy(self, option: bool) -> Template:
        return copy.deepcopy(self)

    def as_json(self) -> list[Any]:
        return [{"regions": [region.as_json() for region in page.Regions]} for page in self.Pages]


class Flag:
    def __init__(self, flags: list[bool], at: int) -> None:
        self._flags, self._at = flags, at

    @property
    def Value(self) -> bool:
        return self._at < len(self._flags) and self._flags[self._at]

    @Value.setter
    def Value(self, value: bool) -> None:
        self._flags += [False] * (self._at + 1 - len(self._flags))
        self._flags[self._at] = value


class Flags(List):
    def Item(self, index: int) -> Flag:
        return Flag(self.elements, index - 1)


class Question(Record):
    DEFAULTS = {
        "Name": "", "QuestionText": "", "Graded": False, "ItemOption": 0, "ValueKind": 1, "TextValue": "",
        "FloatValue": 0.0, "MultiplesAllowed": 0, "ScaleOption": 0, "Subjective": False, "CorrectAnswerCount": 0,
        "CorrectAnd": True, "CorrectPoints": 1.0, "IncorrectPoints": 0.0, "NoResponsePoints": 0.0,
        "SubjectivePoints": 0.0, "Difficulty": "", "Reference": "", "Topic": "", "Keywords": "", "Miscellaneous": "",
        "Notes": "", "ChoiceLabels": List(), "ChoiceValues": List(), "AnswerKey": List(),
        "NumericAnswerKey": List(), "ObjectiveFlags": Flags(),
    }  # fmt: skip


class Objective:
    Name = ""


class Objectives(List):
    def Exists(self, key: str) -> bool:  # the key is the name, but for the default one
        return key.lower() in [objective.Name.lower() for objective in self]


class Order(List):
    def FromArray(self, entries: list[int]) -> None:
        self.elements = list(entries)


class Orders(List):
    def AddDefault(self, questions: int) -> None:
        self.elements.append(Order(range(1, questions + 1)))


class Document:
    def __init__(self) -> None:
        self.Clear()

    def Clear(self) -> None:
        self.Questions, self.Objectives = List(), Objectives()
        self.Versions = SimpleNamespace(SequenceQuestion=0, VersionMode=0, Orders=Orders(), VersionAnswers=List())
        self.Description = self.Notes = ""
        self.DocumentKind = self.PageCount = 0

    def PrepareDefaults(self) -> None:
        if not self.Objectives.Count:
            self.Objectives.elements.append(Objective())

    def as_json(self) -> dict[str, Any]:
        versions = {"sequenceQuestion": self.Versions.SequenceQuestion}
        versions["versionAnswers"] = list(self.Versions.VersionAnswers)
        versions["orders"] = [list(order) for order in self.Versions.Orders]
        return {
            "format": "hedro34-ktd", "version": 1, "description": self.Description, "notes": self.Notes,
            "documentKind": self.DocumentKind, "pageCount": self.PageCount, "versions": versions,
            "objectives": [objective.Name for objective in self.Objectives],
            "questions": [question.as_json() for question in self.Questions],
        }  # fmt: skip


CLASSES = {
    "TIBTemplate81.TIBRegion": Region,
    "WENKtd81.WENKtdQuestion": Question,
    "WENKtd81.WENKtdObjective": Objective,
    "WENKtd81.WENKtdOrder": Order,
}
