// An error object and a message box written in JScript, and what the library tells them. cscript //nologo objects.js EXAMPLES
// The last line, "passed N", is the sign of success.
var examples = WScript.Arguments(0), passed = 0, failed = 0;

function check(what, found, expected) {
  if (found === expected) {
    ++passed;
  } else {
    ++failed;
    WScript.Echo(what + ": " + found + " instead of " + expected);
  }
}

// --- message box ---------------------------------------------------------------------------------------------------------

var platform = new ActiveXObject("HEDRO34.Platform"), test = new ActiveXObject("HEDRO34.clsHEDROTest");
var boxes = {
  answer: 2,
  shown: "",
  Show: function (text, flags, title) {
    this.shown += flags + " " + title + ": " + text + "\n";
    return this.answer;
  },
  take: function () {
    var taken = this.shown;
    this.shown = "";
    return taken;
  }
};
var partial = "49 Partial Credit: Warning: One or more test questions allow partial credit; however, partial credit is not " +
    "supported. All imported test questions will require that all correct answers be selected in order for the response to " +
    "be considered correct.\n";
platform.MessageBox = boxes;
check("the host's own object comes back", platform.MessageBox === boxes, true);
check("Cancel", test.LoadXML(examples + "\\mixed.xml"), false);
check("its box", boxes.take(), partial);
boxes.answer = 1;
check("OK", test.LoadXML(examples + "\\mixed.xml"), true);
check("again its box", boxes.take(), partial);

// --- error object --------------------------------------------------------------------------------------------------------

var duplicate = "Error# 457: This key is already associated with an element of this collection, Location: HEDRO34 - " +
    "clsHEDROTestQuestions.Add\n";
var errors = {
  told: "",
  RaiseError: function (number) {
    this.told += arguments.length + " arguments, " + number;
    return 0;
  }
};
var questions = test.Questions;
check("a question twice", questions.Add(questions(1)), false);
check("without an error object", boxes.take(), "48 Application Error: " + duplicate);
check("SetError", test.SetError(errors), true);
check("again", questions.Add(questions(1)), false);
check("the failure", errors.told, "13 arguments, 457");
check("no box", boxes.take(), "");
errors.RaiseError = function () {
  throw new Error(70, "the host's own words");
};
questions.Add(questions(1));
check("a failure in the host", boxes.take().split("\r\n").pop(), duplicate);

// --- errors of the script ------------------------------------------------------------------------------------------------

var mistakes = [
  [429, function () { new ActiveXObject("HEDRO34.clsHEDROTst"); }],
  [438, function () { test.Nothing(); }],
  [3, function () { platform.MessageBox = null; }], // no such kind of member, and no object
  [5, function () { test.SetError(null); }]
];
for (var i = 0; i < mistakes.length; ++i) {
  var number = 0;
  try {
    mistakes[i][1]();
  } catch (error) {
    number = error.number & 0xFFFF;
  }
  check("error " + i, number, mistakes[i][0]);
}

platform.MessageBox = new ActiveXObject("HEDRO34.MessageBox");
check("another box", platform.MessageBox === boxes, false);
if (failed === 0) WScript.Echo("passed " + passed);
WScript.Quit(failed);
