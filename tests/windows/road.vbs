' The whole road of a merge in VBScript, with one test and with four versions. cscript //nologo road.vbs EXAMPLES OUT
' The last line, "passed N", is the sign of success.
Option Explicit
Dim passed, failed, examples, out
passed = 0
failed = 0
examples = WScript.Arguments(0)
out = WScript.Arguments(1)

Sub Check(what, found, expected)
  If TypeName(found) = TypeName(expected) And CStr(found) = CStr(expected) Then
    passed = passed + 1
  Else
    failed = failed + 1
    WScript.Echo what & ": " & TypeName(found) & " " & found & " instead of " & TypeName(expected) & " " & expected
  End If
End Sub

Function Loaded(file)
  Set Loaded = CreateObject("HEDRO34.clsHEDROTest")
  Loaded.ImportObjectives = 1
  Check file, Loaded.LoadXML(examples & "\" & file), True
End Function

Function Engine(form)
  Set Engine = CreateObject("HEDRO34.clsHEDRO")
  Set Engine.TemplateIn = CreateObject("HEDRO34.FormTemplate")
  Set Engine.TemplateOut = CreateObject("HEDRO34.FormTemplate")
  Set Engine.WENKTD = CreateObject("HEDRO34.DataDocument")
  Check form, Engine.TemplateIn.Load(examples & "\" & form), True
End Function

Function Keys(document, first, last)
  Dim i
  For i = first To last
    Keys = Keys & document.Questions(i).AnswerKey(1) & " "
  Next
End Function

' --- one test --------------------------------------------------------------------------------------------------------------

Dim merge, document, i, version
Set merge = Engine("biology.form.json")
merge.Tests.Add Loaded("biology.xml")
Check "objectives", merge.Tests(1).Questions(1).LearningObjectives.AsString("|"), _
      "Name the organelles|Explain what each organelle does"
Check "RemoveInvalid", merge.RemoveInvalid(), True
Check "ValidTestVersions", merge.ValidTestVersions(), True
Check "Merge", merge.Merge(), True
Check "Save of the form", merge.TemplateOut.Save(out & "\road.form.json"), True
Check "Save of the document", merge.WENKTD.Save(out & "\road.ktd"), True
Set document = CreateObject("HEDRO34.DataDocument")
Check "Load of the document", document.Load(out & "\road.ktd"), True
Check "the document", CLng(document.Questions.Count), CLng(29)
Check "its keys", Keys(document, 6, 25), "B B C C C B B B B (A,C,E) (C,A) (A,C,E) T F F T Y N B T "
Check "a surplus field", document.Questions(26).Graded, False
Check "fields before", CLng(merge.TemplateIn.GradedQuestionCount), CLng(24)
Check "fields after", CLng(merge.TemplateOut.GradedQuestionCount), CLng(20)

' --- four versions ---------------------------------------------------------------------------------------------------------

Set merge = Engine("versions\unit.form.json")
merge.SequenceQuestion = 1
For Each version In Array("a", "b", "c", "d")
  merge.Tests.Add Loaded("versions\unit-" & version & ".xml"), version
Next
Check "RemoveInvalid of all", merge.RemoveInvalid(), True
Check "ValidTestVersions of all", merge.ValidTestVersions(), True
Check "AddDefault", merge.Tests(1).Sequences.AddDefault(merge.Tests(1).Questions, "A"), True
For i = 2 To 4
  Check "AddSequence", merge.Tests(1).AddSequence(merge.Tests(i)), True
Next
Check "the place of 7G5 in D", CLng(merge.Tests("a").Sequences("D").Order("7G5")), CLng(5)
Check "Merge of all", merge.Merge(), True
Check "Save", merge.WENKTD.Save(out & "\versions.ktd"), True

Dim orders, order, found, places
orders = Array("A 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17", "B 1 2 6 9 3 8 4 7 5 12 14 10 13 11 15 16 17", _
               "C 1 2 9 8 7 6 5 4 3 14 13 12 11 10 15 16 17", "D 1 2 4 7 5 3 9 6 8 11 10 14 12 13 15 16 17")
Check "Load of all", document.Load(out & "\versions.ktd"), True
Check "orders", CLng(document.Versions.Orders.Count), CLng(4)
For i = 1 To 4
  Set order = document.Versions.Orders(i)
  found = document.Versions.VersionAnswers(i)
  For places = 1 To order.Count
    found = found & " " & order(places)
  Next
  Check "order " & i, found, orders(i - 1)
Next
Check "keys of all", Keys(document, 3, 14), "B A C D B A (A,B,D) T F T F T "

If failed = 0 Then WScript.Echo "passed " & passed
WScript.Quit failed
