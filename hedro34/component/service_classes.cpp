#include "hedro34/component/class_table.h"
#include "hedro34/component/classes.h"
#include "hedro34/component/services.h"
#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/model/collection.h"

namespace hedro34 {
namespace {

constexpr Member form_template[] = {
    property<&FormTemplate::Pages>(u"Pages"),
    property<&FormTemplate::PageCount>(u"PageCount"),
    property<&FormTemplate::QuestionCount>(u"QuestionCount"),
    property<&FormTemplate::GradedQuestionCount>(u"GradedQuestionCount"),
    method<&FormTemplate::Clear>(u"Clear"),
    method<&FormTemplate::QuestionNames>(u"QuestionNames", required(u"iFirst"), required(u"iLast"),
                                         optional(u"bOption1", false), optional(u"sDelimiter", tab),
                                         optional(u"bOption2", false)),
    method<&FormTemplate::Copy>(u"Copy", optional(u"bOption", true)),
    method<&FormTemplate::Load>(u"Load", required(u"sPath")),
    method<&FormTemplate::Save>(u"Save", required(u"sPath")),
};
constexpr ClassTable form_template_class = class_table<FormTemplate>(
    {0xC38DB902, 0x4832, 0x4ED4, {0xA5, 0x13, 0xED, 0xD8, 0xE8, 0x49, 0xC2, 0xAD}},
    {0x39239DF2, 0x5A1D, 0x42F0, {0xBD, 0x85, 0xA2, 0x5A, 0xEB, 0x79, 0xDB, 0xF9}}, form_template, u"Pages",
    create<FormTemplate>, u"The default form template, loaded from and saved to a file.");

constexpr Member form_pages[] = {
    property<&FormPages::Count>(u"Count"),
    property<&FormPages::Item>(u"Item", required(u"Index")),
    method<&FormPages::add>(u"Add"),
};
constexpr ClassTable form_pages_class =
    class_table<FormPages>({0x4F4FFB00, 0xB3F0, 0x4157, {0xAB, 0x44, 0xF6, 0x14, 0xE1, 0x77, 0xD7, 0x22}},
                           {0x36990728, 0x787B, 0x42EE, {0x83, 0x00, 0x46, 0x0C, 0xDE, 0x65, 0x54, 0xE4}}, form_pages,
                           u"Item", nullptr, u"The pages of a form.");

constexpr Member form_page[] = {
    property<&FormPage::Regions>(u"Regions"),
};
constexpr ClassTable form_page_class =
    class_table<FormPage>({0x3BE1DDD2, 0x5458, 0x4D9E, {0x9A, 0x3E, 0x53, 0x54, 0xC8, 0xAA, 0xA2, 0x97}},
                          {0xA4F600A2, 0x9061, 0x4FC4, {0xBB, 0x66, 0x1D, 0xFA, 0xE7, 0x2E, 0xAE, 0x3E}}, form_page,
                          u"Regions", nullptr, u"One page of a form.");

constexpr Member form_regions[] = {
    property<&FormRegions::Count>(u"Count"),
    method<&FormRegions::Add>(u"Add", required(u"oRegion"), optional(u"vOption1"), optional(u"vOption2")),
    property<&FormRegions::Item>(u"Item", required(u"Index")),
    method<&FormRegions::add>(u"AddNew"),
};
constexpr ClassTable form_regions_class =
    class_table<FormRegions>({0xFF67D474, 0xEBF9, 0x476A, {0x94, 0xFB, 0x81, 0x21, 0x0E, 0x5B, 0xDB, 0x26}},
                             {0xEA0F6FBE, 0x30B2, 0x49FD, {0x97, 0x2B, 0x8B, 0x8A, 0x9B, 0x38, 0xED, 0xB4}},
                             form_regions, u"Item", nullptr, u"The regions of a page.");

constexpr Member form_region[] = {
    property<&FormRegion::Questions>(u"Questions"),
    property<&FormRegion::RegionKind, &FormRegion::SetRegionKind>(u"RegionKind"),
    property<&FormRegion::ResponseKind, &FormRegion::SetResponseKind>(u"ResponseKind"),
    property<&FormRegion::ValueKind, &FormRegion::SetValueKind>(u"ValueKind"),
    property<&FormRegion::QuestionCount>(u"QuestionCount"),
    property<&FormRegion::Name, &FormRegion::SetName>(u"Name"),
    property<&FormRegion::GroupNumber, &FormRegion::SetGroupNumber>(u"GroupNumber"),
    property<&FormRegion::SubjectiveRegion, &FormRegion::SetSubjectiveRegion>(u"SubjectiveRegion"),
};
constexpr ClassTable form_region_class =
    class_table<FormRegion>({0xDAF25D00, 0x4438, 0x4AC4, {0x9C, 0xA7, 0x30, 0xE2, 0x50, 0x7D, 0xE8, 0x89}},
                            {0x12EDCE0D, 0x41B0, 0x4689, {0xB2, 0xE3, 0x69, 0x6B, 0xC5, 0xA4, 0xD4, 0x5E}}, form_region,
                            u"Questions", create<FormRegion>, u"One region of a form.");

constexpr Member form_questions[] = {
    property<&FormQuestions::Count>(u"Count"),
    property<&FormQuestions::Item>(u"Item", required(u"Index")),
    method<&FormQuestions::add>(u"Add"),
};
constexpr ClassTable form_questions_class =
    class_table<FormQuestions>({0xB4F69D62, 0x635C, 0x430F, {0x80, 0x82, 0xC7, 0x6F, 0x29, 0x43, 0xEC, 0x29}},
                               {0xCB2C96A7, 0x8BDD, 0x4AB7, {0xA8, 0x84, 0xE3, 0x2A, 0x7B, 0x17, 0x08, 0xD1}},
                               form_questions, u"Item", nullptr, u"The fields of a region.");

constexpr Member form_question[] = {
    property<&FormQuestion::QuestionText, &FormQuestion::SetQuestionText>(u"QuestionText"),
    property<&FormQuestion::ItemOption, &FormQuestion::SetItemOption>(u"ItemOption"),
    property<&FormQuestion::Graded, &FormQuestion::SetGraded>(u"Graded"),
    property<&FormQuestion::CorrectPoints, &FormQuestion::SetCorrectPoints>(u"CorrectPoints"),
    property<&FormQuestion::IncorrectPoints, &FormQuestion::SetIncorrectPoints>(u"IncorrectPoints"),
    property<&FormQuestion::NoResponsePoints, &FormQuestion::SetNoResponsePoints>(u"NoResponsePoints"),
    property<&FormQuestion::ChoiceLabels, &FormQuestion::SetChoiceLabels>(u"ChoiceLabels"),
    property<&FormQuestion::ChoiceValues, &FormQuestion::SetChoiceValues>(u"ChoiceValues"),
    property<&FormQuestion::ScaleOption, &FormQuestion::SetScaleOption>(u"ScaleOption"),
    property<&FormQuestion::SubjectiveQuestion, &FormQuestion::SetSubjectiveQuestion>(u"SubjectiveQuestion"),
    property<&FormQuestion::MultiplesAllowed, &FormQuestion::SetMultiplesAllowed>(u"MultiplesAllowed"),
    method<&FormQuestion::FieldNumber>(u"FieldNumber", optional(u"bOption", true)),
    property<&FormQuestion::Name, &FormQuestion::SetName>(u"Name"),
};
constexpr ClassTable form_question_class =
    class_table<FormQuestion>({0xFF4EB203, 0x44EA, 0x45A7, {0x9F, 0xC8, 0xE2, 0x26, 0x3D, 0xA0, 0x0E, 0x86}},
                              {0x2E2E8AA3, 0x46FE, 0x4E73, {0x99, 0x79, 0x15, 0x1D, 0x6E, 0x7E, 0x7E, 0xA4}},
                              form_question, {}, nullptr, u"One field of a form.");

constexpr Member form_choice_list[] = {
    property<&FormChoiceList::Count>(u"Count"),
    property<&FormChoiceList::Item, &FormChoiceList::SetItem>(u"Item", required(u"Index")),
    method<&FormChoiceList::AsArray>(u"AsArray", optional(u"lLowerBound", 1)),
    method<&FormChoiceList::Add>(u"Add", required(u"sText")),
};
constexpr ClassTable form_choice_list_class = class_table<FormChoiceList>(
    {0xF054D9AB, 0x5A7D, 0x4719, {0xBD, 0xC1, 0x2E, 0x76, 0x94, 0x8A, 0xE1, 0xE2}},
    {0xE385C077, 0xD3F6, 0x4279, {0xB1, 0xE8, 0xB3, 0xDD, 0x91, 0x70, 0xC5, 0x2F}}, form_choice_list, u"Item",
    create<FormChoiceList>, u"The choice labels or choice values of a field.");

constexpr Member data_document[] = {
    property<&DataDocument::Questions>(u"Questions"),
    property<&DataDocument::Versions>(u"Versions"),
    property<&DataDocument::Objectives>(u"Objectives"),
    method<&DataDocument::Clear>(u"Clear"),
    method<&DataDocument::Load>(u"Load", required(u"sPath")),
    property<&DataDocument::Description, &DataDocument::SetDescription>(u"Description"),
    property<&DataDocument::Notes, &DataDocument::SetNotes>(u"Notes"),
    property<&DataDocument::DocumentKind, &DataDocument::SetDocumentKind>(u"DocumentKind"),
    property<&DataDocument::PageCount, &DataDocument::SetPageCount>(u"PageCount"),
    method<&DataDocument::PrepareDefaults>(u"PrepareDefaults"),
    method<&DataDocument::Save>(u"Save", required(u"sPath")),
};
constexpr ClassTable data_document_class = class_table<DataDocument>(
    {0x14F61729, 0x81BA, 0x4324, {0x84, 0xCC, 0xF9, 0xD8, 0x51, 0xB6, 0xA1, 0x1B}},
    {0x5E6BEFC5, 0xDAB0, 0x41DC, {0xB4, 0x4E, 0xAA, 0x35, 0x9D, 0xA5, 0xC6, 0x31}}, data_document, u"Questions",
    create<DataDocument>, u"The default data document, loaded from and saved to a file.");

constexpr Member data_questions[] = {
    property<&DataQuestions::Count>(u"Count"),
    method<&DataQuestions::Add>(u"Add", required(u"oQuestion")),
    property<&DataQuestions::Item>(u"Item", required(u"Index")),
    method<&DataQuestions::add>(u"AddNew"),
};
constexpr ClassTable data_questions_class = class_table<DataQuestions>(
    {0xA8E0CC83, 0x2276, 0x4D7B, {0x97, 0xA8, 0xD8, 0x70, 0x46, 0x94, 0xFF, 0x46}},
    {0x46A67F86, 0xC9A4, 0x48A9, {0x96, 0x9A, 0x12, 0x01, 0x4E, 0x8C, 0x4E, 0xF5}}, data_questions, u"Item", nullptr,
    u"The questions of a document, one for each field of its form.");

constexpr Member data_question[] = {
    property<&DataQuestion::ChoiceLabels>(u"ChoiceLabels"),
    property<&DataQuestion::ChoiceValues>(u"ChoiceValues"),
    property<&DataQuestion::ObjectiveFlags>(u"ObjectiveFlags"),
    property<&DataQuestion::AnswerKey>(u"AnswerKey"),
    property<&DataQuestion::NumericAnswerKey>(u"NumericAnswerKey"),
    property<&DataQuestion::Name, &DataQuestion::SetName>(u"Name"),
    property<&DataQuestion::QuestionText, &DataQuestion::SetQuestionText>(u"QuestionText"),
    property<&DataQuestion::Graded, &DataQuestion::SetGraded>(u"Graded"),
    property<&DataQuestion::ItemOption, &DataQuestion::SetItemOption>(u"ItemOption"),
    property<&DataQuestion::ValueKind, &DataQuestion::SetValueKind>(u"ValueKind"),
    property<&DataQuestion::TextValue, &DataQuestion::SetTextValue>(u"TextValue"),
    property<&DataQuestion::FloatValue, &DataQuestion::SetFloatValue>(u"FloatValue"),
    property<&DataQuestion::MultiplesAllowed, &DataQuestion::SetMultiplesAllowed>(u"MultiplesAllowed"),
    property<&DataQuestion::ScaleOption, &DataQuestion::SetScaleOption>(u"ScaleOption"),
    property<&DataQuestion::Subjective, &DataQuestion::SetSubjective>(u"Subjective"),
    property<&DataQuestion::CorrectAnswerCount, &DataQuestion::SetCorrectAnswerCount>(u"CorrectAnswerCount"),
    property<&DataQuestion::CorrectAnd, &DataQuestion::SetCorrectAnd>(u"CorrectAnd"),
    property<&DataQuestion::CorrectPoints, &DataQuestion::SetCorrectPoints>(u"CorrectPoints"),
    property<&DataQuestion::IncorrectPoints, &DataQuestion::SetIncorrectPoints>(u"IncorrectPoints"),
    property<&DataQuestion::NoResponsePoints, &DataQuestion::SetNoResponsePoints>(u"NoResponsePoints"),
    property<&DataQuestion::SubjectivePoints, &DataQuestion::SetSubjectivePoints>(u"SubjectivePoints"),
    property<&DataQuestion::Difficulty, &DataQuestion::SetDifficulty>(u"Difficulty"),
    property<&DataQuestion::Reference, &DataQuestion::SetReference>(u"Reference"),
    property<&DataQuestion::Topic, &DataQuestion::SetTopic>(u"Topic"),
    property<&DataQuestion::Keywords, &DataQuestion::SetKeywords>(u"Keywords"),
    property<&DataQuestion::Miscellaneous, &DataQuestion::SetMiscellaneous>(u"Miscellaneous"),
    property<&DataQuestion::Notes, &DataQuestion::SetNotes>(u"Notes"),
};
constexpr ClassTable data_question_class =
    class_table<DataQuestion>({0xAF7A33AC, 0x8B85, 0x4ED4, {0xA0, 0x69, 0xFA, 0xD6, 0xC3, 0xFC, 0x4D, 0xCB}},
                              {0x4FEBEB2F, 0x0BA9, 0x4D6F, {0xBB, 0x67, 0x48, 0x17, 0xD0, 0x9C, 0xCD, 0xDC}},
                              data_question, {}, create<DataQuestion>, u"One question of a document.");

constexpr Member data_strings[] = {
    property<&DataStrings::Count>(u"Count"),
    method<&DataStrings::Add>(u"Add", required(u"sText"), optional(u"vKey")),
    method<&DataStrings::AddArray>(u"AddArray", by_reference(u"vTexts")),
    property<&DataStrings::Item>(u"Item", required(u"Index")),
    method<&DataStrings::AsArray>(u"AsArray"),
};
constexpr ClassTable data_strings_class =
    class_table<DataStrings>({0x07EDCAA7, 0x95D7, 0x47CD, {0xA6, 0x78, 0x42, 0x22, 0x8A, 0xFD, 0x16, 0x13}},
                             {0x9DE69851, 0xAA7F, 0x4D83, {0x96, 0xFA, 0xCF, 0x5E, 0x01, 0x43, 0x9E, 0x06}},
                             data_strings, u"Item", nullptr, u"A list of texts of a document.");

constexpr Member data_objectives[] = {
    property<&DataObjectives::Count>(u"Count"),
    method<&DataObjectives::Add>(u"Add", required(u"oObjective"), optional(u"vKey")),
    property<&DataObjectives::Item>(u"Item", required(u"Index")),
    method<&DataObjectives::Exists>(u"Exists", required(u"vKey")),
};
constexpr ClassTable data_objectives_class = class_table<DataObjectives>(
    {0x8E8451BC, 0xD521, 0x4354, {0x9B, 0xAA, 0x9E, 0xF0, 0xF9, 0xBC, 0xCD, 0x96}},
    {0x1D720628, 0x8901, 0x401D, {0xBF, 0x75, 0x7E, 0x94, 0xB7, 0xBF, 0xA5, 0x58}}, data_objectives, u"Item", nullptr,
    u"The objectives of a document, the default one first.");

constexpr Member data_objective[] = {
    property<&DataObjective::Name, &DataObjective::SetName>(u"Name"),
};
constexpr ClassTable data_objective_class =
    class_table<DataObjective>({0x4B59771A, 0xAC66, 0x48E4, {0xA7, 0x2B, 0xE6, 0x0F, 0x5A, 0x89, 0x2A, 0x9E}},
                               {0x35322CBC, 0x6639, 0x483C, {0x9B, 0xF1, 0xEE, 0xB9, 0x6E, 0x81, 0x05, 0x0B}},
                               data_objective, u"Name", create<DataObjective>, u"One objective of a document.");

constexpr Member data_objective_flags[] = {
    method<&DataObjectiveFlags::Add>(u"Add", required(u"vValue")),
    property<&DataObjectiveFlags::Item>(u"Item", required(u"lPosition")),
};
constexpr ClassTable data_objective_flags_class = class_table<DataObjectiveFlags>(
    {0x4FFE24C2, 0xF652, 0x4B2E, {0x9D, 0x77, 0xBC, 0x52, 0xF5, 0xBC, 0xEA, 0x93}},
    {0xD780939B, 0x9715, 0x4626, {0xA5, 0xB4, 0xF1, 0x2B, 0x36, 0x7A, 0xA2, 0xC5}}, data_objective_flags, u"Item",
    nullptr, u"The flags of a question, one for each objective.");

constexpr Member data_objective_flag[] = {
    property<&DataObjectiveFlag::Value, &DataObjectiveFlag::SetValue>(u"Value"),
};
constexpr ClassTable data_objective_flag_class =
    class_table<DataObjectiveFlag>({0x316CBE8A, 0xED91, 0x4539, {0xA9, 0x5E, 0x2E, 0x51, 0x03, 0x8A, 0x7F, 0x29}},
                                   {0x75BCB70F, 0xBAFD, 0x4EF4, {0xBF, 0xD5, 0xA3, 0x01, 0xCD, 0x11, 0x83, 0x9F}},
                                   data_objective_flag, u"Value", nullptr, u"One flag of a question.");

constexpr Member data_versions[] = {
    property<&DataVersions::Orders>(u"Orders"),
    property<&DataVersions::VersionAnswers>(u"VersionAnswers"),
    property<&DataVersions::SequenceQuestion, &DataVersions::SetSequenceQuestion>(u"SequenceQuestion"),
    property<&DataVersions::VersionMode>(u"VersionMode"),
};
constexpr ClassTable data_versions_class =
    class_table<DataVersions>({0x77ADFDAA, 0x5C9F, 0x48AB, {0x89, 0x72, 0xD8, 0x72, 0x3B, 0xC6, 0xE9, 0x8E}},
                              {0x7F9966AC, 0x115E, 0x41D7, {0x96, 0x35, 0xA7, 0x68, 0x86, 0x26, 0x8F, 0x61}},
                              data_versions, {}, nullptr, u"The versions of a document's test.");

constexpr Member data_orders[] = {
    property<&DataOrders::Count>(u"Count"),
    method<&DataOrders::Add>(u"Add", required(u"oOrder")),
    method<&DataOrders::AddDefault>(u"AddDefault", required(u"lQuestions")),
    property<&DataOrders::Item>(u"Item", required(u"Index")),
};
constexpr ClassTable data_orders_class =
    class_table<DataOrders>({0x9A0A8D57, 0xCCFF, 0x4107, {0x8B, 0xE5, 0xA3, 0x6B, 0x7B, 0xAD, 0xDF, 0x8F}},
                            {0xCE750702, 0x55E3, 0x4FCC, {0x9E, 0x6D, 0xC1, 0x99, 0xF6, 0x5C, 0xAD, 0x9B}}, data_orders,
                            u"Item", nullptr, u"The orders of the versions.");

constexpr Member data_order[] = {
    property<&DataOrder::Count>(u"Count"),
    property<&DataOrder::Item>(u"Item", required(u"lPosition")),
    method<&DataOrder::FromArray>(u"FromArray", required(u"vEntries")),
};
constexpr ClassTable data_order_class = class_table<DataOrder>(
    {0xEF8594F3, 0x6591, 0x4035, {0x8A, 0x95, 0xC6, 0x4E, 0x4F, 0xF4, 0x76, 0x5D}},
    {0xDAD94541, 0xDD3B, 0x4D07, {0xB8, 0xB1, 0xD4, 0xF8, 0xBA, 0xC2, 0xCE, 0xC1}}, data_order, u"Item",
    create<DataOrder>, u"The order of one version: positions in the document's questions.");

constexpr Member message_box[] = {
    method<&MessageBoxObject::Show>(u"Show", required(u"sText"), optional(u"lFlags", 0), optional(u"sTitle", u"")),
};
constexpr ClassTable message_box_class =
    class_table<MessageBoxObject>({0xA8DAD435, 0xCC98, 0x41C6, {0xA7, 0x51, 0xA2, 0x55, 0x80, 0x96, 0x12, 0x1C}},
                                  {0xCEB66E48, 0xB26B, 0x4B39, {0x93, 0x7F, 0xAC, 0xB8, 0xB1, 0x25, 0xCC, 0xE7}},
                                  message_box, {}, create<MessageBoxObject>, u"The library's own message box.");

constexpr Member platform_object[] = {
    property<&PlatformObject::MessageBox, &PlatformObject::SetMessageBox>(u"MessageBox"),
    property<&PlatformObject::LastFileError>(u"LastFileError"),
    property<&PlatformObject::HostFaults, &PlatformObject::SetHostFaults>(u"HostFaults"),
    method<&PlatformObject::RegisterClass>(u"RegisterClass", required(u"sName"), required(u"oFactory")),
    method<&PlatformObject::RevokeClass>(u"RevokeClass", required(u"sName")),
};
constexpr ClassTable platform_object_class = class_table<PlatformObject>(
    {0xFFC10FFE, 0xB320, 0x44F9, {0xA8, 0x90, 0x1C, 0x52, 0x69, 0x9F, 0x31, 0x8A}},
    {0x9F14A2C5, 0xE2C3, 0x4ABE, {0xA0, 0x93, 0x2E, 0x46, 0x08, 0x88, 0xBA, 0x07}}, platform_object, {},
    create<PlatformObject>, u"The services of the library that a host may replace or ask.");

constexpr const ClassTable* classes[] = {
    &form_template_class,       &form_pages_class,       &form_page_class,
    &form_regions_class,        &form_region_class,      &form_questions_class,
    &form_question_class,       &form_choice_list_class, &data_document_class,
    &data_questions_class,      &data_question_class,    &data_strings_class,
    &data_objectives_class,     &data_objective_class,   &data_objective_flags_class,
    &data_objective_flag_class, &data_versions_class,    &data_orders_class,
    &data_order_class,          &message_box_class,      &platform_object_class};

}  // namespace

std::span<const ClassTable* const> service_classes() noexcept { return classes; }

}  // namespace hedro34
