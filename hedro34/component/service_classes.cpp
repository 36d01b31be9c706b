#include "hedro34/component/classes.h"
#include "hedro34/component/host_document.h"
#include "hedro34/component/host_template.h"
#include "hedro34/component/services.h"
#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/model/collection.h"
#include "hedro34/report/Report.h"

namespace hedro34 {
namespace {

constexpr Member form_template[] = {
    property<&FormTemplate::Pages>(u"Pages", u"The pages of the form."),
    property<&FormTemplate::PageCount>(u"PageCount", u"The number of pages."),
    property<&FormTemplate::QuestionCount>(u"QuestionCount",
                                           u"The number of fields, without those of regions that continue a group."),
    property<&FormTemplate::GradedQuestionCount>(
        u"GradedQuestionCount", u"The number of graded fields, without those of regions that continue a group."),
    method<&FormTemplate::Clear>(u"Clear", u"Drops all pages."),
    method<&FormTemplate::QuestionNames>(
        u"QuestionNames", u"The names of fields as an array from 1; a field without a name bears that of its region.",
        required(u"iFirst").is(u"a field number, from 1"), required(u"iLast").is(u"at most `QuestionCount`"),
        optional(u"bOption1", false).is(u"plays no part"), optional(u"sDelimiter", tab).is(u"plays no part"),
        optional(u"bOption2", false).is(u"plays no part")),
    method<&FormTemplate::Copy>(u"Copy", u"A new template with the same content that shares no object with this one.",
                                optional(u"bOption", true).is(u"plays no part")),
    method<&FormTemplate::Load>(
        u"Load",
        u"Replaces the content by that of a file; False when it cannot, for the reason in `Platform.LastFileError`.",
        required(u"sPath")),
    method<&FormTemplate::Save>(
        u"Save",
        u"Writes the form to a file, whole or not at all; False when it cannot, for the reason in `Platform.LastFileError`.",
        required(u"sPath")),
};
constexpr Member form_pages[] = {
    property<&FormPages::Count>(u"Count", u"The number of pages."),
    property<&FormPages::Item>(u"Item", u"The page at a position; that there is none is a failure.",
                               required(u"Index")),
    method<&FormPages::add>(u"Add", u"Adds a new page at the end and gives it."),
};
constexpr Member form_page[] = {
    property<&FormPage::Regions>(u"Regions", u"The regions of the page."),
};
constexpr Member form_regions[] = {
    property<&FormRegions::Count>(u"Count", u"The number of regions."),
    method<&FormRegions::Add>(
        u"Add", u"Adds a region at the end and gives its position; one that stands on a page already is a failure.",
        required(u"oRegion"), optional(u"vOption1").is(u"plays no part"), optional(u"vOption2").is(u"plays no part")),
    property<&FormRegions::Item>(u"Item", u"The region at a position; that there is none is a failure.",
                                 required(u"Index")),
    method<&FormRegions::add>(u"AddNew", u"Adds a new region at the end and gives it."),
};
constexpr Member form_region[] = {
    property<&FormRegion::Questions>(u"Questions", u"The fields of the region."),
    property<&FormRegion::RegionKind, &FormRegion::SetRegionKind>(
        u"RegionKind",
        u"1 for a region whose choices a merge may rewrite, 2 for one that a merge added; others are kept."),
    property<&FormRegion::ResponseKind, &FormRegion::SetResponseKind>(
        u"ResponseKind",
        u"1, 4 or 6 where a merge maintains the choices of the fields, 3 in a region that it added; others are kept."),
    property<&FormRegion::ValueKind, &FormRegion::SetValueKind>(
        u"ValueKind", u"The kind of the values: 1, or anything else for the other kind."),
    property<&FormRegion::QuestionCount>(u"QuestionCount", u"The number of fields of the region."),
    property<&FormRegion::Name, &FormRegion::SetName>(u"Name",
                                                      u"The name of the region, also for its fields without one."),
    property<&FormRegion::GroupNumber, &FormRegion::SetGroupNumber>(
        u"GroupNumber",
        u"0 for a region that stands alone; one with the number of the region just before continues that one."),
    property<&FormRegion::SubjectiveRegion, &FormRegion::SetSubjectiveRegion>(
        u"SubjectiveRegion", u"Whether the region is for a subjective question."),
};
constexpr Member form_questions[] = {
    property<&FormQuestions::Count>(u"Count", u"The number of fields."),
    property<&FormQuestions::Item>(u"Item", u"The field at a position; that there is none is a failure.",
                                   required(u"Index")),
    method<&FormQuestions::add>(u"Add", u"Adds a new field at the end and gives it."),
};
constexpr Member form_question[] = {
    property<&FormQuestion::QuestionText, &FormQuestion::SetQuestionText>(u"QuestionText", u"The text of the field."),
    property<&FormQuestion::ItemOption, &FormQuestion::SetItemOption>(
        u"ItemOption", u"An option that a merge hands to the document, not interpreted."),
    property<&FormQuestion::Graded, &FormQuestion::SetGraded>(
        u"Graded", u"Whether the field is graded and takes a question of the test."),
    property<&FormQuestion::CorrectPoints, &FormQuestion::SetCorrectPoints>(
        u"CorrectPoints", u"Points for a correct response; 1 in a new field."),
    property<&FormQuestion::IncorrectPoints, &FormQuestion::SetIncorrectPoints>(
        u"IncorrectPoints", u"Points for an incorrect response; 0 in a new field."),
    property<&FormQuestion::NoResponsePoints, &FormQuestion::SetNoResponsePoints>(
        u"NoResponsePoints", u"Points for no response; 0 in a new field."),
    property<&FormQuestion::ChoiceLabels, &FormQuestion::SetChoiceLabels>(
        u"ChoiceLabels", u"What the choices are called on the form; the list itself, not a copy."),
    property<&FormQuestion::ChoiceValues, &FormQuestion::SetChoiceValues>(
        u"ChoiceValues", u"What each choice records; 1, 2 and so on for the labels, as long as no list was assigned."),
    property<&FormQuestion::ScaleOption, &FormQuestion::SetScaleOption>(
        u"ScaleOption", u"An option that a merge hands to the document, not interpreted."),
    property<&FormQuestion::SubjectiveQuestion, &FormQuestion::SetSubjectiveQuestion>(
        u"SubjectiveQuestion", u"Whether the field is for a subjective question."),
    property<&FormQuestion::MultiplesAllowed, &FormQuestion::SetMultiplesAllowed>(
        u"MultiplesAllowed", u"Above 0 when more than one choice may be marked; a merge writes 1 or 0."),
    method<&FormQuestion::FieldNumber>(
        u"FieldNumber", u"The number of the field over pages, regions and fields, from 1; 0 for one in no template.",
        optional(u"bOption", true).is(u"plays no part")),
    property<&FormQuestion::Name, &FormQuestion::SetName>(
        u"Name", u"The name of the field; empty when the name of its region stands for it."),
};
constexpr Member form_choice_list[] = {
    property<&FormChoiceList::Count>(u"Count", u"The number of choices."),
    property<&FormChoiceList::Item, &FormChoiceList::SetItem>(
        u"Item", u"The text at a position; that there is none is a failure.", required(u"Index")),
    method<&FormChoiceList::AsArray>(
        u"AsArray", u"The texts as an array from `lLowerBound` up; without bounds when there are none.",
        optional(u"lLowerBound", 1)),
    method<&FormChoiceList::Add>(u"Add", u"Adds a text at the end.", required(u"sText")),
};
constexpr Member data_document[] = {
    property<&DataDocument::Questions>(
        u"Questions",
        u"The questions: one for each field number of the form, then the subjective ones that a merge added."),
    property<&DataDocument::Versions>(u"Versions", u"The orders and identifiers of the versions of the test."),
    property<&DataDocument::Objectives>(u"Objectives", u"The objectives; position 1 holds the default one."),
    method<&DataDocument::Clear>(u"Clear", u"Empties the document; what of it somebody else holds keeps its content."),
    method<&DataDocument::Load>(
        u"Load",
        u"Replaces the content by that of a file; False when it cannot, for the reason in `Platform.LastFileError`.",
        required(u"sPath")),
    property<&DataDocument::Description, &DataDocument::SetDescription>(u"Description",
                                                                        u"A description of the document."),
    property<&DataDocument::Notes, &DataDocument::SetNotes>(u"Notes", u"Notes on the document."),
    property<&DataDocument::DocumentKind, &DataDocument::SetDocumentKind>(
        u"DocumentKind", u"The kind of the document; 0 in a new one, 1 after a merge."),
    property<&DataDocument::PageCount, &DataDocument::SetPageCount>(u"PageCount", u"The number of pages of the form."),
    method<&DataDocument::PrepareDefaults>(
        u"PrepareDefaults", u"Adds the default objective, which has no name, when there are no objectives."),
    method<&DataDocument::Save>(
        u"Save",
        u"Writes the document to a file, whole or not at all; False when it cannot, for the reason in `Platform.LastFileError`.",
        required(u"sPath")),
};
constexpr Member data_questions[] = {
    property<&DataQuestions::Count>(u"Count", u"The number of questions."),
    method<&DataQuestions::Add>(u"Add", u"Adds a question at the end.", required(u"oQuestion")),
    property<&DataQuestions::Item>(u"Item", u"The question at a position; that there is none is a failure.",
                                   required(u"Index")),
    method<&DataQuestions::add>(u"AddNew", u"Adds a new question at the end and gives it."),
};
constexpr Member data_question[] = {
    property<&DataQuestion::ChoiceLabels>(u"ChoiceLabels", u"The labels of the choices in order, such as A, B."),
    property<&DataQuestion::ChoiceValues>(u"ChoiceValues", u"The value of each choice, in the order of the labels."),
    property<&DataQuestion::ObjectiveFlags>(u"ObjectiveFlags",
                                            u"One flag for each objective of the document, at the same positions."),
    property<&DataQuestion::AnswerKey>(u"AnswerKey",
                                       u"The correct answers as labels in the first entry: B, or (A,C) for several."),
    property<&DataQuestion::NumericAnswerKey>(
        u"NumericAnswerKey", u"The correct answers as numbers in the first entry: 2, or (1,3) for several."),
    property<&DataQuestion::Name, &DataQuestion::SetName>(u"Name", u"The name of the field."),
    property<&DataQuestion::QuestionText, &DataQuestion::SetQuestionText>(u"QuestionText",
                                                                          u"The text of the question."),
    property<&DataQuestion::Graded, &DataQuestion::SetGraded>(u"Graded", u"Whether the question is graded."),
    property<&DataQuestion::ItemOption, &DataQuestion::SetItemOption>(
        u"ItemOption", u"The option of that name of the field, not interpreted."),
    property<&DataQuestion::ValueKind, &DataQuestion::SetValueKind>(
        u"ValueKind", u"The kind of the values: 1, or 2 for the other kind."),
    property<&DataQuestion::TextValue, &DataQuestion::SetTextValue>(u"TextValue",
                                                                    u"A text that is kept and not interpreted."),
    property<&DataQuestion::FloatValue, &DataQuestion::SetFloatValue>(u"FloatValue",
                                                                      u"A number that is kept and not interpreted."),
    property<&DataQuestion::MultiplesAllowed, &DataQuestion::SetMultiplesAllowed>(
        u"MultiplesAllowed", u"Above 0 when more than one choice may be marked."),
    property<&DataQuestion::ScaleOption, &DataQuestion::SetScaleOption>(
        u"ScaleOption", u"The option of that name of the field, not interpreted."),
    property<&DataQuestion::Subjective, &DataQuestion::SetSubjective>(u"Subjective",
                                                                      u"Whether it is a subjective question."),
    property<&DataQuestion::CorrectAnswerCount, &DataQuestion::SetCorrectAnswerCount>(
        u"CorrectAnswerCount", u"The number of correct answers."),
    property<&DataQuestion::CorrectAnd, &DataQuestion::SetCorrectAnd>(
        u"CorrectAnd", u"Whether all correct answers must be marked; True in a new question."),
    property<&DataQuestion::CorrectPoints, &DataQuestion::SetCorrectPoints>(
        u"CorrectPoints", u"Points for a correct response; 1 in a new question."),
    property<&DataQuestion::IncorrectPoints, &DataQuestion::SetIncorrectPoints>(
        u"IncorrectPoints", u"Points for an incorrect response; 0 in a new question."),
    property<&DataQuestion::NoResponsePoints, &DataQuestion::SetNoResponsePoints>(
        u"NoResponsePoints", u"Points for no response; 0 in a new question."),
    property<&DataQuestion::SubjectivePoints, &DataQuestion::SetSubjectivePoints>(
        u"SubjectivePoints", u"Points of a subjective question; 0 in a new question."),
    property<&DataQuestion::Difficulty, &DataQuestion::SetDifficulty>(u"Difficulty",
                                                                      u"The difficulty in words, not interpreted."),
    property<&DataQuestion::Reference, &DataQuestion::SetReference>(u"Reference",
                                                                    u"A reference in words, not interpreted."),
    property<&DataQuestion::Topic, &DataQuestion::SetTopic>(u"Topic", u"The topic, not interpreted."),
    property<&DataQuestion::Keywords, &DataQuestion::SetKeywords>(u"Keywords",
                                                                  u"The keywords as one text, not interpreted."),
    property<&DataQuestion::Miscellaneous, &DataQuestion::SetMiscellaneous>(
        u"Miscellaneous", u"Anything else in words, not interpreted."),
    property<&DataQuestion::Notes, &DataQuestion::SetNotes>(u"Notes", u"Notes on the question, not interpreted."),
};
constexpr Member data_strings[] = {
    property<&DataStrings::Count>(u"Count", u"The number of texts."),
    method<&DataStrings::Add>(u"Add", u"Adds a text at the end; a key in use is a failure.", required(u"sText"),
                              optional(u"vKey").is(u"the key of the text, compared in any case")),
    method<&DataStrings::AddArray>(u"AddArray",
                                   u"Adds every text of an array in order; an array without bounds adds nothing.",
                                   by_reference(u"vTexts")),
    property<&DataStrings::Item>(u"Item", u"The text at a position or under a key; that there is none is a failure.",
                                 required(u"Index")),
    method<&DataStrings::AsArray>(u"AsArray", u"The texts as an array from 1; without bounds when there are none."),
};
constexpr Member data_objectives[] = {
    property<&DataObjectives::Count>(u"Count", u"The number of objectives, with the default one."),
    method<&DataObjectives::Add>(u"Add", u"Adds an objective at the end; a key in use is a failure.",
                                 required(u"oObjective"),
                                 optional(u"vKey").is(u"the key of the objective, compared in any case")),
    property<&DataObjectives::Item>(
        u"Item", u"The objective at a position or under a key; that there is none is a failure.", required(u"Index")),
    method<&DataObjectives::Exists>(
        u"Exists",
        u"Whether there is an objective under a key; for an empty one, whether the default objective is there.",
        required(u"vKey")),
};
constexpr Member data_objective[] = {
    property<&DataObjective::Name, &DataObjective::SetName>(u"Name", u"The text of the objective."),
};
constexpr Member data_objective_flags[] = {
    method<&DataObjectiveFlags::Add>(u"Add", u"Adds a flag at the end.",
                                     required(u"vValue").is(u"a Boolean; a null counts as False")),
    property<&DataObjectiveFlags::Item>(
        u"Item", u"The flag at a position, from 1; one behind the last is False until it is written.",
        required(u"lPosition")),
};
constexpr Member data_objective_flag[] = {
    property<&DataObjectiveFlag::Value, &DataObjectiveFlag::SetValue>(
        u"Value", u"Whether the question tests the objective; a null counts as False."),
};
constexpr Member data_versions[] = {
    property<&DataVersions::Orders>(u"Orders", u"One order for each version."),
    property<&DataVersions::VersionAnswers>(u"VersionAnswers",
                                            u"The identifier of each version, at the position of its order."),
    property<&DataVersions::SequenceQuestion, &DataVersions::SetSequenceQuestion>(
        u"SequenceQuestion", u"The field that holds the version identifier, from 1; 0 for a test in one version."),
    property<&DataVersions::VersionMode>(
        u"VersionMode", u"2 when there are identifiers, as many as orders, so that the orders are read; else 0."),
};
constexpr Member data_orders[] = {
    property<&DataOrders::Count>(u"Count", u"The number of orders."),
    method<&DataOrders::Add>(u"Add", u"Adds an order at the end.", required(u"oOrder")),
    method<&DataOrders::AddDefault>(u"AddDefault", u"Adds the order 1, 2, 3 up to `lQuestions`, at most 10,000,000.",
                                    required(u"lQuestions")),
    property<&DataOrders::Item>(u"Item", u"The order at a position; that there is none is a failure.",
                                required(u"Index")),
};
constexpr Member data_order[] = {
    property<&DataOrder::Count>(u"Count", u"The number of entries."),
    property<&DataOrder::Item>(
        u"Item",
        u"The field number to which the field at a position of this version corresponds; that there is none is a failure.",
        required(u"lPosition")),
    method<&DataOrder::FromArray>(u"FromArray", u"Replaces all entries by those of an array.", required(u"vEntries")),
};
constexpr Member message_box[] = {
    method<&MessageBoxObject::Show>(
        u"Show", u"Shows a box, waits for the user and gives the button: 1 for OK, 2 for Cancel.", required(u"sText"),
        optional(u"lFlags", 0).is(u"0 for OK alone, 1 for OK and Cancel; 16 adds a stop icon, 48 an exclamation icon"),
        optional(u"sTitle", u"")),
};
constexpr Member platform_object[] = {
    property<&PlatformObject::MessageBox, &PlatformObject::SetMessageBox>(
        u"MessageBox",
        u"The object whose method `Show` shows the boxes; an empty reference puts the library's own back."),
    property<&PlatformObject::LastFileError>(
        u"LastFileError",
        u"Why the last load or save on this thread failed, as path, place and reason; empty when it went well."),
    property<&PlatformObject::HostFaults, &PlatformObject::SetHostFaults>(
        u"HostFaults",
        u"Whether a native fault inside an object of the host is a failure of the operation that called it; True at first."),
    method<&PlatformObject::RegisterClass>(
        u"RegisterClass",
        u"Registers a class of the host in this process; the method `CreateInstance` of `oFactory` gives a new object.",
        required(u"sName"), required(u"oFactory")),
    method<&PlatformObject::RevokeClass>(
        u"RevokeClass", u"Takes a class of the host out again; gives whether there was one.", required(u"sName")),
    property<&PlatformObject::Screen, &PlatformObject::SetScreen>(
        u"Screen",
        u"The object whose method `SetMousePointer` takes the pointer's shape; empty while the library's own serves."),
    property<&PlatformObject::ErrorTexts, &PlatformObject::SetErrorTexts>(
        u"ErrorTexts",
        u"The object whose method `Text` gives the text of an error number; empty while the library's own serves."),
    property<&PlatformObject::Version>(u"Version", u"The version of the library, as numbers with dots."),
};
constexpr Member report[] = {
    property<&Report::Document>(u"Document",
                                u"The data document that the page is about; that there is none is a failure."),
    property<&Report::Form>(
        u"Form", u"The merged form, whose pages are drawn; without one the fields stand one after the other."),
    property<&Report::Title>(
        u"Title", u"The heading; when empty, the title of the first test or the description of the document."),
    method<&Report::AddTest>(
        u"AddTest",
        u"Adds a test of the merge, the first version first: the page has its choices and what was left out.",
        required(u"oTest")),
    method<&Report::AddMessage>(u"AddMessage", u"Adds what was said on the way, such as the text of a box.",
                                required(u"sText")),
    property<&Report::Page>(u"Page", u"The page: an HTML text that stands alone, without a script."),
    method<&Report::Save>(
        u"Save",
        u"Writes the page to a file, whole or not at all; False when it cannot, for the reason in `Platform.LastFileError`.",
        required(u"sPath")),
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
    creatable<Report>(u"{67F917CD-228F-4167-90E2-A0D5E9825D1A}", u"{41F711CB-1C42-48EC-8854-2F6177B9F020}", report,
                      u"The page that a person looks at before the sheets go out: the sheet, its keys, the questions."),
};

}  // namespace

std::span<const ClassTable> service_classes() noexcept { return classes; }

}  // namespace hedro34
