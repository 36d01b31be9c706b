// Values on their way into the library by name: every kind in every passing, arrays as callers make them, a Boolean in and out.
#include <bit>

#include "hedro34/documents/data_document.h"
#include "tests/component_support.h"

namespace hedro34::testing::component {
namespace {

// The same value as it is, by reference, and in a variant that is passed by reference.
TEST_F(Component, TakesValuesOfEveryKindInEveryPassing) {
  const OwnedVariant text = owned(u"text");
  const std::uint64_t missing_argument = 0x80020004;
  const struct {
    VARTYPE type;
    std::uint64_t bits;
    std::string title;  // empty where the value cannot be text
  } rows[] = {{VT_I1, 0xFB, "-5"},
              {VT_UI1, 0xFB, "251"},
              {VT_I2, 0xFFFE, "-2"},
              {VT_UI2, 0xFFFE, "65534"},
              {VT_I4, 0xFFFFFFFD, "-3"},
              {VT_UI4, 0xFFFFFFFD, "4294967293"},
              {VT_INT, 0xFFFFFFFD, "-3"},
              {VT_UINT, 0xFFFFFFFD, "4294967293"},
              {VT_I8, 0xFFFFFFFFFFFFFFFC, "-4"},
              {VT_UI8, 0x7FFFFFFFFFFFFFFF, "9223372036854775807"},
              {VT_UI8, 0x8000000000000000, "9223372036854775808"},
              {VT_R4, std::bit_cast<std::uint32_t>(1.5f), "1.5"},
              {VT_R8, std::bit_cast<std::uint64_t>(-2.25), "-2.25"},
              {VT_DATE, std::bit_cast<std::uint64_t>(0.5), "0.5"},
              {VT_CY, 12345, "1.2345"},
              {VT_BOOL, 0xFFFF, "True"},
              {VT_BOOL, 0, "False"},
              {VT_BSTR, reinterpret_cast<std::uintptr_t>((*text).bstrVal), "text"},
              {VT_ERROR, missing_argument, ""},
              {VT_ERROR, 5, ""},
              {VT_NULL, 0, ""},
              {VT_DISPATCH, 0, ""},
              {VT_UNKNOWN, 0, ""},
              {VT_ARRAY | VT_BSTR, 0, ""},
              {14, 0, ""},
              {36, 0, ""}};
  const auto test = make<clsHEDROTest>();
  const Held<IDispatch> object = identity_of(test);
  DISPID put_id = DISPID_PROPERTYPUT;
  const DISPID title = id_of(object.get(), u"Title");
  const auto set = [&](VARIANT value) { return invoke(object.get(), title, put_value, {&value, &put_id, 1, 1}); };
  for (const auto& row : rows) {
    std::uint64_t bits = row.bits;
    VARIANT ways[4] = {};
    ways[0].vt = row.type;
    ways[0].ullVal = bits;
    ways[1].vt = static_cast<VARTYPE>(VT_BYREF | row.type);
    ways[1].byref = &bits;
    ways[2].vt = ways[3].vt = VT_BYREF | VT_VARIANT;
    ways[2].pvarVal = &ways[0];
    ways[3].pvarVal = &ways[1];
    for (int way = 0; way < 4; ++way) {
      test->Title = u"";
      EXPECT_EQ(set(ways[way]), row.title.empty() ? "80020005 at 0" : "EMPTY") << row.type << " way " << way;
      EXPECT_EQ(to_utf8(test->Title.str()), row.title) << row.type << " way " << way;
    }
    ways[1].byref = nullptr;
    EXPECT_EQ(set(ways[1]), "80020005 at 0") << row.type;
    EXPECT_EQ(set(ways[3]), "80020005 at 0") << row.type;
    ways[1].vt = VT_BYREF | VT_VARIANT;
    ways[1].byref = ways;
    EXPECT_EQ(set(ways[3]), "80020005 at 0") << row.type;  // a variant in a variant in a variant
  }
  // Units of any value, a zero among them, and the empty text as null.
  const String units = {u'a', 0, 0xD800, 0xDC00, 0xD800, u'z'};
  EXPECT_EQ(set(*owned(units)), "EMPTY");
  OwnedVariant read;
  run(object.get(), {u"Title", get}, read.get());
  EXPECT_EQ(String(read->bstrVal, SysStringLen(read->bstrVal)), units);
  VARIANT empty{};
  empty.vt = VT_BSTR;
  EXPECT_EQ(set(empty), "EMPTY");
  EXPECT_TRUE(test->Title.empty());
}

TEST_F(Component, TakesArraysAsTheyCome) {
  Recorder recorder;
  const OwnedVariant texts = owned(Array<String>::of({u"d", u"e"}, -1));
  const std::string failure = "9 Subscript out of range: HEDRO34 - clsHEDROTestStrings.AddArray";
  OwnedVariant variants;
  variants->vt = VT_ARRAY | VT_VARIANT;
  variants->parray = SafeArrayCreateVector(VT_VARIANT, 5, 2);
  auto* const elements = static_cast<VARIANT*>(variants->parray->pvData);
  elements[0] = owned(7).detach();
  elements[1] = owned(u"e").detach();
  struct {
    SAFEARRAY array;
    SAFEARRAYBOUND second;
  } two = {{2, FADF_BSTR, sizeof(BSTR), 0, (*texts).parray->pvData, {{2, 1}}}, {1, 1}};
  SAFEARRAY narrow = *(*texts).parray;
  narrow.cbElements = 2;
  SAFEARRAY far = *(*texts).parray;
  far.rgsabound[0].lLbound = 0x7FFFFFFF;
  SAFEARRAY hollow = *(*texts).parray;
  hollow.pvData = nullptr;
  SAFEARRAY zero = *(*texts).parray;
  zero.rgsabound[0].cElements = 0;
  const struct {
    SAFEARRAY* array;
    VARTYPE type;
    std::string outcome;
    std::string list;
    Lines reports = {};
  } rows[] = {
      {(*texts).parray, VT_BSTR, "BOOL -1", "d,e"},  {variants->parray, VT_VARIANT, "BOOL -1", "7,e"},
      {nullptr, VT_BSTR, "BOOL 0", "", {failure}},   {&zero, VT_BSTR, "BOOL 0", "", {failure}},
      {(*texts).parray, VT_I4, "80020005 at 0", ""}, {(*texts).parray, VT_DISPATCH, "80020005 at 0", ""},
      {&two.array, VT_BSTR, "80020005 at 0", ""},    {&narrow, VT_BSTR, "80020005 at 0", ""},
      {&far, VT_BSTR, "8002000B at 0", ""},          {&hollow, VT_BSTR, "8002000B at 0", ""},
  };
  const auto pass = [&](VARIANT value, const auto& row) {
    const auto list = make<clsHEDROTestStrings>();
    EXPECT_EQ(invoke(identity_of(list).get(), 3, method, {&value, nullptr, 1, 0}), row.outcome) << row.type;
    EXPECT_EQ(to_utf8(list->AsString(u",")), row.list);
    EXPECT_EQ(recorder.take(), row.reports);
  };
  for (const auto& row : rows) {
    SAFEARRAY* array = row.array;
    VARIANT value{};
    value.vt = VT_ARRAY | row.type;
    value.parray = array;
    pass(value, row);
    VARIANT inside = value;
    value.vt = VT_ARRAY | VT_BYREF | row.type;
    value.pparray = &array;
    pass(value, row);
    value.vt = VT_BYREF | VT_VARIANT;
    value.pvarVal = &inside;
    pass(value, row);
  }
  // An array that is an element of itself.
  VARIANT round{};
  round.vt = VT_ARRAY | VT_VARIANT;
  round.parray = variants->parray;
  const VARIANT first = std::exchange(elements[0], round);
  EXPECT_EQ(invoke(identity_of(abc()).get(), 3, method, {&round, nullptr, 1, 0}), "80020005 at 0");
  EXPECT_EQ(invoke(identity_of(make<DataOrder>()).get(), 3, method, {&round, nullptr, 1, 0}), "80020005 at 0");
  elements[0] = first;
}

TEST_F(Component, TellsOfACancelledLoad) {
  Recorder recorder;
  Folder folder;
  const OwnedVariant path =
      owned(folder.write("a.xml",
                         "<examview><question><info><points scoring-method='RightLessWrong'>1</points>"
                         "</info></question></examview>"));
  const Held<IDispatch> test = identity_of(make<clsHEDROTest>());
  for (const std::int32_t answer : {answer_cancel, answer_ok}) {
    recorder.answer = answer;
    const bool cancel = answer == answer_cancel;
    const std::string result = cancel ? "BOOL 0" : "BOOL -1";
    const auto load = [&](VARIANT cancelled) {
      VARIANT arguments[] = {cancelled, *owned(false), *path};
      return invoke(test.get(), id_of(test.get(), u"LoadXML"), method, {arguments, nullptr, 3, 0});
    };
    std::int16_t flag = 0;
    VARIANT by_reference{};
    by_reference.vt = VT_BYREF | VT_BOOL;
    by_reference.pboolVal = &flag;
    EXPECT_EQ(load(by_reference), result);
    EXPECT_EQ(flag, cancel ? -1 : 0);

    flag = 0;
    OwnedVariant inside[] = {OwnedVariant(), owned(false), owned(u"False"), OwnedVariant()};
    *inside[3] = by_reference;
    const char* const after[] = {"EMPTY", "BOOL 0", "BSTR False", "&BOOL 0"};
    for (std::size_t i = 0; i < 4; ++i) {
      VARIANT variable{};
      variable.vt = VT_BYREF | VT_VARIANT;
      variable.pvarVal = inside[i].get();
      EXPECT_EQ(load(variable), result);
      EXPECT_EQ(show(*inside[i]), !cancel ? after[i] : i < 3 ? "BOOL -1" : "&BOOL -1");
    }
    OwnedVariant own_result;
    VARIANT the_result{};
    the_result.vt = VT_BYREF | VT_VARIANT;
    the_result.pvarVal = own_result.get();
    VARIANT arguments[] = {the_result, *owned(false), *path};
    DISPPARAMS parameters = {arguments, nullptr, 3, 0};
    const DISPID load_xml = id_of(test.get(), u"LoadXML");
    test->Invoke(load_xml, IID_NULL, 0, method, &parameters, own_result.get(), nullptr, nullptr);
    EXPECT_EQ(show(*own_result), result);

    EXPECT_EQ(load(*owned(missing)), result);
    EXPECT_EQ(load(*owned(true)), result);
    EXPECT_EQ(load(*owned(u"x")), "80020005 at 0");
    std::int32_t wide = 0;
    by_reference.vt = VT_BYREF | VT_I4;  // there is no Boolean to write to
    by_reference.plVal = &wide;
    EXPECT_EQ(load(by_reference), "80020005 at 0");
    EXPECT_EQ(run(test.get(), {u"LoadXML", method, {String((*path).bstrVal), false}, {u"bVerbose"}}), "BOOL -1");
  }
  EXPECT_EQ(recorder.take().size(), 16u);  // each load but the silent and those in error asked once
}

}  // namespace
}  // namespace hedro34::testing::component
