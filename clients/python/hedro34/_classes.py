"""The classes of the library, as its member tables give them. Written by `hedro34_tables python`; not edited
by hand."""

from __future__ import annotations

from enum import IntEnum, IntFlag
from os import PathLike
from typing import Any, Literal, Protocol, overload

from ._typing import Items, Reference
from ._values import Array, ByRef

CLASSES: dict[str, str] = {
    "HEDRO34.clsHEDRO": "{1A11377D-4B0A-4D1C-958B-625FA5F427D6}",
    "HEDRO34.clsHEDROTest": "{BEA4DEBF-AA66-429D-A5E2-9DB91352EFB9}",
    "HEDRO34.clsHEDROTestQuestion": "{204ED3FE-972F-493D-A9A3-3230935686BA}",
    "HEDRO34.clsHEDROTestStrings": "{1862B1D1-8D70-446F-AAFC-1C97D0C645FF}",
    "HEDRO34.clsHEDROTestCorrect": "{5A65F595-F582-4A49-93D4-3B55C7DA83D4}",
    "HEDRO34.clsHEDROTestSequence": "{DCC2C761-DC96-4A81-B00B-7BA17B0DA24A}",
    "HEDRO34.FormTemplate": "{C38DB902-4832-4ED4-A513-EDD8E849C2AD}",
    "HEDRO34.FormRegion": "{DAF25D00-4438-4AC4-9CA7-30E2507DE889}",
    "HEDRO34.FormChoiceList": "{F054D9AB-5A7D-4719-BDC1-2E76948AE1E2}",
    "HEDRO34.DataDocument": "{14F61729-81BA-4324-84CC-F9D851B6A11B}",
    "HEDRO34.DataQuestion": "{AF7A33AC-8B85-4ED4-A069-FAD6C3FC4DCB}",
    "HEDRO34.DataObjective": "{4B59771A-AC66-48E4-A72B-E60F5A892A9E}",
    "HEDRO34.DataOrder": "{EF8594F3-6591-4035-8A95-C64E4FF4765D}",
    "HEDRO34.MessageBox": "{A8DAD435-CC98-41C6-A751-A2558096121C}",
    "HEDRO34.Platform": "{FFC10FFE-B320-44F9-A890-1C52699F318A}",
}


class HEDROTestSourceType(IntEnum):
    Unknown = -1
    ExamView = 0
    KTD = 1
    NGT = 2


class HEDROTestImportObjectives(IntFlag):
    None_ = 0
    Learning = 1
    Local = 2
    State = 4
    National = 8


class HEDROTestQuestionType(IntEnum):
    Unknown = -1
    TrueFalse = 1
    YesNo = 2
    MultipleChoice = 3
    ModifiedTrueFalse = 4
    NumericResponse = 5
    Completion = 6
    Matching = 7
    ShortAnswer = 8
    Problem = 9
    Essay = 10
    Case = 11
    Subjective = 12
    Other = 13
    Bimodal = 14


class clsHEDRO(Reference, Protocol):
    """The merge object: what a merge works on, and the operations that prepare and run it."""

    TemplateIn: FormTemplate | Any
    TemplateOut: FormTemplate | Any
    Tests: clsHEDROTests
    WENKTD: DataDocument | Any

    def RemoveInvalid(self, lMaxQuestions: int = 0) -> bool: ...

    def Merge(self) -> bool: ...

    Verbose: bool

    def ValidTestVersions(self) -> bool: ...

    SequenceQuestion: int

    def SetError(self, oErr: Any) -> bool: ...


class clsHEDROTest(Reference, Protocol):
    """One test: its identity, its questions, its scales and its sequences."""

    Questions: clsHEDROTestQuestions
    Sequences: clsHEDROTestSequences
    MultipleChoiceOddScale: clsHEDROTestStrings
    MultipleChoiceEvenScale: clsHEDROTestStrings
    TrueFalseScale: clsHEDROTestStrings
    YesNoScale: clsHEDROTestStrings
    Title: str
    Version: str
    Notes: str
    CreatedBy: str
    TeacherID: str
    Source: HEDROTestSourceType | int

    def QuestionType(self, vType: Any) -> HEDROTestQuestionType | int: ...

    def Clear(self) -> None: ...

    def SetError(self, oErr: Any) -> bool: ...

    def LoadKTD(self, sKTDFile: str | PathLike[str]) -> bool: ...

    def LoadXML(
        self,
        sExamViewXMLFile: str | PathLike[str],
        bOddDistractorsOnly: bool = False,
        bUserCancelled: ByRef[bool] = ...,
        bVerbose: bool = True,
    ) -> bool: ...

    @property
    def NumObjectives(self) -> int: ...

    ID: str
    ImportObjectives: HEDROTestImportObjectives | int
    StateAbbreviation: str
    UserDefined: bool
    Description: str

    def Copy(self) -> clsHEDROTest | Any: ...

    def QuestionScale(self, vQuestionIndex: Any, vIsOddOverride: Any = ...) -> clsHEDROTestStrings | Any: ...

    def AddSequence(self, oTestVersion: clsHEDROTest) -> bool: ...

    def CorrectAnswersAsString(
        self,
        vQuestionIndex: Any,
        sDelimiter: str = ",",
        bEnclosedByParens: bool = True,
        bNumeric: bool = False,
    ) -> str: ...

    def CorrectAnswersAsArray(self, vQuestionIndex: Any, bAsString: bool = False) -> Array[str]: ...


class clsHEDROTestQuestion(Reference, Protocol):
    """One question of a test."""

    LearningObjectives: clsHEDROTestStrings
    Answers: clsHEDROTestStrings
    CorrectAnswers: clsHEDROTestCorrect
    CorrectPoints: float
    IncorrectPoints: float
    NoResponsePoints: float
    SubjectivePoints: float
    CorrectAnd: bool

    @property
    def MultiplesPermitted(self) -> bool: ...

    QuestionText: str
    Difficulty: str
    Reference: str
    Topic: str
    Keywords: str
    Miscellaneous: str
    Notes: str
    ID: str
    QuestionType: HEDROTestQuestionType | int

    def Copy(self) -> clsHEDROTestQuestion | Any: ...


class clsHEDROTestStrings(Items[str], Protocol):
    """An ordered list of texts: answers, objectives and scales."""

    @property
    def Count(self) -> int: ...

    def Add(self, Item: str, Key: Any = ..., Before: Any = ..., After: Any = ...) -> bool: ...

    def AddArray(self, Value: list[str]) -> bool: ...

    def AddDelimitedString(self, Items: str, sDelimiter: str = "\t") -> bool: ...

    def Remove(self, Index: Any) -> bool: ...

    def RemoveAll(self) -> bool: ...

    def Item(self, Index: Any) -> str: ...

    def __setitem__(self, index: Any, value: str) -> None: ...

    def Exists(self, Index: Any) -> bool: ...

    def AsString(self, sDelimiter: str = "\t") -> str: ...

    def AsArray(self, lLowerBound: int = 1) -> Array[str]: ...

    def Copy(self) -> clsHEDROTestStrings | Any: ...


class clsHEDROTestCorrect(Items[int], Protocol):
    """The correct answers of a question: a set of answer numbers."""

    @property
    def Count(self) -> int: ...

    def Add(self, Item: int, Before: Any = ..., After: Any = ...) -> bool: ...

    def Remove(self, Index: Any) -> bool: ...

    def RemoveAll(self) -> bool: ...

    def Item(self, Index: int) -> int: ...

    def Exists(self, Index: Any) -> bool: ...

    def Copy(self) -> clsHEDROTestCorrect | Any: ...

    def GetBitWiseRepresentation(self) -> int: ...

    def ConvertBitWiseRepresentation(self, BitWiseValue: int) -> None: ...


class clsHEDROTestSequence(Reference, Protocol):
    """One version of a test: its label and the order of its questions."""

    Order: clsHEDROTestSequenceOrder
    Answer: str

    def Copy(self, oQuestions: clsHEDROTestQuestions) -> clsHEDROTestSequence | Any: ...

    def __call__(self, *index: Any) -> clsHEDROTestSequenceOrder | Any: ...


class clsHEDROTests(Items["clsHEDROTest"], Protocol):
    """The tests of a merge: the one that is merged first, its further versions behind it."""

    @property
    def Count(self) -> int: ...

    def Add(self, Item: clsHEDROTest, Key: Any = ..., Before: Any = ..., After: Any = ...) -> None: ...

    def Remove(self, Index: Any) -> None: ...

    def RemoveAll(self) -> None: ...

    def Item(self, Index: Any) -> clsHEDROTest | Any: ...

    def Exists(self, Index: Any) -> bool: ...


class clsHEDROTestQuestions(Items["clsHEDROTestQuestion"], Protocol):
    """The questions of a test in test order, each under its ID."""

    @property
    def Count(self) -> int: ...

    def Add(self, oQuestion: clsHEDROTestQuestion, Before: Any = ..., After: Any = ...) -> bool: ...

    def Remove(self, Index: Any) -> bool: ...

    def RemoveAll(self) -> bool: ...

    def Item(self, Index: Any) -> clsHEDROTestQuestion | Any: ...

    def Exists(self, Index: Any) -> bool: ...

    def TypeCount(self, eQuestionType: int) -> int: ...


class clsHEDROTestSequences(Items["clsHEDROTestSequence"], Protocol):
    """The versions of a test, each under its label."""

    @property
    def Count(self) -> int: ...

    def Add(self, oSequence: clsHEDROTestSequence) -> bool: ...

    def AddDefault(self, oQuestions: clsHEDROTestQuestions, sAnswer: str = "A") -> bool: ...

    def Remove(self, vKey: Any) -> bool: ...

    def RemoveAll(self) -> bool: ...

    def Item(self, vKey: Any) -> clsHEDROTestSequence | Any: ...

    def Exists(self, vKey: Any) -> bool: ...


class clsHEDROTestSequenceOrder(Items[int], Protocol):
    """The places of a version's questions, each under its ID."""

    @property
    def Count(self) -> int: ...

    def Add(self, sQuestionID: str) -> None: ...

    def Remove(self, vKey: Any) -> None: ...

    def RemoveAll(self) -> None: ...

    def Item(self, vKey: Any) -> int: ...

    def Exists(self, vKey: Any) -> bool: ...

    def AsArray(self, lLowerBound: int = 1) -> Array[int]: ...

    def AsString(self, sDelimiter: str = "\t") -> str: ...


class FormTemplate(Reference, Protocol):
    """The default form template, loaded from and saved to a file."""

    @property
    def Pages(self) -> FormPages | Any: ...

    @property
    def PageCount(self) -> int: ...

    @property
    def QuestionCount(self) -> int: ...

    @property
    def GradedQuestionCount(self) -> int: ...

    def Clear(self) -> None: ...

    def QuestionNames(
        self,
        iFirst: int,
        iLast: int,
        bOption1: bool = False,
        sDelimiter: str = "\t",
        bOption2: bool = False,
    ) -> Any: ...

    def Copy(self, bOption: bool = True) -> FormTemplate | Any: ...

    def Load(self, sPath: str | PathLike[str]) -> bool: ...

    def Save(self, sPath: str | PathLike[str]) -> bool: ...

    def __call__(self, *index: Any) -> FormPages | Any: ...


class FormPages(Items["FormPage"], Protocol):
    """The pages of a form."""

    @property
    def Count(self) -> int: ...

    def Item(self, Index: Any) -> FormPage | Any: ...

    def Add(self) -> FormPage | Any: ...


class FormPage(Reference, Protocol):
    """One page of a form."""

    @property
    def Regions(self) -> FormRegions | Any: ...

    def __call__(self, *index: Any) -> FormRegions | Any: ...


class FormRegions(Items["FormRegion"], Protocol):
    """The regions of a page."""

    @property
    def Count(self) -> int: ...

    def Add(self, oRegion: Any, vOption1: Any = ..., vOption2: Any = ...) -> int: ...

    def Item(self, Index: Any) -> FormRegion | Any: ...

    def AddNew(self) -> FormRegion | Any: ...


class FormRegion(Reference, Protocol):
    """One region of a form."""

    @property
    def Questions(self) -> FormQuestions | Any: ...

    RegionKind: int
    ResponseKind: int
    ValueKind: int

    @property
    def QuestionCount(self) -> int: ...

    Name: str
    GroupNumber: int
    SubjectiveRegion: bool

    def __call__(self, *index: Any) -> FormQuestions | Any: ...


class FormQuestions(Items["FormQuestion"], Protocol):
    """The fields of a region."""

    @property
    def Count(self) -> int: ...

    def Item(self, Index: Any) -> FormQuestion | Any: ...

    def Add(self) -> FormQuestion | Any: ...


class FormQuestion(Reference, Protocol):
    """One field of a form."""

    QuestionText: str
    ItemOption: int
    Graded: bool
    CorrectPoints: float
    IncorrectPoints: float
    NoResponsePoints: float
    ChoiceLabels: FormChoiceList | Any
    ChoiceValues: FormChoiceList | Any
    ScaleOption: int
    SubjectiveQuestion: bool
    MultiplesAllowed: int

    def FieldNumber(self, bOption: bool = True) -> int: ...

    Name: str


class FormChoiceList(Items[str], Protocol):
    """The choice labels or choice values of a field."""

    @property
    def Count(self) -> int: ...

    def Item(self, Index: Any) -> str: ...

    def __setitem__(self, index: Any, value: str) -> None: ...

    def AsArray(self, lLowerBound: int = 1) -> Array[str]: ...

    def Add(self, sText: str) -> None: ...


class DataDocument(Reference, Protocol):
    """The default data document, loaded from and saved to a file."""

    @property
    def Questions(self) -> DataQuestions | Any: ...

    @property
    def Versions(self) -> DataVersions | Any: ...

    @property
    def Objectives(self) -> DataObjectives | Any: ...

    def Clear(self) -> None: ...

    def Load(self, sPath: str | PathLike[str]) -> bool: ...

    Description: str
    Notes: str
    DocumentKind: int
    PageCount: int

    def PrepareDefaults(self) -> None: ...

    def Save(self, sPath: str | PathLike[str]) -> bool: ...

    def __call__(self, *index: Any) -> DataQuestions | Any: ...


class DataQuestions(Items["DataQuestion"], Protocol):
    """The questions of a document, one for each field of its form."""

    @property
    def Count(self) -> int: ...

    def Add(self, oQuestion: Any) -> None: ...

    def Item(self, Index: Any) -> DataQuestion | Any: ...

    def AddNew(self) -> DataQuestion | Any: ...


class DataQuestion(Reference, Protocol):
    """One question of a document."""

    @property
    def ChoiceLabels(self) -> DataStrings | Any: ...

    @property
    def ChoiceValues(self) -> DataStrings | Any: ...

    @property
    def ObjectiveFlags(self) -> DataObjectiveFlags | Any: ...

    @property
    def AnswerKey(self) -> DataStrings | Any: ...

    @property
    def NumericAnswerKey(self) -> DataStrings | Any: ...

    Name: str
    QuestionText: str
    Graded: bool
    ItemOption: int
    ValueKind: int
    TextValue: str
    FloatValue: float
    MultiplesAllowed: int
    ScaleOption: int
    Subjective: bool
    CorrectAnswerCount: int
    CorrectAnd: bool
    CorrectPoints: float
    IncorrectPoints: float
    NoResponsePoints: float
    SubjectivePoints: float
    Difficulty: str
    Reference: str
    Topic: str
    Keywords: str
    Miscellaneous: str
    Notes: str


class DataStrings(Items[str], Protocol):
    """A list of texts of a document."""

    @property
    def Count(self) -> int: ...

    def Add(self, sText: str, vKey: Any = ...) -> None: ...

    def AddArray(self, vTexts: list[str]) -> None: ...

    def Item(self, Index: Any) -> str: ...

    def AsArray(self) -> Array[str]: ...


class DataObjectives(Items["DataObjective"], Protocol):
    """The objectives of a document, the default one first."""

    @property
    def Count(self) -> int: ...

    def Add(self, oObjective: Any, vKey: Any = ...) -> None: ...

    def Item(self, Index: Any) -> DataObjective | Any: ...

    def Exists(self, vKey: Any) -> bool: ...


class DataObjective(Reference, Protocol):
    """One objective of a document."""

    Name: str

    def __call__(self) -> str: ...


class DataObjectiveFlags(Items["DataObjectiveFlag"], Protocol):
    """The flags of a question, one for each objective."""

    def Add(self, vValue: Any) -> None: ...

    def Item(self, lPosition: int) -> DataObjectiveFlag | Any: ...


class DataObjectiveFlag(Reference, Protocol):
    """One flag of a question."""

    Value: Any

    def __call__(self) -> Any: ...


class DataVersions(Reference, Protocol):
    """The versions of a document's test."""

    @property
    def Orders(self) -> DataOrders | Any: ...

    @property
    def VersionAnswers(self) -> DataStrings | Any: ...

    SequenceQuestion: int

    @property
    def VersionMode(self) -> int: ...


class DataOrders(Items["DataOrder"], Protocol):
    """The orders of the versions."""

    @property
    def Count(self) -> int: ...

    def Add(self, oOrder: Any) -> None: ...

    def AddDefault(self, lQuestions: int) -> None: ...

    def Item(self, Index: Any) -> DataOrder | Any: ...


class DataOrder(Items[int], Protocol):
    """The order of one version: positions in the document's questions."""

    @property
    def Count(self) -> int: ...

    def Item(self, lPosition: int) -> int: ...

    def FromArray(self, vEntries: list[int]) -> None: ...


class MessageBox(Reference, Protocol):
    """The library's own message box."""

    def Show(self, sText: str, lFlags: int = 0, sTitle: str = "") -> int: ...


class Platform(Reference, Protocol):
    """The services of the library that a host may replace or ask."""

    MessageBox: Any

    @property
    def LastFileError(self) -> str: ...

    HostFaults: bool

    def RegisterClass(self, sName: str, oFactory: Any) -> None: ...

    def RevokeClass(self, sName: str) -> bool: ...

    Screen: Any
    ErrorTexts: Any


class Create(Protocol):
    """`hedro34.create`, with the class of what it gives."""

    @overload
    def __call__(self, name: Literal["HEDRO34.clsHEDRO"], library: Any = ...) -> clsHEDRO: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.clsHEDROTest"], library: Any = ...) -> clsHEDROTest: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.clsHEDROTestQuestion"], library: Any = ...) -> clsHEDROTestQuestion: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.clsHEDROTestStrings"], library: Any = ...) -> clsHEDROTestStrings: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.clsHEDROTestCorrect"], library: Any = ...) -> clsHEDROTestCorrect: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.clsHEDROTestSequence"], library: Any = ...) -> clsHEDROTestSequence: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.FormTemplate"], library: Any = ...) -> FormTemplate: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.FormRegion"], library: Any = ...) -> FormRegion: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.FormChoiceList"], library: Any = ...) -> FormChoiceList: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.DataDocument"], library: Any = ...) -> DataDocument: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.DataQuestion"], library: Any = ...) -> DataQuestion: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.DataObjective"], library: Any = ...) -> DataObjective: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.DataOrder"], library: Any = ...) -> DataOrder: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.MessageBox"], library: Any = ...) -> MessageBox: ...

    @overload
    def __call__(self, name: Literal["HEDRO34.Platform"], library: Any = ...) -> Platform: ...

    @overload
    def __call__(self, name: str, library: Any = ...) -> Any: ...
