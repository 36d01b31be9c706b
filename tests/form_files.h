// Texts of form files that several tests start from.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "hedro34/platform/form_template.h"
#include "hedro34/platform/refusal.h"

namespace hedro34::testing::form_files {

// A form with a value of its own in every member.
inline constexpr std::string_view full = R"({
  "format": "hedro34-form",
  "version": 1,
  "pages": [
    {
      "regions": [
        {
          "name": "Größe",
          "regionKind": 2147483647,
          "responseKind": -2147483648,
          "valueKind": 3,
          "groupNumber": -32768,
          "subjectiveRegion": true,
          "questions": [
            {
              "name": "Q \"1\"",
              "questionText": "a\\b\tc\r\nd\u0001\u001f€😀/",
              "itemOption": 32767,
              "graded": true,
              "correctPoints": 0.1,
              "incorrectPoints": -2.5,
              "noResponsePoints": 1e+300,
              "choiceLabels": ["A", "", "C"],
              "choiceValues": ["x", "2", ""],
              "scaleOption": 4,
              "subjectiveQuestion": true,
              "multiplesAllowed": -1
            },
            {
              "name": "",
              "questionText": "",
              "itemOption": 0,
              "graded": false,
              "correctPoints": 1,
              "incorrectPoints": 0,
              "noResponsePoints": 0,
              "choiceLabels": [],
              "choiceValues": [],
              "scaleOption": 0,
              "subjectiveQuestion": false,
              "multiplesAllowed": 0
            }
          ]
        }
      ]
    },
    {
      "regions": []
    }
  ]
}
)";

// A file with this one field, or with these members of the form.
inline std::string with_field(const std::string& members) {
  return R"({"format":"hedro34-form","version":1,"pages":[{"regions":[{"questions":[{)" + members + "}]}]}]}";
}
inline std::string with_members(const std::string& members) {
  return R"({"format":"hedro34-form","version":1)" + members + "}";
}
inline std::string repeated(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += (i == 0 ? "" : ",") + std::string(text);
  return result;
}

inline Ref<FormTemplate> form_of(std::string_view file) {
  auto form = make<FormTemplate>();
  EXPECT_TRUE(form->read(file)) << to_line(last_refusal());
  return form;
}

inline std::string written(FormTemplate& form) {
  auto text = form.to_json();
  return text ? *text : to_line(last_refusal());
}

}  // namespace hedro34::testing::form_files
