// The library's objects called by name: names, kinds, counts and types of arguments, and their result codes.
#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/version.h"
#include "tests/component_support.h"

namespace hedro34::testing::component {
namespace {

using model::question;

struct Row {
  Call call;
  std::string outcome;
  std::string left = {};  // what the list holds then, where that is not a, b, c
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << row.call.flags << " " << to_utf8(row.call.member) << ": " << row.outcome;
}

TEST_F(Component, CallsAListByName) {
  const Row rows[] = {
      {{u"cOUNT", get}, "I4 3"},
      {{u"ITEM", get, {2}}, "BSTR b"},
      {{u"Add", method, {u"d", missing, 1}}, "BOOL -1", "d,a,b,c"},
      {{u"Add", method, {1, u"d"}, {u"bEFORE", u"ITEM"}}, "BOOL -1", "d,a,b,c"},
      {{u"AddDelimitedString", method, {u"d\te"}}, "BOOL -1", "a,b,c,d,e"},
      {{u"AddArray", method, {Array<String>::of({u"d", u"e"}, -7)}}, "BOOL -1", "a,b,c,d,e"},
      {{u"Item", put_value, {2, u"B"}, {u"iNdEx"}}, "EMPTY", "a,B,c"},
      {{u"AsArray"}, "BSTR[1] a b c"},
      // names
      {{u"Nothing"}, "names 80020006"},
      {{u"Add", method, {u"d"}, {u"Nowhere"}}, "names 80020006"},
      // kinds
      {{u"Count", method}, "80020003"},
      // counts
      {{u"Add", method, {u"d", missing, missing, missing, missing}}, "8002000E"},
      {{u"Add", method, {u"d", u"e"}, {u"Item", u"Item"}}, "8002000E"},
      {{u"Add"}, "8002000F"},
      {{u"Add", method, {missing, u"x"}}, "8002000F at 1"},
      // types, with the index from the last argument
      {{u"AddDelimitedString", method, {none, u","}}, "80020005 at 1"},
      {{u"Add", method, {1, Null()}, {u"Before", u"Item"}}, "80020005 at 0"},
      {{u"AddArray", method, {Array<std::int32_t>::of({1})}}, "80020005 at 0"},
      {{u"AsArray", method, {3e9}}, "8002000A at 0"},
  };
  for (const Row& row : rows) {
    const auto list = abc();
    EXPECT_EQ(run(identity_of(list).get(), row.call), row.outcome) << ::testing::PrintToString(row);
    EXPECT_EQ(to_utf8(list->AsString(u",")), row.left.empty() ? "a,b,c" : row.left) << ::testing::PrintToString(row);
  }
}

TEST_F(Component, CallsOtherObjectsByName) {
  Recorder recorder;
  const auto test = model::titled(u"T");
  const auto item = question(u"q");
  const auto platform = make<PlatformObject>();
  const auto merge = make<clsHEDRO>();
  const std::string not_set = " Object variable not set: HEDRO34 - ";
  const struct {
    Ref<Object> object;
    Call call;
    std::string outcome;
    Lines reports = {};
  } rows[] = {
      {make<clsHEDROTestStrings>(), {u"AsArray"}, "BSTR[]"},
      {make<clsHEDROTestCorrect>(), {u"Add", method, {32768}}, "8002000A at 0"},
      {item, {u"CorrectPoints", put_value, {u" 2.5 "}}, "EMPTY"},
      {item, {u"CorrectPoints", get}, "R4 2.5"},
      {item, {u"CorrectPoints", put_value, {1e39}}, "8002000A at 0"},
      {item, {u"MultiplesPermitted", put_value, {true}}, "80020003"},
      {item, {u"Answers", put_reference, {test}}, "80020005 at 0"},
      {item, {u"Answers", put_reference, {none}}, "EMPTY"},
      {item, {u"Answers", get}, "OBJECT none"},
      {merge, {u"TemplateIn", put_reference, {test}}, "80020005 at 0"},
      {test, {u"QuestionType", method, {u"MC"}}, "I4 3"},
      {test->Questions, {u"Add", method, {none}}, "BOOL 0", {"91" + not_set + "clsHEDROTestQuestions.Add"}},
      {merge->Tests, {u"Add", method, {none}}, "EMPTY", {"91" + not_set + "clsHEDROTests.Add"}},
      {abc(),
       {u"AddArray", method, {Array<String>()}},
       "BOOL 0",
       {"9 Subscript out of range: HEDRO34 - clsHEDROTestStrings.AddArray"}},
      // A failure that the member does not trap is told to the caller.
      {platform, {u"RegisterClass", method, {u"x", none}}, "80020009 800A005B HEDRO34: Object variable not set"},
      {platform, {u"MessageBox", put_reference, {test}}, "80020009 800A000D HEDRO34: Type mismatch"},
      {platform, {u"Version", get}, "BSTR " + std::string(version)},
      {platform, {u"Version", put_value, {u"9.9.9"}}, "80020003"},
      {test, {u"SetError", method, {none}}, "BOOL 0"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(run(identity_of(row.object).get(), row.call), row.outcome) << to_utf8(row.call.member);
    EXPECT_EQ(recorder.take(), row.reports) << to_utf8(row.call.member);
  }
}

// `test.Questions(1)` in one call, as scripts send it: a property without arguments hands them to its object's default member.
// A value in each property that takes one, each its own: none is another's, and none gets lost. Flags are all set, and all cleared.
TEST_F(Component, EveryPropertyKeepsItsOwnValue) {
  const auto value_of = [](const Member& member, std::int32_t number, bool flag) -> Variant {
    switch (member.type.kind) {
      case Kind::Boolean: return flag;
      case Kind::Int16:
      case Kind::Int32:
      case Kind::Float:
      case Kind::Double: return number;
      case Kind::Text: return decimal(number);  // of two digits: the shortest property holds no more
      default: return {};
    }
  };
  const Held<IDispatch> objects[] = {
      identity_of(make<clsHEDRO>()),     identity_of(make<clsHEDROTest>()),  identity_of(question(u"q")),
      identity_of(make<FormRegion>()),   identity_of(make<FormQuestion>()),  identity_of(make<DataDocument>()),
      identity_of(make<DataQuestion>()), identity_of(make<DataObjective>()), identity_of(make<DataVersions>())};
  for (const auto& object : objects) {
    const ClassTable& table = *table_of(*own_object(object.get()));
    for (const bool flag : {true, false}) {
      Lines written;
      Lines kept;
      for (const auto way : {put_value, get}) {
        std::int32_t number = 9;
        for (const Member& member : table.members) {
          const Variant value = value_of(member, ++number, flag);
          if (member.write == nullptr || member.read == nullptr || member.count > 0 || value == Variant()) continue;
          const String name(member.name);
          OwnedVariant result;
          const std::string outcome =
              run(object.get(), {name.c_str(), way, way == get ? std::vector<Variant>() : std::vector{value}},
                  result.get());
          if (way == put_value) {
            EXPECT_EQ(outcome, "EMPTY") << to_utf8(name);
            written.push_back(to_utf8(name + u" " + to_text(value)));
          } else {
            kept.push_back(to_utf8(name + u" " + to_text(variant_of(*result))));
          }
        }
      }
      EXPECT_EQ(kept, written) << to_utf8(table.name);
    }
  }
}

TEST_F(Component, HandsArgumentsToTheDefaultMember) {
  constexpr std::uint16_t read = method | get;
  Recorder recorder;
  const auto test = make<clsHEDROTest>();
  for (const char16_t* id : {u"q", u"r"}) test->Questions->Add(question(id));
  test->TrueFalseScale = abc();
  test->Sequences->AddDefault(test->Questions);
  const auto item = test->Questions->Item(2);
  item->Answers = nullptr;
  const auto document = make<DataDocument>();
  document->Questions()->Add(make<DataQuestion>());
  const auto merge = make<clsHEDRO>();
  const auto host = Host::create();
  host->answer = 7;
  merge->TemplateIn = as<TIBTemplate>(host);
  merge->WENKTD = document;
  const struct {
    Ref<Object> object;
    Call call;
    std::string outcome;
    Lines host = {};
  } rows[] = {
      {test, {u"TrueFalseScale", read, {2}}, "BSTR b"},
      {test, {u"TrueFalseScale", get, {u"K"}}, "BSTR b"},
      {test, {u"TrueFalseScale", put_value, {2, u"X"}}, "EMPTY"},
      {test, {u"TrueFalseScale", get, {2}}, "BSTR X"},
      {test, {u"Questions", read, {u"r"}}, "OBJECT"},
      {merge, {u"WENKTD", read, {1}}, "OBJECT"},  // by the document's default member `Questions`
      {merge, {u"TemplateIn", read, {3}}, "I4 7", {"(I4 3)"}},
      {merge, {u"TemplateIn", put_value, {3, u"x"}}, "EMPTY", {"PUT (I4 3, BSTR x)"}},
      // What is wrong with the arguments the default member says.
      {test, {u"TrueFalseScale", read, {1, 2}}, "8002000E"},
      {item, {u"CorrectAnswers", read, {40000}}, "8002000A at 0"},
      {test, {u"Questions", put_reference, {1, item}}, "80020003"},
      {document, {u"Versions", read, {1}}, "80020003"},  // an object without one
      {item, {u"Answers", read, {1}}, "80020009 800A005B HEDRO34: Object variable not set"},
      // No such calls.
      {test, {u"Questions", method, {1}}, "80020003"},
      {test, {u"Title", read, {1}}, "8002000E"},
      {test, {u"Title", put_value, {1, u"x"}}, "8002000E"},
      {test, {u"Copy", read, {1}}, "8002000E"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(run(identity_of(row.object).get(), row.call), row.outcome) << to_utf8(row.call.member);
    EXPECT_EQ(host->take(), row.host) << to_utf8(row.call.member);
  }

  OwnedVariant found;
  EXPECT_EQ(run(identity_of(test).get(), {u"Questions", read, {2}}, found.get()), "OBJECT");
  EXPECT_EQ(own_object(found->pdispVal), item);
  // `sequence(2)`, with the argument by position, by reference, under its number, and under none that is there.
  const Held<IDispatch> sequence = identity_of(test->Sequences->Item(1));
  std::int32_t two = 2;
  DISPID id = 0;
  VARIANT argument{};
  put(argument, two);
  EXPECT_EQ(invoke(sequence.get(), DISPID_VALUE, read, {&argument, nullptr, 1, 0}), "I4 2");
  argument.vt = VT_BYREF | VT_I4;
  argument.plVal = &two;
  EXPECT_EQ(invoke(sequence.get(), DISPID_VALUE, read, {&argument, nullptr, 1, 0}), "I4 2");
  EXPECT_EQ(invoke(sequence.get(), DISPID_VALUE, read, {&argument, &id, 1, 1}), "I4 2");
  id = 1;
  EXPECT_EQ(invoke(sequence.get(), DISPID_VALUE, read, {&argument, &id, 1, 1}), "80020004 at 0");
  EXPECT_EQ(invoke(sequence.get(), DISPID_VALUE, read, {nullptr, nullptr, 1, 0}), "80070057");
  EXPECT_EQ(recorder.take(), Lines());
}

}  // namespace
}  // namespace hedro34::testing::component
