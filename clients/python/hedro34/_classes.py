"""The classes of the library, as its member tables give them. Written by `hedro34_tables python`; not edited
by hand."""

from __future__ import annotations

from enum import IntEnum, IntFlag
from os import PathLike
from typing import Any, Literal, Protocol, overload

from ._typing import Items, Reference
from ._values import MISSING, Array, ByRef

VERSION = "0.1.0"

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
    "HEDRO34.Report": "{67F917CD-228F-4167-90E2-A0D5E9825D1A}",
}


class HEDROTestSourceType(IntEnum):
    """Where a test came from.

    Unknown: Not known, as after `Clear`.
    ExamView: An ExamView file, and a new test.
    KTD: A data document.
    NGT: For a host to write; the library never does.
    """

    Unknown = -1
    ExamView = 0
    KTD = 1
    NGT = 2


class HEDROTestImportObjectives(IntFlag):
    """Which objectives an import of an ExamView file takes over; they may be added up.

    None_: No objectives.
    Learning: The learning objectives.
    Local: The local standards.
    State: The objectives of the state that `StateAbbreviation` names.
    National: The national standards.
    """

    None_ = 0
    Learning = 1
    Local = 2
    State = 4
    National = 8


class HEDROTestQuestionType(IntEnum):
    """The type of a question, with the codes that `clsHEDROTest.QuestionType` takes.

    Unknown: Not known, and every other code.
    TrueFalse: True/false; code tf or 0.
    YesNo: Yes/no; code yn or 5.
    MultipleChoice: Multiple choice; code mc, mr, 2 or 3.
    ModifiedTrueFalse: Modified true/false; code mtf or 1.
    NumericResponse: Numeric response; code nr or 6.
    Completion: Completion; code co or 7.
    Matching: Matching; code ma or 8.
    ShortAnswer: Short answer; code sa or 9.
    Problem: Problem; code pr or 10.
    Essay: Essay; code es or 11.
    Case: Case; code ca or 12.
    Subjective: Subjective; no code.
    Other: Other; code ot or 13.
    Bimodal: Bimodal; code bi or 4.
    """

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
    """The merge object: what a merge works on, and the operations that prepare and run it.

    Made by `hedro34.create("HEDRO34.clsHEDRO")`.
    """

    @property
    def TemplateIn(self) -> FormTemplate | Any:
        """FormTemplate | Any: The form template that a merge reads; it stays as it is."""

    @TemplateIn.setter
    def TemplateIn(self, value: FormTemplate | Any) -> None: ...

    @property
    def TemplateOut(self) -> FormTemplate | Any:
        """FormTemplate | Any: Another template, which `Merge` clears and replaces by the changed copy of
        `TemplateIn`."""

    @TemplateOut.setter
    def TemplateOut(self, value: FormTemplate | Any) -> None: ...

    @property
    def Tests(self) -> clsHEDROTests:
        """clsHEDROTests: The test that is merged at position 1, its further versions behind it."""

    @Tests.setter
    def Tests(self, value: clsHEDROTests) -> None: ...

    @property
    def WENKTD(self) -> DataDocument | Any:
        """DataDocument | Any: The data document that `Merge` empties and fills."""

    @WENKTD.setter
    def WENKTD(self, value: DataDocument | Any) -> None: ...

    def RemoveInvalid(self, lMaxQuestions: int = 0) -> bool:
        """Leaves true/false, yes/no, multiple-choice and subjective questions; False when a test has others only.

        lMaxQuestions: how many questions a test may keep; 0 or less for no limit
        """

    def Merge(self) -> bool:
        """Merges the first test with `TemplateIn` into `TemplateOut` and `WENKTD`; True when it ran to its end."""

    @property
    def Verbose(self) -> bool:
        """bool: Whether warnings and refusals are shown, but for those of `ValidTestVersions`; True at first."""

    @Verbose.setter
    def Verbose(self, value: bool) -> None: ...

    def ValidTestVersions(self) -> bool:
        """Whether all tests hold the questions of the first one, with as many answers and the same correct ones."""

    @property
    def SequenceQuestion(self) -> int:
        """int: The field with the version identifier, from 1; `Merge` lowers it by each field before that it stops
        grading."""

    @SequenceQuestion.setter
    def SequenceQuestion(self, value: int) -> None: ...

    def SetError(self, oErr: Any) -> bool:
        """Stores the object that receives all failures on this thread, or none; gives whether there is one.

        oErr: its method `RaiseError` is called; an empty reference for none
        """


class clsHEDROTest(Reference, Protocol):
    """One test: its identity, its questions, its scales and its sequences.

    Made by `hedro34.create("HEDRO34.clsHEDROTest")`.
    """

    @property
    def Questions(self) -> clsHEDROTestQuestions:
        """clsHEDROTestQuestions: The questions in test order; the position of a question is its number in the test."""

    @Questions.setter
    def Questions(self, value: clsHEDROTestQuestions) -> None: ...

    @property
    def Sequences(self) -> clsHEDROTestSequences:
        """clsHEDROTestSequences: One sequence for each version of the test."""

    @Sequences.setter
    def Sequences(self, value: clsHEDROTestSequences) -> None: ...

    @property
    def MultipleChoiceOddScale(self) -> clsHEDROTestStrings:
        """clsHEDROTestStrings: Labels for the answers of multiple-choice questions at odd positions; A, B, C, D in a
        new test."""

    @MultipleChoiceOddScale.setter
    def MultipleChoiceOddScale(self, value: clsHEDROTestStrings) -> None: ...

    @property
    def MultipleChoiceEvenScale(self) -> clsHEDROTestStrings:
        """clsHEDROTestStrings: Labels for the answers of multiple-choice questions at even positions; A, B, C, D in a
        new test."""

    @MultipleChoiceEvenScale.setter
    def MultipleChoiceEvenScale(self, value: clsHEDROTestStrings) -> None: ...

    @property
    def TrueFalseScale(self) -> clsHEDROTestStrings:
        """clsHEDROTestStrings: Labels for the answers of true/false questions; T, F in a new test."""

    @TrueFalseScale.setter
    def TrueFalseScale(self, value: clsHEDROTestStrings) -> None: ...

    @property
    def YesNoScale(self) -> clsHEDROTestStrings:
        """clsHEDROTestStrings: Labels for the answers of yes/no questions; Y, N in a new test."""

    @YesNoScale.setter
    def YesNoScale(self, value: clsHEDROTestStrings) -> None: ...

    @property
    def Title(self) -> str:
        """str: The title; the first 255 characters are kept."""

    @Title.setter
    def Title(self, value: str) -> None: ...

    @property
    def Version(self) -> str:
        """str: The label of this version of the test; the first 50 characters are kept."""

    @Version.setter
    def Version(self, value: str) -> None: ...

    @property
    def Notes(self) -> str:
        """str: Notes on the test, of any length."""

    @Notes.setter
    def Notes(self, value: str) -> None: ...

    @property
    def CreatedBy(self) -> str:
        """str: Who made the test; the first 255 characters are kept."""

    @CreatedBy.setter
    def CreatedBy(self, value: str) -> None: ...

    @property
    def TeacherID(self) -> str:
        """str: Names the teacher; the first 255 characters are kept."""

    @TeacherID.setter
    def TeacherID(self, value: str) -> None: ...

    @property
    def Source(self) -> HEDROTestSourceType | int:
        """HEDROTestSourceType | int: Where the test came from; ExamView in a new test, unknown after `Clear`."""

    @Source.setter
    def Source(self, value: HEDROTestSourceType | int) -> None: ...

    def QuestionType(self, vType: Any) -> HEDROTestQuestionType | int:
        """The type that a code names: a text such as "mc" in any case, or a number; -1 for an unknown code."""

    def Clear(self) -> None:
        """Empties questions, sequences and texts; scales, `ImportObjectives` and `StateAbbreviation` stay."""

    def SetError(self, oErr: Any) -> bool:
        """Stores the object that receives all failures on this thread, or none; gives whether there is one.

        oErr: its method `RaiseError` is called; an empty reference for none
        """

    def LoadKTD(self, sKTDFile: str | PathLike[str]) -> bool:
        """Fills the test from a data document; True when there is a question in it."""

    def LoadXML(
        self,
        sExamViewXMLFile: str | PathLike[str],
        bOddDistractorsOnly: bool = False,
        bUserCancelled: ByRef[bool] = MISSING,
        bVerbose: bool = True,
    ) -> bool:
        """Fills the test from an ExamView XML file; True when there is a question in it.

        bOddDistractorsOnly: even questions take the letters of odd ones
        bUserCancelled: becomes True when the user cancels, else it stays as it is
        bVerbose: asks the user when questions allow partial credit
        """

    @property
    def NumObjectives(self) -> int:
        """int: The number of learning objectives of all questions together."""

    @property
    def ID(self) -> str:
        """str: Names the test; the first 50 characters are kept."""

    @ID.setter
    def ID(self, value: str) -> None: ...

    @property
    def ImportObjectives(self) -> HEDROTestImportObjectives | int:
        """HEDROTestImportObjectives | int: Which objectives `LoadXML` takes over, flags added up; none in a new
        test."""

    @ImportObjectives.setter
    def ImportObjectives(self, value: HEDROTestImportObjectives | int) -> None: ...

    @property
    def StateAbbreviation(self) -> str:
        """str: The state whose objectives `LoadXML` takes over; the first 2 characters are kept."""

    @StateAbbreviation.setter
    def StateAbbreviation(self, value: str) -> None: ...

    @property
    def UserDefined(self) -> bool:
        """bool: False for a test from an ExamView file, True for one from a data document and for a copy."""

    @UserDefined.setter
    def UserDefined(self, value: bool) -> None: ...

    @property
    def Description(self) -> str:
        """str: A description of the test; the first 255 characters are kept."""

    @Description.setter
    def Description(self, value: str) -> None: ...

    def Copy(self) -> clsHEDROTest | Any:
        """A new test that shares no object with this one, without `ID`, `ImportObjectives` and `StateAbbreviation`."""

    def QuestionScale(self, vQuestionIndex: Any, vIsOddOverride: Any = MISSING) -> clsHEDROTestStrings | Any:
        """The labels of the answers of a question, as a new list; an empty reference when there is no such question.

        vQuestionIndex: a position or an ID
        vIsOddOverride: True takes the odd scale, False the even one; left out, the position decides
        """

    def AddSequence(self, oTestVersion: clsHEDROTest) -> bool:
        """Records a further version of this test as a sequence; False, and a box that says why, when it is refused."""

    def CorrectAnswersAsString(
        self,
        vQuestionIndex: Any,
        sDelimiter: str = ",",
        bEnclosedByParens: bool = True,
        bNumeric: bool = False,
    ) -> str:
        """The correct answers of a question as one text, such as "B" or "(A,C)"; empty when there are none.

        vQuestionIndex: a position or an ID
        bEnclosedByParens: two or more stand in parentheses
        bNumeric: numbers in place of labels
        """

    def CorrectAnswersAsArray(self, vQuestionIndex: Any, bAsString: bool = False) -> Array[str]:
        """The correct answers of a question as an array from 0; without bounds when there are none.

        vQuestionIndex: a position or an ID
        bAsString: labels in place of numbers
        """


class clsHEDROTestQuestion(Reference, Protocol):
    """One question of a test.

    Made by `hedro34.create("HEDRO34.clsHEDROTestQuestion")`.
    """

    @property
    def LearningObjectives(self) -> clsHEDROTestStrings:
        """clsHEDROTestStrings: The texts of the objectives that the import took over."""

    @LearningObjectives.setter
    def LearningObjectives(self, value: clsHEDROTestStrings) -> None: ...

    @property
    def Answers(self) -> clsHEDROTestStrings:
        """clsHEDROTestStrings: The choices; the one at position n is answer number n."""

    @Answers.setter
    def Answers(self, value: clsHEDROTestStrings) -> None: ...

    @property
    def CorrectAnswers(self) -> clsHEDROTestCorrect:
        """clsHEDROTestCorrect: The numbers of the correct answers."""

    @CorrectAnswers.setter
    def CorrectAnswers(self, value: clsHEDROTestCorrect) -> None: ...

    @property
    def CorrectPoints(self) -> float:
        """float: Points for a correct response; 1 in a new question."""

    @CorrectPoints.setter
    def CorrectPoints(self, value: float) -> None: ...

    @property
    def IncorrectPoints(self) -> float:
        """float: Points for an incorrect response; 0 in a new question."""

    @IncorrectPoints.setter
    def IncorrectPoints(self, value: float) -> None: ...

    @property
    def NoResponsePoints(self) -> float:
        """float: Points for no response; 0 in a new question."""

    @NoResponsePoints.setter
    def NoResponsePoints(self, value: float) -> None: ...

    @property
    def SubjectivePoints(self) -> float:
        """float: Points of a subjective question; 0 in a new question."""

    @SubjectivePoints.setter
    def SubjectivePoints(self, value: float) -> None: ...

    @property
    def CorrectAnd(self) -> bool:
        """bool: Whether all correct answers must be selected; True in a new question."""

    @CorrectAnd.setter
    def CorrectAnd(self, value: bool) -> None: ...

    @property
    def MultiplesPermitted(self) -> bool:
        """bool: Whether there is more than one correct answer and `CorrectAnd` is True."""

    @property
    def QuestionText(self) -> str:
        """str: The text of the question, of any length."""

    @QuestionText.setter
    def QuestionText(self, value: str) -> None: ...

    @property
    def Difficulty(self) -> str:
        """str: The difficulty in words, not interpreted; the first 255 characters are kept."""

    @Difficulty.setter
    def Difficulty(self, value: str) -> None: ...

    @property
    def Reference(self) -> str:
        """str: A reference in words, of any length, not interpreted."""

    @Reference.setter
    def Reference(self, value: str) -> None: ...

    @property
    def Topic(self) -> str:
        """str: The topic, not interpreted; the first 255 characters are kept."""

    @Topic.setter
    def Topic(self, value: str) -> None: ...

    @property
    def Keywords(self) -> str:
        """str: The keywords as one text, not interpreted; the first 255 characters are kept."""

    @Keywords.setter
    def Keywords(self, value: str) -> None: ...

    @property
    def Miscellaneous(self) -> str:
        """str: Anything else in words, not interpreted; the first 255 characters are kept."""

    @Miscellaneous.setter
    def Miscellaneous(self, value: str) -> None: ...

    @property
    def Notes(self) -> str:
        """str: Notes on the question, of any length, not interpreted."""

    @Notes.setter
    def Notes(self, value: str) -> None: ...

    @property
    def ID(self) -> str:
        """str: Names the question in its test and in every order; the first 50 characters are kept."""

    @ID.setter
    def ID(self, value: str) -> None: ...

    @property
    def QuestionType(self) -> HEDROTestQuestionType | int:
        """HEDROTestQuestionType | int: The type of the question; unknown (-1) in a new one."""

    @QuestionType.setter
    def QuestionType(self, value: HEDROTestQuestionType | int) -> None: ...

    def Copy(self) -> clsHEDROTestQuestion | Any:
        """A new question that shares no object with this one; its answers and objectives keep 50 characters each."""


class clsHEDROTestStrings(Items[str], Protocol):
    """An ordered list of texts: answers, objectives and scales.

    Made by `hedro34.create("HEDRO34.clsHEDROTestStrings")`.
    """

    @property
    def Count(self) -> int:
        """int: The number of elements."""

    def Add(self, Item: str, Key: Any = MISSING, Before: Any = MISSING, After: Any = MISSING) -> bool:
        """Adds the first 50 characters of a text, at the end or where `Before` or `After` says; True when added.

        Key: the key of the element, compared in any case
        Before: position or key of the element that will stand behind
        After: position or key of the element that will stand in front
        """

    def AddArray(self, Value: list[str] | tuple[str, ...]) -> bool:
        """Adds every text of an array in order, without keys; an array without bounds is a failure."""

    def AddDelimitedString(self, Items: str, sDelimiter: str = "\t") -> bool:
        """Adds the parts between the delimiters, the empty ones too; False, and nothing added, for an empty text.

        sDelimiter: an empty one splits nothing
        """

    def Remove(self, Index: Any) -> bool:
        """Removes the element at a position or under a key; False when there is none."""

    def RemoveAll(self) -> bool:
        """Removes all elements, the last one first; True when none is left."""

    def Item(self, Index: Any) -> str:
        """The text at a position or under a key, else an empty one; writing keeps 255 characters and drops the key."""

    def __setitem__(self, index: Any, value: str) -> None: ...

    def Exists(self, Index: Any) -> bool:
        """Whether there is an element at a position or under a key."""

    def AsString(self, sDelimiter: str = "\t") -> str:
        """The elements as one text, with the delimiter between them."""

    def AsArray(self, lLowerBound: int = 1) -> Array[str]:
        """The elements as an array from `lLowerBound` up; without bounds when there are none."""

    def Copy(self) -> clsHEDROTestStrings | Any:
        """A new list without keys, made through tab-joined text: 50 characters each, split where there is a tab."""


class clsHEDROTestCorrect(Items[int], Protocol):
    """The correct answers of a question: a set of answer numbers.

    Made by `hedro34.create("HEDRO34.clsHEDROTestCorrect")`.
    """

    @property
    def Count(self) -> int:
        """int: The number of correct answers."""

    def Add(self, Item: int, Before: Any = MISSING, After: Any = MISSING) -> bool:
        """Adds an answer number, at the end or where `Before` or `After` says; False when it is there already.

        Before: position or key of the element that will stand behind
        After: position or key of the element that will stand in front
        """

    def Remove(self, Index: Any) -> bool:
        """Removes the element at a position or, for a text, the answer of that number; False when there is none."""

    def RemoveAll(self) -> bool:
        """Removes all answer numbers, the last one first; True when none is left."""

    def Item(self, Index: int) -> int:
        """The answer number at a position; -1 when there is none."""

    def Exists(self, Index: Any) -> bool:
        """Whether there is an element at a position or, for a text such as "3", the answer of that number."""

    def Copy(self) -> clsHEDROTestCorrect | Any:
        """A new set with the same numbers in the same order."""

    def GetBitWiseRepresentation(self) -> int:
        """The set as one number: bit k stands for answer k + 1; an answer above 31 is a failure."""

    def ConvertBitWiseRepresentation(self, BitWiseValue: int) -> None:
        """Replaces the set by the answers of the bits 0 to 30, in ascending order; bit 31 plays no part."""


class clsHEDROTestSequence(Reference, Protocol):
    """One version of a test: its label and the order of its questions.

    Made by `hedro34.create("HEDRO34.clsHEDROTestSequence")`.
    """

    @property
    def Order(self) -> clsHEDROTestSequenceOrder:
        """clsHEDROTestSequenceOrder: The places of the questions in this version, each under the ID of its question."""

    @Order.setter
    def Order(self, value: clsHEDROTestSequenceOrder) -> None: ...

    @property
    def Answer(self) -> str:
        """str: The label of the version; the first 50 characters are kept."""

    @Answer.setter
    def Answer(self, value: str) -> None: ...

    def Copy(self, oQuestions: clsHEDROTestQuestions) -> clsHEDROTestSequence | Any:
        """A new sequence with the same label, whose order is that of `oQuestions` and not of this sequence."""

    def __call__(self, *index: Any) -> clsHEDROTestSequenceOrder | Any: ...


class clsHEDROTests(Items["clsHEDROTest"], Protocol):
    """The tests of a merge: the one that is merged first, its further versions behind it."""

    @property
    def Count(self) -> int:
        """int: The number of tests."""

    def Add(self, Item: clsHEDROTest, Key: Any = MISSING, Before: Any = MISSING, After: Any = MISSING) -> None:
        """Adds a test, at the end or where `Before` or `After` says; a `Key` in use is a failure.

        Key: the key of the test, compared in any case
        Before: position or key of the element that will stand behind
        After: position or key of the element that will stand in front
        """

    def Remove(self, Index: Any) -> None:
        """Removes the test at a position or under a key; that there is none is a failure."""

    def RemoveAll(self) -> None:
        """Removes all tests, the last one first."""

    def Item(self, Index: Any) -> clsHEDROTest | Any:
        """The test at a position or under a key; an empty reference when there is none."""

    def Exists(self, Index: Any) -> bool:
        """Whether there is a test at a position or under a key."""


class clsHEDROTestQuestions(Items["clsHEDROTestQuestion"], Protocol):
    """The questions of a test in test order, each under its ID."""

    @property
    def Count(self) -> int:
        """int: The number of questions."""

    def Add(self, oQuestion: clsHEDROTestQuestion, Before: Any = MISSING, After: Any = MISSING) -> bool:
        """Adds a question under its present `ID`, which must be new, at the end or where `Before` or `After` says.

        Before: position or key of the element that will stand behind
        After: position or key of the element that will stand in front
        """

    def Remove(self, Index: Any) -> bool:
        """Empties the answers and objectives of a question and removes it; False when there is none."""

    def RemoveAll(self) -> bool:
        """Empties and removes all questions, the last one first; True when none is left."""

    def Item(self, Index: Any) -> clsHEDROTestQuestion | Any:
        """The question at a position or under an ID; an empty reference when there is none."""

    def Exists(self, Index: Any) -> bool:
        """Whether there is a question at a position or under an ID."""

    def TypeCount(self, eQuestionType: int) -> int:
        """How many questions have exactly this type."""


class clsHEDROTestSequences(Items["clsHEDROTestSequence"], Protocol):
    """The versions of a test, each under its label."""

    @property
    def Count(self) -> int:
        """int: The number of versions."""

    def Add(self, oSequence: clsHEDROTestSequence) -> bool:
        """Adds a sequence under its present label `Answer`, which must be new; True when added."""

    def AddDefault(self, oQuestions: clsHEDROTestQuestions, sAnswer: str = "A") -> bool:
        """Adds one sequence in the order of `oQuestions`; False, and nothing added, when there is a sequence.

        sAnswer: the label of the version
        """

    def Remove(self, vKey: Any) -> bool:
        """Removes the sequence at a position or under a label; False when there is none."""

    def RemoveAll(self) -> bool:
        """Removes all sequences, the last one first; True when none is left."""

    def Item(self, vKey: Any) -> clsHEDROTestSequence | Any:
        """The sequence at a position or under a label; an empty reference when there is none."""

    def Exists(self, vKey: Any) -> bool:
        """Whether there is a sequence at a position or under a label."""


class clsHEDROTestSequenceOrder(Items[int], Protocol):
    """The places of a version's questions, each under its ID."""

    @property
    def Count(self) -> int:
        """int: The number of entries."""

    def Add(self, sQuestionID: str) -> None:
        """Adds the place `Count` + 1 under the ID of a question; an ID that is there already is a failure."""

    def Remove(self, vKey: Any) -> None:
        """Removes the entry at a position or under an ID, if there is one; the other places stay as they are."""

    def RemoveAll(self) -> None:
        """Removes all entries."""

    def Item(self, vKey: Any) -> int:
        """The place, from 1, of the question with an ID or of the entry at a position; 0 when there is none."""

    def Exists(self, vKey: Any) -> bool:
        """Whether there is an entry at a position or under an ID."""

    def AsArray(self, lLowerBound: int = 1) -> Array[int]:
        """The places as an array from `lLowerBound` up; without bounds when there are none."""

    def AsString(self, sDelimiter: str = "\t") -> str:
        """The places in decimal as one text, with the delimiter between them."""


class FormTemplate(Reference, Protocol):
    """The default form template, loaded from and saved to a file.

    Made by `hedro34.create("HEDRO34.FormTemplate")`.
    """

    @property
    def Pages(self) -> FormPages | Any:
        """FormPages | Any: The pages of the form."""

    @property
    def PageCount(self) -> int:
        """int: The number of pages."""

    @property
    def QuestionCount(self) -> int:
        """int: The number of fields, without those of regions that continue a group."""

    @property
    def GradedQuestionCount(self) -> int:
        """int: The number of graded fields, without those of regions that continue a group."""

    def Clear(self) -> None:
        """Drops all pages."""

    def QuestionNames(
        self,
        iFirst: int,
        iLast: int,
        bOption1: bool = False,
        sDelimiter: str = "\t",
        bOption2: bool = False,
    ) -> Any:
        """The names of fields as an array from 1; a field without a name bears that of its region.

        iFirst: a field number, from 1
        iLast: at most `QuestionCount`
        bOption1: plays no part
        sDelimiter: plays no part
        bOption2: plays no part
        """

    def Copy(self, bOption: bool = True) -> FormTemplate | Any:
        """A new template with the same content that shares no object with this one.

        bOption: plays no part
        """

    def Load(self, sPath: str | PathLike[str]) -> bool:
        """Replaces the content by that of a file; False when it cannot, for the reason in `Platform.LastFileError`."""

    def Save(self, sPath: str | PathLike[str]) -> bool:
        """Writes the form to a file, whole or not at all; False when it cannot, for the reason in
        `Platform.LastFileError`."""

    def __call__(self, *index: Any) -> FormPages | Any: ...


class FormPages(Items["FormPage"], Protocol):
    """The pages of a form."""

    @property
    def Count(self) -> int:
        """int: The number of pages."""

    def Item(self, Index: Any) -> FormPage | Any:
        """The page at a position; that there is none is a failure."""

    def Add(self) -> FormPage | Any:
        """Adds a new page at the end and gives it."""


class FormPage(Reference, Protocol):
    """One page of a form."""

    @property
    def Regions(self) -> FormRegions | Any:
        """FormRegions | Any: The regions of the page."""

    def __call__(self, *index: Any) -> FormRegions | Any: ...


class FormRegions(Items["FormRegion"], Protocol):
    """The regions of a page."""

    @property
    def Count(self) -> int:
        """int: The number of regions."""

    def Add(self, oRegion: Any, vOption1: Any = MISSING, vOption2: Any = MISSING) -> int:
        """Adds a region at the end and gives its position; one that stands on a page already is a failure.

        vOption1: plays no part
        vOption2: plays no part
        """

    def Item(self, Index: Any) -> FormRegion | Any:
        """The region at a position; that there is none is a failure."""

    def AddNew(self) -> FormRegion | Any:
        """Adds a new region at the end and gives it."""


class FormRegion(Reference, Protocol):
    """One region of a form.

    Made by `hedro34.create("HEDRO34.FormRegion")`.
    """

    @property
    def Questions(self) -> FormQuestions | Any:
        """FormQuestions | Any: The fields of the region."""

    @property
    def RegionKind(self) -> int:
        """int: 1 for a region whose choices a merge may rewrite, 2 for one that a merge added; others are kept."""

    @RegionKind.setter
    def RegionKind(self, value: int) -> None: ...

    @property
    def ResponseKind(self) -> int:
        """int: 1, 4 or 6 where a merge maintains the choices of the fields, 3 in a region that it added; others are
        kept."""

    @ResponseKind.setter
    def ResponseKind(self, value: int) -> None: ...

    @property
    def ValueKind(self) -> int:
        """int: The kind of the values: 1, or anything else for the other kind."""

    @ValueKind.setter
    def ValueKind(self, value: int) -> None: ...

    @property
    def QuestionCount(self) -> int:
        """int: The number of fields of the region."""

    @property
    def Name(self) -> str:
        """str: The name of the region, also for its fields without one."""

    @Name.setter
    def Name(self, value: str) -> None: ...

    @property
    def GroupNumber(self) -> int:
        """int: 0 for a region that stands alone; one with the number of the region just before continues that one."""

    @GroupNumber.setter
    def GroupNumber(self, value: int) -> None: ...

    @property
    def SubjectiveRegion(self) -> bool:
        """bool: Whether the region is for a subjective question."""

    @SubjectiveRegion.setter
    def SubjectiveRegion(self, value: bool) -> None: ...

    def __call__(self, *index: Any) -> FormQuestions | Any: ...


class FormQuestions(Items["FormQuestion"], Protocol):
    """The fields of a region."""

    @property
    def Count(self) -> int:
        """int: The number of fields."""

    def Item(self, Index: Any) -> FormQuestion | Any:
        """The field at a position; that there is none is a failure."""

    def Add(self) -> FormQuestion | Any:
        """Adds a new field at the end and gives it."""


class FormQuestion(Reference, Protocol):
    """One field of a form."""

    @property
    def QuestionText(self) -> str:
        """str: The text of the field."""

    @QuestionText.setter
    def QuestionText(self, value: str) -> None: ...

    @property
    def ItemOption(self) -> int:
        """int: An option that a merge hands to the document, not interpreted."""

    @ItemOption.setter
    def ItemOption(self, value: int) -> None: ...

    @property
    def Graded(self) -> bool:
        """bool: Whether the field is graded and takes a question of the test."""

    @Graded.setter
    def Graded(self, value: bool) -> None: ...

    @property
    def CorrectPoints(self) -> float:
        """float: Points for a correct response; 1 in a new field."""

    @CorrectPoints.setter
    def CorrectPoints(self, value: float) -> None: ...

    @property
    def IncorrectPoints(self) -> float:
        """float: Points for an incorrect response; 0 in a new field."""

    @IncorrectPoints.setter
    def IncorrectPoints(self, value: float) -> None: ...

    @property
    def NoResponsePoints(self) -> float:
        """float: Points for no response; 0 in a new field."""

    @NoResponsePoints.setter
    def NoResponsePoints(self, value: float) -> None: ...

    @property
    def ChoiceLabels(self) -> FormChoiceList | Any:
        """FormChoiceList | Any: What the choices are called on the form; the list itself, not a copy."""

    @ChoiceLabels.setter
    def ChoiceLabels(self, value: FormChoiceList | Any) -> None: ...

    @property
    def ChoiceValues(self) -> FormChoiceList | Any:
        """FormChoiceList | Any: What each choice records; 1, 2 and so on for the labels, as long as no list was
        assigned."""

    @ChoiceValues.setter
    def ChoiceValues(self, value: FormChoiceList | Any) -> None: ...

    @property
    def ScaleOption(self) -> int:
        """int: An option that a merge hands to the document, not interpreted."""

    @ScaleOption.setter
    def ScaleOption(self, value: int) -> None: ...

    @property
    def SubjectiveQuestion(self) -> bool:
        """bool: Whether the field is for a subjective question."""

    @SubjectiveQuestion.setter
    def SubjectiveQuestion(self, value: bool) -> None: ...

    @property
    def MultiplesAllowed(self) -> int:
        """int: Above 0 when more than one choice may be marked; a merge writes 1 or 0."""

    @MultiplesAllowed.setter
    def MultiplesAllowed(self, value: int) -> None: ...

    def FieldNumber(self, bOption: bool = True) -> int:
        """The number of the field over pages, regions and fields, from 1; 0 for one in no template.

        bOption: plays no part
        """

    @property
    def Name(self) -> str:
        """str: The name of the field; empty when the name of its region stands for it."""

    @Name.setter
    def Name(self, value: str) -> None: ...


class FormChoiceList(Items[str], Protocol):
    """The choice labels or choice values of a field.

    Made by `hedro34.create("HEDRO34.FormChoiceList")`.
    """

    @property
    def Count(self) -> int:
        """int: The number of choices."""

    def Item(self, Index: Any) -> str:
        """The text at a position; that there is none is a failure."""

    def __setitem__(self, index: Any, value: str) -> None: ...

    def AsArray(self, lLowerBound: int = 1) -> Array[str]:
        """The texts as an array from `lLowerBound` up; without bounds when there are none."""

    def Add(self, sText: str) -> None:
        """Adds a text at the end."""


class DataDocument(Reference, Protocol):
    """The default data document, loaded from and saved to a file.

    Made by `hedro34.create("HEDRO34.DataDocument")`.
    """

    @property
    def Questions(self) -> DataQuestions | Any:
        """DataQuestions | Any: The questions: one for each field number of the form, then the subjective ones that a
        merge added."""

    @property
    def Versions(self) -> DataVersions | Any:
        """DataVersions | Any: The orders and identifiers of the versions of the test."""

    @property
    def Objectives(self) -> DataObjectives | Any:
        """DataObjectives | Any: The objectives; position 1 holds the default one."""

    def Clear(self) -> None:
        """Empties the document; what of it somebody else holds keeps its content."""

    def Load(self, sPath: str | PathLike[str]) -> bool:
        """Replaces the content by that of a file; False when it cannot, for the reason in `Platform.LastFileError`."""

    @property
    def Description(self) -> str:
        """str: A description of the document."""

    @Description.setter
    def Description(self, value: str) -> None: ...

    @property
    def Notes(self) -> str:
        """str: Notes on the document."""

    @Notes.setter
    def Notes(self, value: str) -> None: ...

    @property
    def DocumentKind(self) -> int:
        """int: The kind of the document; 0 in a new one, 1 after a merge."""

    @DocumentKind.setter
    def DocumentKind(self, value: int) -> None: ...

    @property
    def PageCount(self) -> int:
        """int: The number of pages of the form."""

    @PageCount.setter
    def PageCount(self, value: int) -> None: ...

    def PrepareDefaults(self) -> None:
        """Adds the default objective, which has no name, when there are no objectives."""

    def Save(self, sPath: str | PathLike[str]) -> bool:
        """Writes the document to a file, whole or not at all; False when it cannot, for the reason in
        `Platform.LastFileError`."""

    def __call__(self, *index: Any) -> DataQuestions | Any: ...


class DataQuestions(Items["DataQuestion"], Protocol):
    """The questions of a document, one for each field of its form."""

    @property
    def Count(self) -> int:
        """int: The number of questions."""

    def Add(self, oQuestion: Any) -> None:
        """Adds a question at the end."""

    def Item(self, Index: Any) -> DataQuestion | Any:
        """The question at a position; that there is none is a failure."""

    def AddNew(self) -> DataQuestion | Any:
        """Adds a new question at the end and gives it."""


class DataQuestion(Reference, Protocol):
    """One question of a document.

    Made by `hedro34.create("HEDRO34.DataQuestion")`.
    """

    @property
    def ChoiceLabels(self) -> DataStrings | Any:
        """DataStrings | Any: The labels of the choices in order, such as A, B."""

    @property
    def ChoiceValues(self) -> DataStrings | Any:
        """DataStrings | Any: The value of each choice, in the order of the labels."""

    @property
    def ObjectiveFlags(self) -> DataObjectiveFlags | Any:
        """DataObjectiveFlags | Any: One flag for each objective of the document, at the same positions."""

    @property
    def AnswerKey(self) -> DataStrings | Any:
        """DataStrings | Any: The correct answers as labels in the first entry: B, or (A,C) for several."""

    @property
    def NumericAnswerKey(self) -> DataStrings | Any:
        """DataStrings | Any: The correct answers as numbers in the first entry: 2, or (1,3) for several."""

    @property
    def Name(self) -> str:
        """str: The name of the field."""

    @Name.setter
    def Name(self, value: str) -> None: ...

    @property
    def QuestionText(self) -> str:
        """str: The text of the question."""

    @QuestionText.setter
    def QuestionText(self, value: str) -> None: ...

    @property
    def Graded(self) -> bool:
        """bool: Whether the question is graded."""

    @Graded.setter
    def Graded(self, value: bool) -> None: ...

    @property
    def ItemOption(self) -> int:
        """int: The option of that name of the field, not interpreted."""

    @ItemOption.setter
    def ItemOption(self, value: int) -> None: ...

    @property
    def ValueKind(self) -> int:
        """int: The kind of the values: 1, or 2 for the other kind."""

    @ValueKind.setter
    def ValueKind(self, value: int) -> None: ...

    @property
    def TextValue(self) -> str:
        """str: A text that is kept and not interpreted."""

    @TextValue.setter
    def TextValue(self, value: str) -> None: ...

    @property
    def FloatValue(self) -> float:
        """float: A number that is kept and not interpreted."""

    @FloatValue.setter
    def FloatValue(self, value: float) -> None: ...

    @property
    def MultiplesAllowed(self) -> int:
        """int: Above 0 when more than one choice may be marked."""

    @MultiplesAllowed.setter
    def MultiplesAllowed(self, value: int) -> None: ...

    @property
    def ScaleOption(self) -> int:
        """int: The option of that name of the field, not interpreted."""

    @ScaleOption.setter
    def ScaleOption(self, value: int) -> None: ...

    @property
    def Subjective(self) -> bool:
        """bool: Whether it is a subjective question."""

    @Subjective.setter
    def Subjective(self, value: bool) -> None: ...

    @property
    def CorrectAnswerCount(self) -> int:
        """int: The number of correct answers."""

    @CorrectAnswerCount.setter
    def CorrectAnswerCount(self, value: int) -> None: ...

    @property
    def CorrectAnd(self) -> bool:
        """bool: Whether all correct answers must be marked; True in a new question."""

    @CorrectAnd.setter
    def CorrectAnd(self, value: bool) -> None: ...

    @property
    def CorrectPoints(self) -> float:
        """float: Points for a correct response; 1 in a new question."""

    @CorrectPoints.setter
    def CorrectPoints(self, value: float) -> None: ...

    @property
    def IncorrectPoints(self) -> float:
        """float: Points for an incorrect response; 0 in a new question."""

    @IncorrectPoints.setter
    def IncorrectPoints(self, value: float) -> None: ...

    @property
    def NoResponsePoints(self) -> float:
        """float: Points for no response; 0 in a new question."""

    @NoResponsePoints.setter
    def NoResponsePoints(self, value: float) -> None: ...

    @property
    def SubjectivePoints(self) -> float:
        """float: Points of a subjective question; 0 in a new question."""

    @SubjectivePoints.setter
    def SubjectivePoints(self, value: float) -> None: ...

    @property
    def Difficulty(self) -> str:
        """str: The difficulty in words, not interpreted."""

    @Difficulty.setter
    def Difficulty(self, value: str) -> None: ...

    @property
    def Reference(self) -> str:
        """str: A reference in words, not interpreted."""

    @Reference.setter
    def Reference(self, value: str) -> None: ...

    @property
    def Topic(self) -> str:
        """str: The topic, not interpreted."""

    @Topic.setter
    def Topic(self, value: str) -> None: ...

    @property
    def Keywords(self) -> str:
        """str: The keywords as one text, not interpreted."""

    @Keywords.setter
    def Keywords(self, value: str) -> None: ...

    @property
    def Miscellaneous(self) -> str:
        """str: Anything else in words, not interpreted."""

    @Miscellaneous.setter
    def Miscellaneous(self, value: str) -> None: ...

    @property
    def Notes(self) -> str:
        """str: Notes on the question, not interpreted."""

    @Notes.setter
    def Notes(self, value: str) -> None: ...


class DataStrings(Items[str], Protocol):
    """A list of texts of a document."""

    @property
    def Count(self) -> int:
        """int: The number of texts."""

    def Add(self, sText: str, vKey: Any = MISSING) -> None:
        """Adds a text at the end; a key in use is a failure.

        vKey: the key of the text, compared in any case
        """

    def AddArray(self, vTexts: list[str] | tuple[str, ...]) -> None:
        """Adds every text of an array in order; an array without bounds adds nothing."""

    def Item(self, Index: Any) -> str:
        """The text at a position or under a key; that there is none is a failure."""

    def AsArray(self) -> Array[str]:
        """The texts as an array from 1; without bounds when there are none."""


class DataObjectives(Items["DataObjective"], Protocol):
    """The objectives of a document, the default one first."""

    @property
    def Count(self) -> int:
        """int: The number of objectives, with the default one."""

    def Add(self, oObjective: Any, vKey: Any = MISSING) -> None:
        """Adds an objective at the end; a key in use is a failure.

        vKey: the key of the objective, compared in any case
        """

    def Item(self, Index: Any) -> DataObjective | Any:
        """The objective at a position or under a key; that there is none is a failure."""

    def Exists(self, vKey: Any) -> bool:
        """Whether there is an objective under a key; for an empty one, whether the default objective is there."""


class DataObjective(Reference, Protocol):
    """One objective of a document.

    Made by `hedro34.create("HEDRO34.DataObjective")`.
    """

    @property
    def Name(self) -> str:
        """str: The text of the objective."""

    @Name.setter
    def Name(self, value: str) -> None: ...

    def __call__(self) -> str: ...


class DataObjectiveFlags(Items["DataObjectiveFlag"], Protocol):
    """The flags of a question, one for each objective."""

    def Add(self, vValue: Any) -> None:
        """Adds a flag at the end.

        vValue: a Boolean; a null counts as False
        """

    def Item(self, lPosition: int) -> DataObjectiveFlag | Any:
        """The flag at a position, from 1; one behind the last is False until it is written."""


class DataObjectiveFlag(Reference, Protocol):
    """One flag of a question."""

    @property
    def Value(self) -> Any:
        """Any: Whether the question tests the objective; a null counts as False."""

    @Value.setter
    def Value(self, value: Any) -> None: ...

    def __call__(self) -> Any: ...


class DataVersions(Reference, Protocol):
    """The versions of a document's test."""

    @property
    def Orders(self) -> DataOrders | Any:
        """DataOrders | Any: One order for each version."""

    @property
    def VersionAnswers(self) -> DataStrings | Any:
        """DataStrings | Any: The identifier of each version, at the position of its order."""

    @property
    def SequenceQuestion(self) -> int:
        """int: The field that holds the version identifier, from 1; 0 for a test in one version."""

    @SequenceQuestion.setter
    def SequenceQuestion(self, value: int) -> None: ...

    @property
    def VersionMode(self) -> int:
        """int: 2 when there are identifiers, as many as orders, so that the orders are read; else 0."""


class DataOrders(Items["DataOrder"], Protocol):
    """The orders of the versions."""

    @property
    def Count(self) -> int:
        """int: The number of orders."""

    def Add(self, oOrder: Any) -> None:
        """Adds an order at the end."""

    def AddDefault(self, lQuestions: int) -> None:
        """Adds the order 1, 2, 3 up to `lQuestions`, at most 10,000,000."""

    def Item(self, Index: Any) -> DataOrder | Any:
        """The order at a position; that there is none is a failure."""


class DataOrder(Items[int], Protocol):
    """The order of one version: positions in the document's questions.

    Made by `hedro34.create("HEDRO34.DataOrder")`.
    """

    @property
    def Count(self) -> int:
        """int: The number of entries."""

    def Item(self, lPosition: int) -> int:
        """The field number to which the field at a position of this version corresponds; that there is none is a
        failure."""

    def FromArray(self, vEntries: list[int] | tuple[int, ...]) -> None:
        """Replaces all entries by those of an array."""


class MessageBox(Reference, Protocol):
    """The library's own message box.

    Made by `hedro34.create("HEDRO34.MessageBox")`.
    """

    def Show(self, sText: str, lFlags: int = 0, sTitle: str = "") -> int:
        """Shows a box, waits for the user and gives the button: 1 for OK, 2 for Cancel.

        lFlags: 0 for OK alone, 1 for OK and Cancel; 16 adds a stop icon, 48 an exclamation icon
        """


class Platform(Reference, Protocol):
    """The services of the library that a host may replace or ask.

    Made by `hedro34.create("HEDRO34.Platform")`.
    """

    @property
    def MessageBox(self) -> Any:
        """Any: The object whose method `Show` shows the boxes; an empty reference puts the library's own back."""

    @MessageBox.setter
    def MessageBox(self, value: Any) -> None: ...

    @property
    def LastFileError(self) -> str:
        """str: Why the last load or save on this thread failed, as path, place and reason; empty when it went well."""

    @property
    def HostFaults(self) -> bool:
        """bool: Whether a native fault inside an object of the host is a failure of the operation that called it; True
        at first."""

    @HostFaults.setter
    def HostFaults(self, value: bool) -> None: ...

    def RegisterClass(self, sName: str, oFactory: Any) -> None:
        """Registers a class of the host in this process; the method `CreateInstance` of `oFactory` gives a new
        object."""

    def RevokeClass(self, sName: str) -> bool:
        """Takes a class of the host out again; gives whether there was one."""

    @property
    def Screen(self) -> Any:
        """Any: The object whose method `SetMousePointer` takes the pointer's shape; empty while the library's own
        serves."""

    @Screen.setter
    def Screen(self, value: Any) -> None: ...

    @property
    def ErrorTexts(self) -> Any:
        """Any: The object whose method `Text` gives the text of an error number; empty while the library's own
        serves."""

    @ErrorTexts.setter
    def ErrorTexts(self, value: Any) -> None: ...

    @property
    def Version(self) -> str:
        """str: The version of the library, as numbers with dots."""


class Report(Reference, Protocol):
    """The page that a person looks at before the sheets go out: the sheet, its keys, the questions.

    Made by `hedro34.create("HEDRO34.Report")`.
    """

    @property
    def Document(self) -> DataDocument | Any:
        """DataDocument | Any: The data document that the page is about; that there is none is a failure."""

    @Document.setter
    def Document(self, value: DataDocument | Any) -> None: ...

    @property
    def Form(self) -> FormTemplate | Any:
        """FormTemplate | Any: The merged form, whose pages are drawn; without one the fields stand one after the
        other."""

    @Form.setter
    def Form(self, value: FormTemplate | Any) -> None: ...

    @property
    def Title(self) -> str:
        """str: The heading; when empty, the title of the first test or the description of the document."""

    @Title.setter
    def Title(self, value: str) -> None: ...

    def AddTest(self, oTest: clsHEDROTest) -> None:
        """Adds a test of the merge, the first version first: the page has its choices and what was left out."""

    def AddMessage(self, sText: str) -> None:
        """Adds what was said on the way, such as the text of a box."""

    @property
    def Page(self) -> str:
        """str: The page: an HTML text that stands alone, without a script."""

    def Save(self, sPath: str | PathLike[str]) -> bool:
        """Writes the page to a file, whole or not at all; False when it cannot, for the reason in
        `Platform.LastFileError`."""


class Create(Protocol):
    """`hedro34.create`, with the class of what it gives."""

    @overload
    def __call__(
        self, name: Literal["HEDRO34.clsHEDRO", "clsHEDRO"], library: Any = ...
    ) -> clsHEDRO: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.clsHEDROTest", "clsHEDROTest"], library: Any = ...
    ) -> clsHEDROTest: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.clsHEDROTestQuestion", "clsHEDROTestQuestion"], library: Any = ...
    ) -> clsHEDROTestQuestion: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.clsHEDROTestStrings", "clsHEDROTestStrings"], library: Any = ...
    ) -> clsHEDROTestStrings: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.clsHEDROTestCorrect", "clsHEDROTestCorrect"], library: Any = ...
    ) -> clsHEDROTestCorrect: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.clsHEDROTestSequence", "clsHEDROTestSequence"], library: Any = ...
    ) -> clsHEDROTestSequence: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.FormTemplate", "FormTemplate"], library: Any = ...
    ) -> FormTemplate: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.FormRegion", "FormRegion"], library: Any = ...
    ) -> FormRegion: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.FormChoiceList", "FormChoiceList"], library: Any = ...
    ) -> FormChoiceList: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.DataDocument", "DataDocument"], library: Any = ...
    ) -> DataDocument: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.DataQuestion", "DataQuestion"], library: Any = ...
    ) -> DataQuestion: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.DataObjective", "DataObjective"], library: Any = ...
    ) -> DataObjective: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.DataOrder", "DataOrder"], library: Any = ...
    ) -> DataOrder: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.MessageBox", "MessageBox"], library: Any = ...
    ) -> MessageBox: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.Platform", "Platform"], library: Any = ...
    ) -> Platform: ...

    @overload
    def __call__(
        self, name: Literal["HEDRO34.Report", "Report"], library: Any = ...
    ) -> Report: ...

    @overload
    def __call__(self, name: str, library: Any = ...) -> Any: ...
