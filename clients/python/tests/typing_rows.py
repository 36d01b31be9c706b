"""What a strict type checker is to say of uses of the client: nothing, or the kinds of error behind `# error:`."""

from pathlib import Path

import hedro34

test = hedro34.create("HEDRO34.clsHEDROTest")
merge = hedro34.create("clsHEDRO")
form = hedro34.create("FormTemplate")

test.Title = "x"
test.Title = 3  # error: assignment
test.Source = hedro34.HEDROTestSourceType.KTD
test.UserDefined = True
test.NumObjectives = 3  # error: misc
test.Questions = merge.Tests  # error: assignment
test.TrueFalseScale[1] = "T"
test.TrueFalseScale.AddArray(("a", "b"))
test.TrueFalseScale.AddArray("ab")  # error: arg-type
test.Questions[1].CorrectPoints = 2
test.Questions[1].MultiplesPermitted = True  # error: misc
test.Questions[1] = test.Questions[2]  # error: index
test.Titel  # error: attr-defined
test.LoadXML(Path("a.xml"), bUserCancelled=hedro34.ByRef(False), bVerbose=False)
test.LoadXML("a.xml", bUserCancelled=hedro34.MISSING)
test.LoadXML(3)  # error: arg-type
test.LoadXML()  # error: call-arg
test.LoadXML("a.xml", verbose=True)  # error: call-arg
test.AddSequence(form)  # error: arg-type
test.Clear("now")  # error: call-arg

key: str = test.CorrectAnswersAsString("A1", bNumeric=True)
array: hedro34.Array[str] = test.CorrectAnswersAsArray(1)
number: int = test.Questions[1].CorrectAnswers[1]
wrong: int = test.Questions[1].Answers[1]  # error: assignment
for question in test.Questions:
    question.QuestionText.upper()
    question.QuestionText.lift()  # error: attr-defined

merge.TemplateIn = form
merge.TemplateIn = object()  # one of the host's own
merge.Merge = None  # error: assignment
form.Pages.Count = 2  # error: misc
form.PageCount = 2  # error: misc
any_object = hedro34.create("of a name that is read")
any_object.Anything = 1


def count(test: hedro34.types.clsHEDROTest, version: str = hedro34.__version__) -> int:
    return len(test.Questions)


count(merge)  # error: arg-type
try:
    test.Clear()
except hedro34.ArgumentTypeError as error:
    type_error: TypeError = error
    code: int = error.code
except hedro34.ArgumentValueError as error:
    value_error: ValueError = error
