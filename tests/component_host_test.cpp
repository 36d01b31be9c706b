// Objects of a host that are called by name: its error object and message box, its failures, and the classes from which the
// library makes what it adds to a host's templates and documents.
#include "hedro34/component/conversion.h"
#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "tests/component_support.h"
#include "tests/process.h"

namespace hedro34::testing::component {
namespace {

const std::string duplicate =
    "Error# 457: This key is already associated with an element of this collection, Location: HEDRO34 - "
    "clsHEDROTestQuestions.Add";

// A failure that is reported at clsHEDROTestQuestions.Add.
void add_twice() {
  auto questions = model::questions({u"q"});
  EXPECT_FALSE(questions->Add(model::question(u"q")));
}

HRESULT fail_with(EXCEPINFO* exception, HRESULT code, StringView description) {
  exception->scode = code;
  exception->bstrDescription = bstr_of(description);
  return DISP_E_EXCEPTION;
}

TEST_F(Component, TheErrorObjectHearsOfAFailure) {
  Recorder boxes;
  const auto host = Host::create();
  const Held<IDispatch> test = identity_of(make<clsHEDROTest>());
  EXPECT_EQ(run(test.get(), {u"SetError", method, {as_object(host)}}), "BOOL -1");
  add_twice();
  EXPECT_EQ(host->take(),
            Lines{"RaiseError(&VARIANT I4 457, &I4 0, &BSTR This key is already associated with an element of this "
                  "collection, &BSTR HEDRO34 - clsHEDROTestQuestions.Add, &BSTR , &BSTR , &BSTR , &BSTR , &I4 1, &BSTR "
                  ", &BSTR , &BSTR , &BOOL 0)"});

  const auto replace_texts = [](const std::vector<VARIANT*>& arguments) {
    for (const std::size_t i : {2u, 3u, 4u}) {
      SysFreeString(*arguments[i]->pbstrVal);
      *arguments[i]->pbstrVal = i == 4 ? nullptr : bstr_of(u"other");
    }
    put(*arguments[0]->pvarVal, StringView(u"a text now"));
  };
  const auto undelivered = [](const std::string& words) {
    return Lines{"box 48 \"Application Error\": Application error: (#" + words +
                 " occurred while trying to display:\r\n\r\n" + duplicate};
  };
  const auto answering = [](const Variant& value) {
    return [value](auto, VARIANT* result, EXCEPINFO*) { return put(*result, value), S_OK; };
  };
  const struct {
    Host::Answer answer;
    Lines boxes;
  } rows[] = {
      {answering(u" 12 "), {}},
      {answering(Array<String>::of({u"x"})), undelivered("13) Type mismatch")},
      {answering(70000), undelivered("6) Overflow")},
      {[](auto, auto, auto) { return DISP_E_MEMBERNOTFOUND; },
       undelivered("438) Object doesn't support this property or method")},
      {[](auto, auto, EXCEPINFO* exception) { return fail_with(exception, result_code(0x800A0006), u"Too much"); },
       undelivered("6) Overflow")},
      {[](auto, auto, auto) -> HRESULT { throw Failure(9, u""); }, undelivered("9) Subscript out of range")},
      {[](auto, auto, auto) -> HRESULT { throw 1; }, undelivered("5) Invalid procedure call or argument")},
      {[&](const auto& arguments, auto, auto) { return replace_texts(arguments), S_OK; }, {}},
      {[&](const auto& arguments, auto, EXCEPINFO* exception) {
         replace_texts(arguments);
         return fail_with(exception, result_code(0x800A0009), u"");
       },
       undelivered("9) Subscript out of range")},
  };
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    host->members["RaiseError"] = rows[i].answer;
    add_twice();
    EXPECT_EQ(boxes.take(), rows[i].boxes) << "row " << i;
  }
  // What the method writes into its arguments comes back.
  Variant changed[] = {1, 2, u"kept", true, u"replaced"};
  host->members["Change"] = [](const std::vector<VARIANT*>& arguments, auto, auto) {
    put(*arguments[0]->pvarVal, StringView(u"text"));
    *arguments[1]->plVal = -2;
    *arguments[3]->pboolVal = 0;
    SysFreeString(std::exchange(*arguments[4]->pbstrVal, bstr_of(u"new")));
    return S_OK;
  };
  EXPECT_EQ(as_object(host)->Call(u"Change", changed), Variant());
  EXPECT_EQ(std::vector(std::begin(changed), std::end(changed)),
            (std::vector<Variant>{u"text", -2, u"kept", false, u"new"}));
  host->members.clear();
  host->closed = true;
  const auto without = Host::create();  // an object that never heard of the method
  without->closed = true;
  EXPECT_EQ(run(test.get(), {u"SetError", method, {as_object(without)}}), "BOOL -1");
  add_twice();
  EXPECT_EQ(boxes.take(), undelivered("438) Object doesn't support this property or method"));
  EXPECT_EQ(host->count, 1u);
}

TEST_F(Component, TheErrorObjectMayLetGoDuringTheCall) {
  Recorder boxes;
  auto host = Host::create();
  const Held<IDispatch> test = identity_of(make<clsHEDROTest>());
  const Folder folder;
  const String path =
      folder.write("a.xml", "<examview><question question-id='q'/><question question-id='q'/></examview>");
  Held<IDispatch> loading = identity_of(make<clsHEDROTest>());
  host->members["RaiseError"] = [&](auto, VARIANT* result, EXCEPINFO*) {
    loading = Held<IDispatch>();
    EXPECT_EQ(run(test.get(), {u"SetError", method, {none}}), "BOOL 0");
    put(*result, std::int16_t{1});
    return S_OK;
  };
  EXPECT_EQ(run(test.get(), {u"SetError", method, {as_object(host)}}), "BOOL -1");
  EXPECT_EQ(run(loading.get(), {u"LoadXML", method, {path}}), "BOOL -1");  // it goes on behind the report
  EXPECT_FALSE(loading);
  EXPECT_EQ(host->count, 1u);
  add_twice();
  EXPECT_EQ(boxes.take(), Lines{"box 48 \"Application Error\": " + duplicate});
}

HRESULT HEDRO34_CALL say_late(EXCEPINFO* exception) { return fail_with(exception, E_FAIL, u"Said late"), S_OK; }

TEST_F(Component, AHostsFailureKeepsItsNumberAndWords) {
  const auto host = Host::create();
  const HostObject object{Held<IDispatch>(host.get())};
  const auto failure = [&] {
    const auto found = caught([&] { object.get<Variant>(u"Any"); });
    return found ? std::to_string(found->number) + " " + to_utf8(found->description) : "none";
  };
  const std::pair<HRESULT, std::string> rows[] = {
      {DISP_E_UNKNOWNNAME, "438 Object doesn't support this property or method"},
      {DISP_E_BADPARAMCOUNT, "450 Wrong number of arguments or invalid property assignment"},
      {DISP_E_PARAMNOTOPTIONAL, "450 Wrong number of arguments or invalid property assignment"},
      {DISP_E_TYPEMISMATCH, "13 Type mismatch"},
      {DISP_E_OVERFLOW, "6 Overflow"},
      {DISP_E_BADINDEX, "9 Subscript out of range"},
      {E_OUTOFMEMORY, "7 Out of memory"},
      {result_code(0x800A005B), "91 Object variable not set"},
      {E_FAIL, "-2147467259 The object's call failed with result code 0x80004005"},
      {S_FALSE, "none"},
  };
  for (const auto& [code, expected] : rows) {
    host->code = code;
    EXPECT_EQ(failure(), expected);
  }
  host->members["Any"] = [](auto, auto, EXCEPINFO* exception) {
    return fail_with(exception, result_code(0x800A0046), u"Access denied by the host");
  };
  EXPECT_EQ(failure(), "70 Access denied by the host");
  host->members["Any"] = [](auto, auto, EXCEPINFO* exception) {
    exception->wCode = 1004;
    exception->bstrSource = bstr_of(u"a host");
    exception->bstrHelpFile = bstr_of(u"help");
    return DISP_E_EXCEPTION;
  };
  EXPECT_EQ(failure(), "1004 Unknown error");
  host->members["Any"] = [](auto, auto, EXCEPINFO* exception) {
    exception->pfnDeferredFillIn = &say_late;
    return DISP_E_EXCEPTION;
  };
  EXPECT_EQ(failure(), "-2147467259 Said late");
}

TEST_F(Component, ObjectsComeBackAsThemselves) {
  const auto host = Host::create();
  const auto merge = make<clsHEDRO>();
  const Held<IDispatch> object = identity_of(merge);
  OwnedVariant read;
  EXPECT_EQ(run(object.get(), {u"TemplateIn", put_reference, {as_object(host)}}), "EMPTY");
  EXPECT_EQ(run(object.get(), {u"TemplateIn", get}, read.get()), "OBJECT");
  EXPECT_EQ(read->pdispVal, host.get());
  host->agreeable = true;  // one that says yes to every interface is none of the library's objects
  EXPECT_EQ(run(object.get(), {u"TemplateIn", put_reference, {as_object(host)}}), "EMPTY");
  EXPECT_EQ(host->count, 3u);  // with `host` and `read`

  // A host hands out the library's own form and document: no adapter stands before them.
  const auto own = make<FormTemplate>();
  host->has("Copy", own);
  EXPECT_EQ(merge->TemplateIn->Copy(true), own);
  EXPECT_EQ(run(object.get(), {u"TemplateOut", put_reference, {own}}), "EMPTY");
  EXPECT_EQ(merge->TemplateOut, own);
  EXPECT_EQ(run(object.get(), {u"Tests", put_reference, {as_object(host)}}), "80020005 at 0");
  EXPECT_EQ(host->take(), Lines{"Copy(BOOL -1)"});

  // A host that lets go of itself while it is called.
  host->has("PageCount", 3);
  host->members["Clear"] = [&](auto, auto, auto) {
    read = OwnedVariant();
    merge->TemplateIn = {};
    return S_OK;
  };
  merge->TemplateIn->Clear();
  EXPECT_EQ(host->count, 1u);
}

TEST_F(Component, AHostReplacesTheMessageBox) {
  Recorder recorder;
  MessageBox* const former = platform().message_box;
  const Held<IDispatch> services = identity_of(make<PlatformObject>());
  const auto host = Host::create();
  const auto replace = [&](const Ref<Object>& box) {
    return run(services.get(), {u"MessageBox", put_reference, {box}});
  };
  EXPECT_EQ(replace(as_object(host)), "EMPTY");
  host->has("Show", u"2");
  EXPECT_EQ(platform().message_box->Show(u"text", 49, u"title"), 2);
  EXPECT_EQ(host->take(), Lines{"Show(BSTR text, I4 49, BSTR title)"});
  {
    OwnedVariant read;
    run(services.get(), {u"MessageBox", get}, read.get());
    EXPECT_EQ(read->pdispVal, host.get());
  }
  // It fails, or answers with what is no button: the report is lost, the operation ends as it should.
  set_error_object(nullptr);
  for (const Variant& answer : {Variant(u"x"), Variant()}) {
    host->has("Show", answer);
    add_twice();
    EXPECT_FALSE(host->take().empty());
  }
  host->members["Show"] = [&](auto, VARIANT* result, EXCEPINFO*) {
    EXPECT_EQ(replace({}), "EMPTY");
    EXPECT_EQ(host->count, 3u);  // the box and the call that run still hold it
    put(*result, 1);
    return S_OK;
  };
  EXPECT_EQ(platform().message_box->Show(u"text", 48, u"title"), 1);
  EXPECT_EQ(platform().message_box, former);
  EXPECT_EQ(host->count, 1u);

  // What stood there when the host came is what is put back.
  const Recorder later;
  EXPECT_EQ(replace(as_object(host)), "EMPTY");
  EXPECT_EQ(replace(make<MessageBoxObject>()), "EMPTY");
  EXPECT_EQ(replace({}), "EMPTY");
  EXPECT_EQ(platform().message_box, &later);
  OwnedVariant read;
  run(services.get(), {u"MessageBox", get}, read.get());
  EXPECT_TRUE(ref_cast<MessageBoxObject>(own_object(read->pdispVal)));
}

TEST_F(Component, AHostGivesThePointerAndTheErrorTexts) {
  const Platform former = platform();
  Recorder recorder;
  const Held<IDispatch> services = identity_of(make<PlatformObject>());
  const auto host = Host::create();
  const auto replace = [&](const char16_t* service, const Ref<Object>& object) {
    return run(services.get(), {service, put_reference, {object}});
  };
  for (const char16_t* service : {u"Screen", u"ErrorTexts"}) {
    EXPECT_EQ(run(services.get(), {service, get}), "OBJECT none");
    EXPECT_EQ(replace(service, make<clsHEDRO>()), "80020009 800A000D HEDRO34: Type mismatch");
    EXPECT_EQ(replace(service, as_object(host)), "EMPTY");
    OwnedVariant read;
    run(services.get(), {service, get}, read.get());
    EXPECT_EQ(read->pdispVal, host.get());
  }
  add_twice();
  EXPECT_EQ(host->take(), Lines{"METHOD SetMousePointer(I4 0)"});
  EXPECT_EQ(recorder.take().size(), 1u);

  // The pointer fails, and so may its text: then the library's own words serve.
  host->members["SetMousePointer"] = [](auto, auto, auto) { return DISP_E_MEMBERNOTFOUND; };
  const std::string own = "Object doesn't support this property or method";
  const std::pair<Host::Answer, std::string> rows[] = {
      {[](auto, VARIANT* result, auto) { return put(*result, StringView(u"not so")), S_OK; }, "not so"},
      {[](auto, VARIANT* result, auto) { return put_object(*result, none), S_OK; }, own},
      {[](auto, auto, auto) { return E_FAIL; }, own},
  };
  for (const auto& [answer, words] : rows) {
    host->members["Text"] = answer;
    add_twice();
    EXPECT_EQ(host->take(), (Lines{"METHOD SetMousePointer(I4 0)", "Text(I4 438)"}));
    EXPECT_EQ(recorder.take(), Lines{"box 48 \"Application Error\": Application error: (#438) " + words +
                                     " occurred while trying to display:\r\n\r\n" + duplicate});
  }

  host->members["SetMousePointer"] = [&](auto, auto, auto) {  // it is taken away in the middle of its call
    EXPECT_EQ(replace(u"Screen", {}), "EMPTY");
    return S_OK;
  };
  add_twice();
  EXPECT_EQ(replace(u"ErrorTexts", {}), "EMPTY");
  EXPECT_EQ(std::pair(platform().screen, platform().error_texts), std::pair(former.screen, former.error_texts));
  EXPECT_EQ(host->count, 1u);
}

TEST_F(Component, MakesObjectsOfTheHostsClasses) {
  const HostFactories factories;
  const Held<IDispatch> services = identity_of(make<PlatformObject>());
  const auto host = Host::create();
  const auto part = Host::create();
  part_of_host = part.get();
  const auto form = as<TIBTemplate>(host);
  const auto document = as<WENKtdDocument>(host);
  TemplateFactory& templates = *platform().template_objects;
  DocumentFactory& documents = *platform().document_objects;
  const std::pair<const char16_t*, std::function<Ref<Object>()>> rows[] = {
      {u"TIBTemplate81.TIBRegion", [&] { return templates.region(form); }},
      {u"WENKtd81.WENKtdQuestion", [&] { return documents.question(document); }},
      {u"WENKtd81.WENKtdObjective", [&] { return documents.objective(document); }},
      {u"WENKtd81.WENKtdOrder", [&] { return documents.order(document); }},
  };
  const auto register_class = [&](const String& name, const Variant& made) {
    const auto factory = Host::create();
    factory->has("CreateInstance", made);
    EXPECT_EQ(run(services.get(), {u"RegisterClass", method, {upper(name), as_object(factory)}}), "EMPTY");
  };
  for (const auto& [name, create] : rows) {
    EXPECT_EQ(failure_of(create), 429) << to_utf8(name);
    register_class(name, as_object(part));
    EXPECT_EQ(Result(create()).text, "part") << to_utf8(name);
    register_class(name, 7);
    EXPECT_EQ(failure_of(create), 429) << to_utf8(name);
    register_class(name, make<clsHEDRO>());
    EXPECT_EQ(failure_of(create), 13) << to_utf8(name);
  }
  const auto own_form = make<FormTemplate>();
  const auto own_document = make<DataDocument>();
  EXPECT_TRUE(ref_cast<FormRegion>(templates.region(own_form)));
  EXPECT_TRUE(ref_cast<DataQuestion>(documents.question(own_document)));
  EXPECT_TRUE(ref_cast<DataObjective>(documents.objective(own_document)));
  EXPECT_TRUE(ref_cast<DataOrder>(documents.order(own_document)));
  for (const auto& [name, create] : rows) {
    EXPECT_EQ(run(services.get(), {u"RevokeClass", method, {lower(name)}}), "BOOL -1");
    EXPECT_EQ(run(services.get(), {u"RevokeClass", method, {name}}), "BOOL 0");
    EXPECT_EQ(failure_of(create), 429) << to_utf8(name);
  }

  EXPECT_TRUE(ref_cast<DataDocument>(make<clsHEDRO>()->WENKTD));
  register_class(u"WENKtd81.WENKtdDocument", as_object(part));
  EXPECT_EQ(Result(make<clsHEDRO>()->WENKTD).text, "part");
  register_class(u"WENKtd81.WENKtdDocument", own_document);
  EXPECT_EQ(make<clsHEDRO>()->WENKTD, own_document);
  EXPECT_EQ(run(services.get(), {u"RevokeClass", method, {u"WENKtd81.WENKtdDocument"}}), "BOOL -1");
}

}  // namespace
}  // namespace hedro34::testing::component
