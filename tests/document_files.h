// Texts of data documents that several tests start from.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "hedro34/platform/data_document.h"
#include "hedro34/platform/refusal.h"

namespace hedro34::testing::document_files {

// A document with a value of its own in every member.
inline constexpr std::string_view full = R"json({
  "format": "hedro34-ktd",
  "version": 1,
  "description": "Größe",
  "notes": "\"a\"\r\nb",
  "documentKind": -2147483648,
  "pageCount": 2147483647,
  "objectives": ["", "Fractions", "", "Größe"],
  "questions": [
    {
      "name": "Q1",
      "questionText": "1/2 + 1/2 = ?",
      "graded": true,
      "itemOption": -32768,
      "valueKind": 2,
      "textValue": "text",
      "floatValue": 0.1,
      "multiplesAllowed": 32767,
      "scaleOption": 3,
      "subjective": true,
      "correctAnswerCount": 2147483647,
      "correctAnd": false,
      "correctPoints": 2.5,
      "incorrectPoints": -0.25,
      "noResponsePoints": 1e-07,
      "subjectivePoints": 10,
      "difficulty": "d",
      "reference": "r",
      "topic": "t",
      "keywords": "k",
      "miscellaneous": "m",
      "notes": "n",
      "choiceLabels": ["A", "B", "C"],
      "choiceValues": ["1"],
      "answerKey": ["(B,C)"],
      "numericAnswerKey": ["(2,3)", ""],
      "objectiveFlags": [false, true, false, true, true]
    },
    {
      "name": "",
      "questionText": "",
      "graded": false,
      "itemOption": 0,
      "valueKind": 1,
      "textValue": "",
      "floatValue": 0,
      "multiplesAllowed": 0,
      "scaleOption": 0,
      "subjective": false,
      "correctAnswerCount": 0,
      "correctAnd": true,
      "correctPoints": 1,
      "incorrectPoints": 0,
      "noResponsePoints": 0,
      "subjectivePoints": 0,
      "difficulty": "",
      "reference": "",
      "topic": "",
      "keywords": "",
      "miscellaneous": "",
      "notes": "",
      "choiceLabels": [],
      "choiceValues": [],
      "answerKey": [],
      "numericAnswerKey": [],
      "objectiveFlags": []
    }
  ],
  "versions": {
    "sequenceQuestion": 2,
    "versionAnswers": ["A", "b"],
    "orders": [
      [1, 2],
      [2, 1, -7, 2147483647],
      []
    ]
  }
}
)json";

// A new document, written out, with these objectives and questions.
inline std::string plain(const std::string& objectives = "[]", const std::string& questions = "[]") {
  return R"({
  "format": "hedro34-ktd",
  "version": 1,
  "description": "",
  "notes": "",
  "documentKind": 0,
  "pageCount": 0,
  "objectives": )" +
         objectives + R"(,
  "questions": )" +
         questions + R"(,
  "versions": {
    "sequenceQuestion": 0,
    "versionAnswers": [],
    "orders": []
  }
}
)";
}

inline std::string with_members(const std::string& members) {
  return R"({"format":"hedro34-ktd","version":1)" + members + "}";
}
inline std::string with_question(const std::string& members) {
  return with_members(R"(,"questions":[{)" + members + "}]");
}

inline Ref<DataDocument> document_of(std::string_view file) {
  auto document = make<DataDocument>();
  EXPECT_TRUE(document->read(file)) << to_line(last_refusal());
  return document;
}

inline std::string written(DataDocument& document) {
  auto text = document.to_json();
  return text ? *text : to_line(last_refusal());
}

}  // namespace hedro34::testing::document_files
