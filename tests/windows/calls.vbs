' The classes as VBScript has them: names, arguments, values, errors. cscript //nologo calls.vbs EXAMPLES OUT FAR
' FAR is a folder with biology.xml, its name and path of letters beyond the code page.
' An error that nobody expects ends a script without a word under some hosts: the last line, "passed N", is the sign of success.
Option Explicit
Dim passed, failed, examples, out, far
passed = 0
failed = 0
examples = WScript.Arguments(0)
out = WScript.Arguments(1)
far = WScript.Arguments(2)

Sub Check(what, found, expected)
  If TypeName(found) = TypeName(expected) And CStr(found) = CStr(expected) Then
    passed = passed + 1
  Else
    failed = failed + 1
    WScript.Echo what & ": " & TypeName(found) & " " & found & " instead of " & TypeName(expected) & " " & expected
  End If
End Sub

' The statement before has ended with this error, and left nothing else behind.
Sub CheckError(what, number)
  Dim found
  found = Err.Number
  Err.Clear
  Check what, CLng(found), CLng(number)
End Sub

Dim test, question, strings, sequence, platform, name, ignored

' --- creating -------------------------------------------------------------------------------------------------------------

For Each name In Array("clsHEDRO", "clsHEDROTest", "clsHEDROTestQuestion", "clsHEDROTestStrings", "clsHEDROTestCorrect", _
                       "clsHEDROTestSequence")
  Check name, TypeName(CreateObject("HEDRO34." & name)), name
Next
Set platform = CreateObject("hedro34.PLATFORM")
Set test = CreateObject("HEDRO34.clsHEDROTest")
Set strings = CreateObject("HEDRO34.clsHEDROTestStrings")
Set sequence = CreateObject("HEDRO34.clsHEDROTestSequence")
Check "inner", TypeName(test.Questions) & TypeName(test.Sequences) & TypeName(sequence.Order), _
      "clsHEDROTestQuestionsclsHEDROTestSequencesclsHEDROTestSequenceOrder"
On Error Resume Next
Set ignored = CreateObject("HEDRO34.clsHEDROTst")
CheckError "a class that is not there", 429
Set ignored = CreateObject("HEDRO34.clsHEDROTests")
CheckError "a class that is not created directly", 429
On Error GoTo 0

' --- reading, by position, by name and through default members -------------------------------------------------------------

Check "LoadXML", test.LoadXML(examples & "\biology.xml"), True
Check "Title", test.Title, "Biology 1 Midterm"
Check "in any case", test.tItLe, "Biology 1 Midterm"
Check "Count", CLng(test.Questions.Count), CLng(20)
Set question = test.Questions(1)
Check "Questions(1)", question.ID, "341"
Check "Questions.Item(1)", test.Questions.Item(1).ID, "341"
Check "Questions(key)", test.Questions("841").Topic, "Transport"
Check "Answers(2)", question.Answers(2), "mitochondrion"
Check "of a question that is not held", test.Questions(1).Answers.Item(4), "ribosome"
Check "CorrectAnswers(1)", CLng(question.CorrectAnswers(1)), CLng(2)
Check "one element", test.CorrectAnswersAsString(1), "B"
Check "several", test.CorrectAnswersAsString(10), "(A,C,E)"
Check "arguments", test.CorrectAnswersAsString(10, " ", False, True), "1 3 5"
Check "an argument left out", test.CorrectAnswersAsString(10, , False), "A,C,E"
Check "a key for a number", test.CorrectAnswersAsString("2141"), "(A,C,E)"
Check "QuestionType", CLng(test.QuestionType("mr")), CLng(3)
Check "TypeCount", CLng(test.Questions.TypeCount(1)), CLng(5)
Check "the text of a list", question.Answers.AsString("; "), "nucleus; mitochondrion; Golgi apparatus; ribosome"
Check "no such element", test.Questions(21) Is Nothing, True

' --- writing ---------------------------------------------------------------------------------------------------------------

test.Title = far
Check "text of any kind", test.Title, far
question.CorrectPoints = "2.5"
Check "a text for a number", CDbl(question.CorrectPoints), 2.5
Check "Add", strings.Add("b", "key"), True
Check "Add before", strings.Add("a", , 1), True
Check "Add after a key", strings.Add("c", , , "KEY"), True
strings(1) = "A"
Check "default member written", strings.AsString(","), "A,b,c"
test.TrueFalseScale(2) = "X"
Check "through a property", test.TrueFalseScale.AsString(","), "T,X"
Set test.YesNoScale = strings
Check "an object", test.YesNoScale Is strings, True
Check "Remove", strings.Remove("key") And strings.AsString(",") = "A,c", True
Dim texts(1)
texts(0) = "d"
texts(1) = 5
Check "an array", strings.AddArray(texts) And strings.AddArray(Array("e")), True
Check "what it held", strings.AsString(","), "A,c,d,5,e"
Check "AddDefault", test.Sequences.AddDefault(test.Questions, "Q"), True
Set sequence = test.Sequences("q")
Check "sequence(key)", CLng(sequence("741")), CLng(2)
Check "Order.Count", CLng(sequence.Order.Count), CLng(20)
Check "Copy", test.Copy().Questions(20).ID, test.Questions(20).ID

' --- objects of the script, and arguments by reference -----------------------------------------------------------------------

Class Told
  Public Words
  Public Function Show(text, flags, title)
    Words = Words & flags & " " & title & ": " & Left(text, 12)
    Show = 2 ' Cancel
  End Function
  Public Function RaiseError(number, l1, description, location, s1, s2, s3, s4, l2, s5, s6, s7, flag)
    Words = Words & number & "|" & l1 & "|" & description & "|" & location & "|" & s1 & s2 & s3 & s4 & "|" & l2 & "|" & _
            s5 & s6 & s7 & "|" & flag
    RaiseError = 0
  End Function
  Public Function Take()
    Take = Words
    Words = ""
  End Function
End Class

Dim host, cancelled, version
Set host = New Told
Set platform.MessageBox = host
Check "the script's own object comes back", platform.MessageBox Is host, True
cancelled = False
Check "Cancel", CreateObject("HEDRO34.clsHEDROTest").LoadXML(examples & "\mixed.xml", , cancelled), False
Check "the box", host.Take(), "49 Partial Credit: Warning: One"
Check "bUserCancelled", cancelled, True
Check "SetError", test.SetError(host), True
Check "a question twice", test.Questions.Add(question), False
Check "the failure", host.Take(), "457|0|This key is already associated with an element of this collection|" & _
      "HEDRO34 - clsHEDROTestQuestions.Add||1||False"
Check "SetError of nothing", test.SetError(Nothing), False
Set platform.MessageBox = Nothing
Check "no box of the script", platform.MessageBox Is host, False
Check "never set to False", test.LoadXML(examples & "\biology.xml", , cancelled), True
Check "bUserCancelled afterwards", cancelled, True
Set version = CreateObject("HEDRO34.clsHEDROTest")
Check "AddSequence of an empty test", test.AddSequence(version), False
Check "the argument afterwards", TypeName(version), "clsHEDROTest"

' --- errors ----------------------------------------------------------------------------------------------------------------

On Error Resume Next
test.Nothing
CheckError "a method that is not there", 438
ignored = test.Titel
CheckError "a property that is not there", 438
test.Titel = "x"
CheckError "written", 438
test.NumObjectives = 1
CheckError "read only", 438
ignored = test.CorrectAnswersAsString(1, 2, 3, 4, 5)
CheckError "too many", 450
test.Title(1) = "x"
CheckError "an argument for a text", 450
ignored = test.CorrectAnswersAsString()
CheckError "too few", 449
ignored = test.LoadXML("x.xml", "maybe")
CheckError "no Boolean", 13
test.Source = "x"
CheckError "no number", 13
ignored = test.AddSequence(strings)
CheckError "an object of another class", 13
ignored = strings.AddArray("x")
CheckError "no array", 13
Set test.Questions = strings
CheckError "assigned", 13
test.Source = 3000000000
CheckError "too large", 6
test.ImportObjectives = 1
CheckError "no error", 0
On Error GoTo 0

' --- files -----------------------------------------------------------------------------------------------------------------

Dim form
Set form = CreateObject("HEDRO34.FormTemplate")
Check "no such file", test.LoadXML(out & "\missing.xml"), False
Check "its reason", platform.LastFileError, out & "\missing.xml: No such file or directory"
Check "a folder", form.Load(out), False
Check "its reason", platform.LastFileError, out & ": Is a directory"
Check "letters beyond the code page", test.LoadXML(far & "\biology.xml"), True
Check "no reason", platform.LastFileError, ""
Check "Load", form.Load(examples & "\biology.form.json"), True
Check "Save", form.Save(far & ".form.json"), True
Check "Load of it", form.Load(far & ".form.json"), True
Check "the fields", CLng(form.QuestionCount), CLng(29)
Check "Save in no folder", form.Save(out & "\nowhere\x.json"), False
Check "its reason", platform.LastFileError, out & "\nowhere\x.json: the folder does not exist"

If failed = 0 Then WScript.Echo "passed " & passed
WScript.Quit failed
