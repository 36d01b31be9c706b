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
    property<&PlatformObject::Screen, &PlatformObject::SetScreen>(u"Screen"),
    property<&PlatformObject::ErrorTexts, &PlatformObject::SetErrorTexts>(u"ErrorTexts"),
};
constexpr ClassTable classes[] = {
    creatable<FormTemplate>(u"{C38DB902-4832-4ED4-A513-EDD8E849C2AD}", u"{39239DF2-5A1D-42F0-BD85-A25AEB79DBF9}",
                            form_template, u"The default form template, loaded from and saved to a file.", u"Pages"),
    inner<FormPages>(u"{4F4FFB00-B3F0-4157-AB44-F614E177D722}", u"{36990728-787B-42EE-8300-460CDE6554E4}", form_pages,
                     u"The pages of a form.", u"Item"),
    inner<FormPage>(u"{3BE1DDD2-5458-4D9E-9A3E-5354C8AAA297}", u"{A4F600A2-9061-4FC4-BB66-1DFAE72EAE3E}", form_page,
                    u"One page of a form.", u"Regions"),
    inner<FormRegions>(u"{FF67D474-EBF9-476A-94FB-81210E5BDB26}", u"{EA0F6FBE-30B2-49FD-972B-8B8A9B38EDB4}",
                       form_regions, u"The regions of a page.", u"Item"),
    creatable<FormRegion>(u"{DAF25D00-4438-4AC4-9CA7-30E2507DE889}", u"{12EDCE0D-41B0-4689-B2E3-696BC5A4D45E}",
                          form_region, u"One region of a form.", u"Questions"),
    inner<FormQuestions>(u"{B4F69D62-635C-430F-8082-C76F2943EC29}", u"{CB2C96A7-8BDD-4AB7-A884-E32A7B1708D1}",
                         form_questions, u"The fields of a region.", u"Item"),
    inner<FormQuestion>(u"{FF4EB203-44EA-45A7-9FC8-E2263DA00E86}", u"{2E2E8AA3-46FE-4E73-9979-151D6E7E7EA4}",
                        form_question, u"One field of a form."),
    creatable<FormChoiceList>(u"{F054D9AB-5A7D-4719-BDC1-2E76948AE1E2}", u"{E385C077-D3F6-4279-B1E8-B3DD9170C52F}",
                              form_choice_list, u"The choice labels or choice values of a field.", u"Item"),
    creatable<DataDocument>(u"{14F61729-81BA-4324-84CC-F9D851B6A11B}", u"{5E6BEFC5-DAB0-41DC-B44E-AA359DA5C631}",
                            data_document, u"The default data document, loaded from and saved to a file.",
                            u"Questions"),
    inner<DataQuestions>(u"{A8E0CC83-2276-4D7B-97A8-D8704694FF46}", u"{46A67F86-C9A4-48A9-969A-12014E8C4EF5}",
                         data_questions, u"The questions of a document, one for each field of its form.", u"Item"),
    creatable<DataQuestion>(u"{AF7A33AC-8B85-4ED4-A069-FAD6C3FC4DCB}", u"{4FEBEB2F-0BA9-4D6F-BB67-4817D09CCDDC}",
                            data_question, u"One question of a document."),
    inner<DataStrings>(u"{07EDCAA7-95D7-47CD-A678-42228AFD1613}", u"{9DE69851-AA7F-4D83-96FA-CF5E01439E06}",
                       data_strings, u"A list of texts of a document.", u"Item"),
    inner<DataObjectives>(u"{8E8451BC-D521-4354-9BAA-9EF0F9BCCD96}", u"{1D720628-8901-401D-BF75-7E94B7BFA558}",
                          data_objectives, u"The objectives of a document, the default one first.", u"Item"),
    creatable<DataObjective>(u"{4B59771A-AC66-48E4-A72B-E60F5A892A9E}", u"{35322CBC-6639-483C-9BF1-EEB96E81050B}",
                             data_objective, u"One objective of a document.", u"Name"),
    inner<DataObjectiveFlags>(u"{4FFE24C2-F652-4B2E-9D77-BC52F5BCEA93}", u"{D780939B-9715-4626-A5B4-F12B367AA2C5}",
                              data_objective_flags, u"The flags of a question, one for each objective.", u"Item"),
    inner<DataObjectiveFlag>(u"{316CBE8A-ED91-4539-A95E-2E51038A7F29}", u"{75BCB70F-BAFD-4EF4-BFD5-A301CD11839F}",
                             data_objective_flag, u"One flag of a question.", u"Value"),
    inner<DataVersions>(u"{77ADFDAA-5C9F-48AB-8972-D8723BC6E98E}", u"{7F9966AC-115E-41D7-9635-A76886268F61}",
                        data_versions, u"The versions of a document's test."),
    inner<DataOrders>(u"{9A0A8D57-CCFF-4107-8BE5-A36B7BADDF8F}", u"{CE750702-55E3-4FCC-9E6D-C199F65CAD9B}", data_orders,
                      u"The orders of the versions.", u"Item"),
    creatable<DataOrder>(u"{EF8594F3-6591-4035-8A95-C64E4FF4765D}", u"{DAD94541-DD3B-4D07-B8B1-D4F8BAC2CEC1}",
                         data_order, u"The order of one version: positions in the document's questions.", u"Item"),
    creatable<MessageBoxObject>(u"{A8DAD435-CC98-41C6-A751-A2558096121C}", u"{CEB66E48-B26B-4B39-937F-ACB8B125CCE7}",
                                message_box, u"The library's own message box."),
    creatable<PlatformObject>(u"{FFC10FFE-B320-44F9-A890-1C52699F318A}", u"{9F14A2C5-E2C3-4ABE-A093-2E460888BA07}",
                              platform_object, u"The services of the library that a host may replace or ask."),
};

}  // namespace

std::span<const ClassTable> service_classes() noexcept { return classes; }

}  // namespace hedro34
