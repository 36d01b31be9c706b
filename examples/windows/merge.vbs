' The whole road of a merge: loads a test, merges it with a form, saves the merged form and the data document, prints the keys.
'
'   cscript //nologo merge.vbs TEST FORM FORM-OUT DOCUMENT-OUT
'   cscript //nologo merge.vbs biology.xml biology.form.json merged.form.json biology.ktd
'
' Exit codes: 0 done, 1 the library said no, 2 wrong usage, 3 an input cannot be read, 4 an output cannot be written, 5 failures
' were reported on the way and nothing is saved.
Option Explicit

Sub Leave(code, line)
  WScript.Echo "merge.vbs: " & line
  WScript.Quit code
End Sub

' Receives the failures that the library reports, and counts them.
Class ErrorCounter
  Public Count
  Public Function RaiseError(number, l1, description, location, s1, s2, s3, s4, l2, s5, s6, s7, flag)
    Count = Count + 1
    WScript.Echo "failure " & number & ": " & description & ", " & location
    RaiseError = 0
  End Function
End Class

If WScript.Arguments.Count <> 4 Then Leave 2, "usage: merge.vbs TEST FORM FORM-OUT DOCUMENT-OUT"

Dim merge, platform, test, errors, number
On Error Resume Next
Set merge = CreateObject("HEDRO34.clsHEDRO")
If Err.Number <> 0 Then Leave 1, "HEDRO34 cannot be created: register HEDRO34.dll of the width of this script host"
On Error GoTo 0
Set platform = CreateObject("HEDRO34.Platform")
Set errors = New ErrorCounter
merge.SetError errors

Set test = CreateObject("HEDRO34.clsHEDROTest")
test.ImportObjectives = 1 ' the learning objectives
If Not test.LoadXML(WScript.Arguments(0)) Then
  If platform.LastFileError <> "" Then Leave 3, "cannot read the test: " & platform.LastFileError
  Leave 1, WScript.Arguments(0) & " gives no question, or the question of partial credit was answered with Cancel"
End If
merge.Tests.Add test

Set merge.TemplateIn = CreateObject("HEDRO34.FormTemplate")
Set merge.TemplateOut = CreateObject("HEDRO34.FormTemplate")
Set merge.WENKTD = CreateObject("HEDRO34.DataDocument")
If Not merge.TemplateIn.Load(WScript.Arguments(1)) Then Leave 3, "cannot read the form: " & platform.LastFileError

If Not merge.RemoveInvalid() Then Leave 1, "no question is of a kind that a sheet can carry"
If Not merge.Merge() Then Leave 1, "test and form do not go together"
If errors.Count > 0 Then Leave 5, "nothing is saved: a question may be missing and the keys behind it moved up"

If Not merge.TemplateOut.Save(WScript.Arguments(2)) Then Leave 4, "cannot write the form: " & platform.LastFileError
If Not merge.WENKTD.Save(WScript.Arguments(3)) Then Leave 4, "cannot write the document: " & platform.LastFileError

For number = 1 To test.Questions.Count
  WScript.Echo number & ". " & test.CorrectAnswersAsString(number)
Next
WScript.Quit 0
