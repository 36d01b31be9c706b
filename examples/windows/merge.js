// The whole road of a merge: loads a test, merges it with a form, saves the merged form and the data document, prints the keys.
// Message boxes become lines, so that nobody has to be there to press a button.
//
//   cscript //nologo merge.js TEST FORM FORM-OUT DOCUMENT-OUT
//   cscript //nologo merge.js biology.xml biology.form.json merged.form.json biology.ktd
//
// Exit codes: 0 done, 1 the library said no, 2 wrong usage, 3 an input cannot be read, 4 an output cannot be written, 5 failures
// were reported on the way and nothing is saved.

// What ends the script: an exit code and its line.
function Stop(code, line) {
  this.code = code;
  this.line = line;
}

function create(name) {
  try {
    return new ActiveXObject("HEDRO34." + name);
  } catch (error) {
    throw new Stop(1, "HEDRO34." + name + " cannot be created: register HEDRO34.dll of the width of this script host");
  }
}

function run(names) {
  if (names.length !== 4) throw new Stop(2, "usage: merge.js TEST FORM FORM-OUT DOCUMENT-OUT");

  var merge = create("clsHEDRO"), platform = create("Platform"), test = create("clsHEDROTest"), failures = 0;
  platform.MessageBox = {
    Show: function (text, flags, title) {
      WScript.Echo("[" + title + "] " + text);
      return 1; // OK; 2 would be Cancel
    }
  };
  merge.SetError({
    RaiseError: function (number) {
      ++failures;
      WScript.Echo("failure " + number);
      return 0;
    }
  });

  test.ImportObjectives = 1; // the learning objectives
  if (!test.LoadXML(names(0))) {
    if (platform.LastFileError !== "") throw new Stop(3, "cannot read the test: " + platform.LastFileError);
    throw new Stop(1, names(0) + " gives no question");
  }
  merge.Tests.Add(test);

  merge.TemplateIn = create("FormTemplate");
  merge.TemplateOut = create("FormTemplate");
  merge.WENKTD = create("DataDocument");
  if (!merge.TemplateIn.Load(names(1))) throw new Stop(3, "cannot read the form: " + platform.LastFileError);

  if (!merge.RemoveInvalid()) throw new Stop(1, "no question is of a kind that a sheet can carry");
  if (!merge.Merge()) throw new Stop(1, "test and form do not go together");
  if (failures > 0) throw new Stop(5, "nothing is saved: a question may be missing and the keys behind it moved up");

  if (!merge.TemplateOut.Save(names(2))) throw new Stop(4, "cannot write the form: " + platform.LastFileError);
  if (!merge.WENKTD.Save(names(3))) throw new Stop(4, "cannot write the document: " + platform.LastFileError);

  for (var number = 1; number <= test.Questions.Count; ++number) {
    WScript.Echo(number + ". " + test.CorrectAnswersAsString(number));
  }
}

var code = 0;
try {
  run(WScript.Arguments);
} catch (stop) {
  code = stop instanceof Stop ? stop.code : 1;
  WScript.Echo("merge.js: " + (stop instanceof Stop ? stop.line : stop.message));
}
WScript.Quit(code);
