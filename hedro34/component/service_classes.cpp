#include "hedro34/component/classes.h"
#include "hedro34/component/host_document.h"
#include "hedro34/component/host_template.h"
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
constexpr Member form_pages[] = {
    property<&FormPages::Count>(u"Count"),
    property<&FormPages::Item>(u"Item", required(u"Index")),
    method<&FormPages::add>(u"Add"),
};
constexpr Member form_page[] = {
    property<&FormPage::Regions>(u"Regions"),
};
constexpr Member form_regions[] = {
    property<&FormRegions::Count>(u"Count"),
    method<&FormRegions::Add>(u"Add", required(u"oRegion"), optional(u"vOption1"), optional(u"vOption2")),
    property<&FormRegions::Item>(u"Item", required(u"Index")),
    method<&FormRegions::add>(u"AddNew"),
};
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
constexpr Member form_questions[] = {
    property<&FormQuestions::Count>(u"Count"),
    property<&FormQuestions::Item>(u"Item", required(u"Index")),
    method<&FormQuestions::add>(u"Add"),
};
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
constexpr Member form_choice_list[] = {
    property<&FormChoiceList::Count>(u"Count"),
    property<&FormChoiceList::Item, &FormChoiceList::SetItem>(u"Item", required(u"Index")),
    method<&FormChoiceList::AsArray>(u"AsArray", optional(u"lLowerBound", 1)),
    method<&FormChoiceList::Add>(u"Add", required(u"sText")),
};
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
constexpr Member data_questions[] = {
    property<&DataQuestions::Count>(u"Count"),
    method<&DataQuestions::Add>(u"Add", required(u"oQuestion")),
    property<&DataQuestions::Item>(u"Item", required(u"Index")),
    method<&DataQuestions::add>(u"AddNew"),
};
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
constexpr Member data_strings[] = {
    property<&DataStrings::Count>(u"Count"),
    method<&DataStrings::Add>(u"Add", required(u"sText"), optional(u"vKey")),
    method<&DataStrings::AddArray>(u"AddArray", by_reference(u"vTexts")),
    property<&DataStrings::Item>(u"Item", required(u"Index")),
    method<&DataStrings::AsArray>(u"AsArray"),
};
constexpr Member data_objectives[] = {
    property<&DataObjectives::Count>(u"Count"),
    method<&DataObjectives::Add>(u"Add", required(u"oObjective"), optional(u"vKey")),
    property<&DataObjectives::Item>(u"Item", required(u"Index")),
    method<&DataObjectives::Exists>(u"Exists", required(u"vKey")),
};
constexpr Member data_objective[] = {
    property<&DataObjective::Name, &DataObjective::SetName>(u"Name"),
};
constexpr Member data_objective_flags[] = {
    method<&DataObjectiveFlags::Add>(u"Add", required(u"vValue")),
    property<&DataObjectiveFlags::Item>(u"Item", required(u"lPosition")),
};
constexpr Member data_objective_flag[] = {
    property<&DataObjectiveFlag::Value, &DataObjectiveFlag::SetValue>(u"Value"),
};
constexpr Member data_versions[] = {
    property<&DataVersions::Orders>(u"Orders"),
    property<&DataVersions::VersionAnswers>(u"VersionAnswers"),
    property<&DataVersions::SequenceQuestion, &DataVersions::SetSequenceQuestion>(u"SequenceQuestion"),
    property<&DataVersions::VersionMode>(u"VersionMode"),
};
constexpr Member data_orders[] = {
    property<&DataOrders::Count>(u"Count"),
    method<&DataOrders::Add>(u"Add", required(u"oOrder")),
    method<&DataOrders::AddDefault>(u"AddDefault", required(u"lQuestions")),
    property<&DataOrders::Item>(u"Item", required(u"Index")),
};
constexpr Member data_order[] = {
    property<&DataOrder::Count>(u"Count"),
    property<&DataOrder::Item>(u"Item", required(u"lPosition")),
    method<&DataOrder::FromArray>(u"FromArray", required(u"vEntries")),
};
constexpr Member message_box[] = {
    method<&MessageBoxObject::Show>(u"Show", required(u"sText"), optional(u"lFlags", 0), optional(u"sTitle", u"")),
};
constexpr Member platform_object[] = {
    property<&PlatformObject::MessageBox, &PlatformObject::SetMessageBox>(u"MessageBox"),
    property<&PlatformObject::LastFileError>(u"LastFileError"),
    property<&PlatformObject::HostFaults, &PlatformObject::SetHostFaults>(u"HostFaults"),
    method<&PlatformObject::RegisterClass>(u"RegisterClass", required(u"sName"), required(u"oFactory")),
    method<&PlatformObject::RevokeClass>(u"RevokeClass", required(u"sName")),
};

}  // namespace

std::span<const ClassTable> service_classes() noexcept { return classes; }

}  // namespace hedro34
