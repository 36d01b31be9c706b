// The member tables, names, values and identifiers of the component, frozen: a host that was built against them must find
// them in every later library. A change here breaks hosts.
#include <map>
#include <set>
#include <sstream>

#include "hedro34/component/classes.h"
#include "hedro34/component/identifier.h"
#include "tests/support.h"

namespace hedro34::testing {
namespace {

std::string ascii(StringView text) { return to_utf8(text); }

std::string type_of(const ValueType& type) {
  static const char* const names[] = {"",     "Boolean", "Int16",  "Int32", "Float",   "Double",
                                      "Text", "Variant", "Object", "Texts", "Numbers", "Enumeration"};
  return type.name.empty() ? names[static_cast<std::size_t>(type.kind)] : ascii(type.name);
}

// name: T     a property that is only read            name(arguments) T   a method
// name:= T    one that is assigned by value           *                   the default member
// name:& T    one that is assigned by reference       &argument           passed by reference
std::string line_of(const Member& member, bool is_default) {
  std::string line = (is_default ? "*" : "") + ascii(member.name);
  std::string arguments;
  for (std::size_t i = 0; i < member.count; ++i) {
    const Argument& argument = member.arguments[i];
    std::string text = (argument.by_reference ? "&" : "") + ascii(argument.name) + " " + type_of(argument.type);
    if (argument.optional && !argument.by_reference) {
      if (argument.type.kind == Kind::Text) text += argument.text == u"\t" ? " = tab" : " = " + ascii(argument.text);
      if (argument.type.kind == Kind::Boolean) text += argument.number != 0 ? " = True" : " = False";
      if (argument.type.kind == Kind::Int32) text += " = " + std::to_string(argument.number);
    }
    arguments += (i > 0 ? ", " : "") + (argument.optional ? "[" + text + "]" : text);
  }
  using namespace binary;
  if (member.kinds == DISPATCH_METHOD) {
    const std::string type = type_of(member.type);
    return line + "(" + arguments + ")" + (type.empty() ? "" : " " + type);
  }
  if (!arguments.empty()) line += "(" + arguments + ")";
  const bool by_value = member.kinds == (DISPATCH_PROPERTYGET | DISPATCH_PROPERTYPUT);
  const bool by_reference = member.kinds == (DISPATCH_PROPERTYGET | DISPATCH_PROPERTYPUTREF);
  if (!by_value && !by_reference && member.kinds != DISPATCH_PROPERTYGET) return line + " of an impossible kind";
  return line + (by_value ? ":= " : by_reference ? ":& " : ": ") + type_of(member.type);
}

// The rows of a text, which stand on lines of their own or behind "; ".
Lines lines_of(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    for (std::size_t at = 0; at < line.size();) {
      const std::size_t end = std::min(line.find("; ", at), line.size());
      lines.push_back(line.substr(at, end - at));
      at = end + 2;
    }
  }
  return lines;
}

TEST(ComponentTables, MembersAreFrozen) {
  const char* const frozen = R"(
create clsHEDRO
TemplateIn:& TIBTemplate; TemplateOut:& TIBTemplate; Tests:& clsHEDROTests; WENKTD:& WENKtdDocument
RemoveInvalid([lMaxQuestions Int32 = 0]) Boolean; Merge() Boolean; Verbose:= Boolean; ValidTestVersions() Boolean
SequenceQuestion:= Int32; SetError(&oErr Object) Boolean
create clsHEDROTest
Questions:& clsHEDROTestQuestions; Sequences:& clsHEDROTestSequences; MultipleChoiceOddScale:& clsHEDROTestStrings
MultipleChoiceEvenScale:& clsHEDROTestStrings; TrueFalseScale:& clsHEDROTestStrings; YesNoScale:& clsHEDROTestStrings
Title:= Text; Version:= Text; Notes:= Text; CreatedBy:= Text; TeacherID:= Text; Source:= HEDROTestSourceType
QuestionType(vType Variant) HEDROTestQuestionType; Clear(); SetError(&oErr Object) Boolean
LoadKTD(sKTDFile Text) Boolean
LoadXML(sExamViewXMLFile Text, [bOddDistractorsOnly Boolean = False], [&bUserCancelled Boolean], [bVerbose Boolean = True]) Boolean
NumObjectives: Int32; ID:= Text; ImportObjectives:= HEDROTestImportObjectives; StateAbbreviation:= Text
UserDefined:= Boolean; Description:= Text; Copy() clsHEDROTest
QuestionScale(vQuestionIndex Variant, [vIsOddOverride Variant]) clsHEDROTestStrings
AddSequence(&oTestVersion clsHEDROTest) Boolean
CorrectAnswersAsString(vQuestionIndex Variant, [sDelimiter Text = ,], [bEnclosedByParens Boolean = True], [bNumeric Boolean = False]) Text
CorrectAnswersAsArray(vQuestionIndex Variant, [bAsString Boolean = False]) Texts
create clsHEDROTestQuestion
LearningObjectives:& clsHEDROTestStrings; Answers:& clsHEDROTestStrings; CorrectAnswers:& clsHEDROTestCorrect
CorrectPoints:= Float; IncorrectPoints:= Float; NoResponsePoints:= Float; SubjectivePoints:= Float
CorrectAnd:= Boolean; MultiplesPermitted: Boolean; QuestionText:= Text; Difficulty:= Text; Reference:= Text
Topic:= Text; Keywords:= Text; Miscellaneous:= Text; Notes:= Text; ID:= Text; QuestionType:= HEDROTestQuestionType
Copy() clsHEDROTestQuestion
create clsHEDROTestStrings
Count: Int32; Add(Item Text, [Key Variant], [Before Variant], [After Variant]) Boolean; AddArray(&Value Texts) Boolean
AddDelimitedString(Items Text, [sDelimiter Text = tab]) Boolean; Remove(Index Variant) Boolean; RemoveAll() Boolean
*Item(Index Variant):= Text; Exists(Index Variant) Boolean; AsString([sDelimiter Text = tab]) Text
AsArray([lLowerBound Int32 = 1]) Texts; Copy() clsHEDROTestStrings
create clsHEDROTestCorrect
Count: Int32; Add(Item Int16, [Before Variant], [After Variant]) Boolean; Remove(Index Variant) Boolean
RemoveAll() Boolean; *Item(Index Int16): Int16; Exists(Index Variant) Boolean; Copy() clsHEDROTestCorrect
GetBitWiseRepresentation() Int32; ConvertBitWiseRepresentation(BitWiseValue Int32)
create clsHEDROTestSequence
*Order:& clsHEDROTestSequenceOrder; Answer:= Text; Copy(&oQuestions clsHEDROTestQuestions) clsHEDROTestSequence
only inside clsHEDROTests
Count: Int32; Add(Item clsHEDROTest, [Key Variant], [Before Variant], [After Variant]); Remove(Index Variant)
RemoveAll(); *Item(Index Variant): clsHEDROTest; Exists(Index Variant) Boolean
only inside clsHEDROTestQuestions
Count: Int32; Add(oQuestion clsHEDROTestQuestion, [Before Variant], [After Variant]) Boolean
Remove(Index Variant) Boolean; RemoveAll() Boolean; *Item(Index Variant): clsHEDROTestQuestion
Exists(Index Variant) Boolean; TypeCount(eQuestionType HEDROTestQuestionType) Int32
only inside clsHEDROTestSequences
Count: Int32; Add(oSequence clsHEDROTestSequence) Boolean
AddDefault(&oQuestions clsHEDROTestQuestions, [sAnswer Text = A]) Boolean; Remove(vKey Variant) Boolean
RemoveAll() Boolean; *Item(vKey Variant): clsHEDROTestSequence; Exists(vKey Variant) Boolean
only inside clsHEDROTestSequenceOrder
Count: Int32; Add(sQuestionID Text); Remove(vKey Variant); RemoveAll(); *Item(vKey Variant): Int32
Exists(vKey Variant) Boolean; AsArray([lLowerBound Int32 = 1]) Numbers; AsString([sDelimiter Text = tab]) Text
)";
  Lines found;
  for (const ClassTable* const table : library_classes()) {
    found.push_back((table->create != nullptr ? "create " : "only inside ") + ascii(table->name));
    for (std::size_t i = 0; i < table->members.size(); ++i) {
      found.push_back(line_of(table->members[i], static_cast<int>(i) == table->default_member));
    }
  }
  const Lines expected = lines_of(frozen);
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(found[i], expected[i]) << "row " << i;
}

TEST(ComponentTables, EnumerationsAreFrozen) {
  const std::map<std::string, std::string> frozen = {
      {"HEDROTestSourceType", "Unknown -1 ExamView 0 KTD 1 NGT 2"},
      {"HEDROTestImportObjectives", "None 0 Learning 1 Local 2 State 4 National 8"},
      {"HEDROTestQuestionType",
       "Unknown -1 TrueFalse 1 YesNo 2 MultipleChoice 3 ModifiedTrueFalse 4 NumericResponse 5 Completion 6 Matching 7 "
       "ShortAnswer 8 Problem 9 Essay 10 Case 11 Subjective 12 Other 13 Bimodal 14"}};
  std::map<std::string, std::string> found;
  for (const EnumerationTable& table : library_enumerations()) {
    std::string& values = found[ascii(table.name)];
    for (const Enumerator& value : table.values) {
      EXPECT_TRUE(value.name.starts_with(table.name)) << ascii(value.name);
      if (!values.empty()) values += " ";
      values += ascii(value.name.substr(table.name.size())) + " " + std::to_string(value.value);
    }
  }
  EXPECT_EQ(found, frozen);
}

TEST(ComponentTables, IdentifiersAreFrozen) {
  const char* const frozen = R"(
HEDRO34 {6AAE3623-6B45-492C-AAEE-413365FB2060} 15.0 1033
clsHEDRO {1A11377D-4B0A-4D1C-958B-625FA5F427D6} {86CE3263-8E8A-49DA-8921-E64E3F121F2A}
clsHEDROTest {BEA4DEBF-AA66-429D-A5E2-9DB91352EFB9} {B2E5BA12-8BED-493F-AC1D-920066BBB017}
clsHEDROTestQuestion {204ED3FE-972F-493D-A9A3-3230935686BA} {307C4A67-53FE-44FA-A6AF-F9C2C93EBD07}
clsHEDROTestStrings {1862B1D1-8D70-446F-AAFC-1C97D0C645FF} {829401B7-A81C-4665-A5F4-2718BBE6ABFC}
clsHEDROTestCorrect {5A65F595-F582-4A49-93D4-3B55C7DA83D4} {0B85C954-7DCA-47B9-8C08-112607A2DC69}
clsHEDROTestSequence {DCC2C761-DC96-4A81-B00B-7BA17B0DA24A} {6E802B54-5A17-4F0D-918D-FD3871EDFBAA}
clsHEDROTests {EB6F2AAE-DD97-44AB-9758-B25B3637D7AB} {22060BB1-1887-4A7B-972F-143FF9FE3DFE}
clsHEDROTestQuestions {CA99BBCE-CD9D-4332-963E-D2E9FC1A2F19} {CEFABE03-52EF-48D1-AD18-1BC22CF54CFB}
clsHEDROTestSequences {2018E22B-D0BB-49C1-BE83-D0F8B3E6507F} {0537532A-3AC5-4974-839A-8008448B9976}
clsHEDROTestSequenceOrder {F8B238F0-2536-4305-9A0A-22AD17937BC7} {1F8EB3C2-81E5-4265-A188-365EAD9FD1B7}
FormTemplate {C38DB902-4832-4ED4-A513-EDD8E849C2AD} {39239DF2-5A1D-42F0-BD85-A25AEB79DBF9}
FormPages {4F4FFB00-B3F0-4157-AB44-F614E177D722} {36990728-787B-42EE-8300-460CDE6554E4}
FormPage {3BE1DDD2-5458-4D9E-9A3E-5354C8AAA297} {A4F600A2-9061-4FC4-BB66-1DFAE72EAE3E}
FormRegions {FF67D474-EBF9-476A-94FB-81210E5BDB26} {EA0F6FBE-30B2-49FD-972B-8B8A9B38EDB4}
FormRegion {DAF25D00-4438-4AC4-9CA7-30E2507DE889} {12EDCE0D-41B0-4689-B2E3-696BC5A4D45E}
FormQuestions {B4F69D62-635C-430F-8082-C76F2943EC29} {CB2C96A7-8BDD-4AB7-A884-E32A7B1708D1}
FormQuestion {FF4EB203-44EA-45A7-9FC8-E2263DA00E86} {2E2E8AA3-46FE-4E73-9979-151D6E7E7EA4}
FormChoiceList {F054D9AB-5A7D-4719-BDC1-2E76948AE1E2} {E385C077-D3F6-4279-B1E8-B3DD9170C52F}
DataDocument {14F61729-81BA-4324-84CC-F9D851B6A11B} {5E6BEFC5-DAB0-41DC-B44E-AA359DA5C631}
DataQuestions {A8E0CC83-2276-4D7B-97A8-D8704694FF46} {46A67F86-C9A4-48A9-969A-12014E8C4EF5}
DataQuestion {AF7A33AC-8B85-4ED4-A069-FAD6C3FC4DCB} {4FEBEB2F-0BA9-4D6F-BB67-4817D09CCDDC}
DataStrings {07EDCAA7-95D7-47CD-A678-42228AFD1613} {9DE69851-AA7F-4D83-96FA-CF5E01439E06}
DataObjectives {8E8451BC-D521-4354-9BAA-9EF0F9BCCD96} {1D720628-8901-401D-BF75-7E94B7BFA558}
DataObjective {4B59771A-AC66-48E4-A72B-E60F5A892A9E} {35322CBC-6639-483C-9BF1-EEB96E81050B}
DataObjectiveFlags {4FFE24C2-F652-4B2E-9D77-BC52F5BCEA93} {D780939B-9715-4626-A5B4-F12B367AA2C5}
DataObjectiveFlag {316CBE8A-ED91-4539-A95E-2E51038A7F29} {75BCB70F-BAFD-4EF4-BFD5-A301CD11839F}
DataVersions {77ADFDAA-5C9F-48AB-8972-D8723BC6E98E} {7F9966AC-115E-41D7-9635-A76886268F61}
DataOrders {9A0A8D57-CCFF-4107-8BE5-A36B7BADDF8F} {CE750702-55E3-4FCC-9E6D-C199F65CAD9B}
DataOrder {EF8594F3-6591-4035-8A95-C64E4FF4765D} {DAD94541-DD3B-4D07-B8B1-D4F8BAC2CEC1}
MessageBox {A8DAD435-CC98-41C6-A751-A2558096121C} {CEB66E48-B26B-4B39-937F-ACB8B125CCE7}
Platform {FFC10FFE-B320-44F9-A890-1C52699F318A} {9F14A2C5-E2C3-4ABE-A093-2E460888BA07}
)";
  Lines found = {ascii(type_library_name) + " " + ascii(identifier_text(type_library_id)) + " " +
                 std::to_string(type_library_major) + "." + std::to_string(type_library_minor) + " " +
                 std::to_string(type_library_locale)};
  std::set<std::string> different = {ascii(identifier_text(type_library_id))};
  for (const auto& classes : {library_classes(), service_classes()}) {
    for (const ClassTable* const table : classes) {
      const std::string class_id = ascii(identifier_text(table->class_id));
      const std::string interface_id = ascii(identifier_text(table->interface_id));
      found.push_back(ascii(table->name) + " " + class_id + " " + interface_id);
      different.insert({class_id, interface_id});
      EXPECT_EQ(table_of(table->class_id), table);
    }
  }
  const Lines expected = lines_of(frozen);
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(found[i], expected[i]);
  EXPECT_EQ(different.size(), 2 * found.size() - 1);
}

}  // namespace
}  // namespace hedro34::testing
