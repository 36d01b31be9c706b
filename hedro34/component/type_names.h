// The names under which the types of the library are known outside. The default template and document classes bear the names
// of their own classes; the interfaces of templates and documents those of the host's libraries.
#pragma once

#include "hedro34/base/ref.h"
#include "hedro34/base/text.h"
#include "hedro34/model/enumerations.h"

namespace hedro34 {

class clsHEDRO;
class clsHEDROTest;
class clsHEDROTestQuestion;
class clsHEDROTestStrings;
class clsHEDROTestCorrect;
class clsHEDROTestSequence;
class clsHEDROTests;
class clsHEDROTestQuestions;
class clsHEDROTestSequences;
class clsHEDROTestSequenceOrder;

class TIBTemplate;
class TIBPages;
class TIBPage;
class TIBRegions;
class TIBRegion;
class TIBQuestions;
class TIBQuestion;
class TIBChoiceList;

class WENKtdDocument;
class WENKtdQuestions;
class WENKtdQuestion;
class WENKtdStrings;
class WENKtdObjectives;
class WENKtdObjective;
class WENKtdObjectiveFlags;
class WENKtdObjectiveFlag;
class WENKtdVersions;
class WENKtdOrders;
class WENKtdOrder;

class FormTemplate;
class FormPages;
class FormPage;
class FormRegions;
class FormRegion;
class FormQuestions;
class FormQuestion;
class FormChoiceList;

class DataDocument;
class DataQuestions;
class DataQuestion;
class DataStrings;
class DataObjectives;
class DataObjective;
class DataObjectiveFlags;
class DataObjectiveFlag;
class DataVersions;
class DataOrders;
class DataOrder;

class MessageBoxObject;
class PlatformObject;

template <class T>
inline constexpr StringView type_name;

template <>
inline constexpr StringView type_name<Object> = u"";

template <>
inline constexpr StringView type_name<HEDROTestSourceType> = u"HEDROTestSourceType";
template <>
inline constexpr StringView type_name<HEDROTestImportObjectives> = u"HEDROTestImportObjectives";
template <>
inline constexpr StringView type_name<HEDROTestQuestionType> = u"HEDROTestQuestionType";

template <>
inline constexpr StringView type_name<clsHEDRO> = u"clsHEDRO";
template <>
inline constexpr StringView type_name<clsHEDROTest> = u"clsHEDROTest";
template <>
inline constexpr StringView type_name<clsHEDROTestQuestion> = u"clsHEDROTestQuestion";
template <>
inline constexpr StringView type_name<clsHEDROTestStrings> = u"clsHEDROTestStrings";
template <>
inline constexpr StringView type_name<clsHEDROTestCorrect> = u"clsHEDROTestCorrect";
template <>
inline constexpr StringView type_name<clsHEDROTestSequence> = u"clsHEDROTestSequence";
template <>
inline constexpr StringView type_name<clsHEDROTests> = u"clsHEDROTests";
template <>
inline constexpr StringView type_name<clsHEDROTestQuestions> = u"clsHEDROTestQuestions";
template <>
inline constexpr StringView type_name<clsHEDROTestSequences> = u"clsHEDROTestSequences";
template <>
inline constexpr StringView type_name<clsHEDROTestSequenceOrder> = u"clsHEDROTestSequenceOrder";

template <>
inline constexpr StringView type_name<TIBTemplate> = u"TIBTemplate";
template <>
inline constexpr StringView type_name<TIBPages> = u"TIBPages";
template <>
inline constexpr StringView type_name<TIBPage> = u"TIBPage";
template <>
inline constexpr StringView type_name<TIBRegions> = u"TIBRegions";
template <>
inline constexpr StringView type_name<TIBRegion> = u"TIBRegion";
template <>
inline constexpr StringView type_name<TIBQuestions> = u"TIBQuestions";
template <>
inline constexpr StringView type_name<TIBQuestion> = u"TIBQuestion";
template <>
inline constexpr StringView type_name<TIBChoiceList> = u"TIBChoiceList";

template <>
inline constexpr StringView type_name<WENKtdDocument> = u"WENKtdDocument";
template <>
inline constexpr StringView type_name<WENKtdQuestions> = u"WENKtdQuestions";
template <>
inline constexpr StringView type_name<WENKtdQuestion> = u"WENKtdQuestion";
template <>
inline constexpr StringView type_name<WENKtdStrings> = u"WENKtdStrings";
template <>
inline constexpr StringView type_name<WENKtdObjectives> = u"WENKtdObjectives";
template <>
inline constexpr StringView type_name<WENKtdObjective> = u"WENKtdObjective";
template <>
inline constexpr StringView type_name<WENKtdObjectiveFlags> = u"WENKtdObjectiveFlags";
template <>
inline constexpr StringView type_name<WENKtdObjectiveFlag> = u"WENKtdObjectiveFlag";
template <>
inline constexpr StringView type_name<WENKtdVersions> = u"WENKtdVersions";
template <>
inline constexpr StringView type_name<WENKtdOrders> = u"WENKtdOrders";
template <>
inline constexpr StringView type_name<WENKtdOrder> = u"WENKtdOrder";

template <>
inline constexpr StringView type_name<FormTemplate> = u"FormTemplate";
template <>
inline constexpr StringView type_name<FormPages> = u"FormPages";
template <>
inline constexpr StringView type_name<FormPage> = u"FormPage";
template <>
inline constexpr StringView type_name<FormRegions> = u"FormRegions";
template <>
inline constexpr StringView type_name<FormRegion> = u"FormRegion";
template <>
inline constexpr StringView type_name<FormQuestions> = u"FormQuestions";
template <>
inline constexpr StringView type_name<FormQuestion> = u"FormQuestion";
template <>
inline constexpr StringView type_name<FormChoiceList> = u"FormChoiceList";

template <>
inline constexpr StringView type_name<DataDocument> = u"DataDocument";
template <>
inline constexpr StringView type_name<DataQuestions> = u"DataQuestions";
template <>
inline constexpr StringView type_name<DataQuestion> = u"DataQuestion";
template <>
inline constexpr StringView type_name<DataStrings> = u"DataStrings";
template <>
inline constexpr StringView type_name<DataObjectives> = u"DataObjectives";
template <>
inline constexpr StringView type_name<DataObjective> = u"DataObjective";
template <>
inline constexpr StringView type_name<DataObjectiveFlags> = u"DataObjectiveFlags";
template <>
inline constexpr StringView type_name<DataObjectiveFlag> = u"DataObjectiveFlag";
template <>
inline constexpr StringView type_name<DataVersions> = u"DataVersions";
template <>
inline constexpr StringView type_name<DataOrders> = u"DataOrders";
template <>
inline constexpr StringView type_name<DataOrder> = u"DataOrder";

template <>
inline constexpr StringView type_name<MessageBoxObject> = u"MessageBox";
template <>
inline constexpr StringView type_name<PlatformObject> = u"Platform";

}  // namespace hedro34
