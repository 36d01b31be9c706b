// The conversion of a data document into a test.
#pragma once

#include "hedro34/documents/WENKtdDocument.h"
#include "hedro34/model/clsHEDROTest.h"

namespace hedro34 {

class DataQuestions;

// Adds a question to the test for each question of the document that is graded or subjective; its `ID` is the position there,
// in decimal. Types come from the choices, correct answers from the key's labels, sequences from the document's orders, and
// the multiple-choice scales from the first multiple-choice questions at an odd and an even position. Subjective questions
// stay only behind the last graded one. False for a null, silently, and after a failure, reported at
// "HEDRO34 - basPublic.BuildTestFromKTD": what was built so far stays in the test.
// `spent` are the questions of that document when nobody else holds them and it is not used again: each is let go once it is
// read, so that the test takes over its memory.
HEDRO34_API bool BuildTestFromKTD(clsHEDROTest* oTest, WENKtdDocument* oKTD, DataQuestions* spent = nullptr);

}  // namespace hedro34
