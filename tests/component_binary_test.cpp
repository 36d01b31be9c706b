// The binary interface as callers meet it that know nothing but slots and offsets: calls that do not fit, identity, function
// tables, texts, and the component library with its class factories.
#include "hedro34/model/clsHEDROTest.h"
#include "tests/component_support.h"
#include "tests/process.h"

namespace hedro34::testing::component {
namespace {

TEST_F(Component, RefusesCallsThatDoNotFit) {
  const Held<IDispatch> list = identity_of(abc());
  const GUID other = IID_IUnknown;
  VARIANT argument{};
  DISPID id = 0;
  DISPPARAMS nothing{};
  String item(u"Item");
  OLECHAR* names[] = {item.data(), nullptr};
  EXPECT_EQ(list->Invoke(1, other, 0, get, &nothing, nullptr, nullptr, nullptr), DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(list->Invoke(1, IID_NULL, 0, get, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
  EXPECT_EQ(list->Invoke(1, IID_NULL, 0, get, &nothing, nullptr, nullptr, nullptr), S_OK);
  for (const DISPID unknown : {-1, -3, 7, 12, 0x7FFFFFFF, -0x7FFFFFFF}) {  // 7 is where the default member stands
    EXPECT_EQ(invoke(list.get(), unknown, get | method, nothing), "80020003") << unknown;
  }
  EXPECT_EQ(invoke(identity_of(make<clsHEDROTest>()).get(), 0, get, nothing), "80020003");
  EXPECT_EQ(invoke(list.get(), 2, method, {nullptr, nullptr, 1, 0}), "80070057");
  EXPECT_EQ(invoke(list.get(), 2, method, {&argument, nullptr, 1, 1}), "80070057");
  for (const DISPID place : {4, -1, -3, 0x7FFFFFFF}) {
    id = place;
    EXPECT_EQ(invoke(list.get(), 2, method, {&argument, &id, 1, 1}), "80020004 at 0") << place;
  }

  EXPECT_EQ(list->GetIDsOfNames(other, names, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
  DISPID ids[] = {5, 5};
  EXPECT_EQ(list->GetIDsOfNames(IID_NULL, names, 2, 0, ids), E_INVALIDARG);
  EXPECT_EQ(ids[0], DISPID_UNKNOWN);
}

TEST_F(Component, AnObjectHasOneIdentity) {
  const auto test = make<clsHEDROTest>();
  const Held<IDispatch> object = identity_of(test);
  EXPECT_EQ(own_object(object.get()), test);
  OwnedVariant first, second;
  run(object.get(), {u"Questions", get}, first.get());
  run(object.get(), {u"Questions", get}, second.get());
  EXPECT_EQ(first->pdispVal, second->pdispVal);
  EXPECT_EQ(own_object(first->pdispVal), test->Questions);
  for (const GUID& iid : {IID_IUnknown, IID_IDispatch, table_of(*test)->interface_id}) {
    EXPECT_EQ(query<IDispatch>(object.get(), iid).get(), object.get());
  }
  void* found = &found;
  EXPECT_EQ(object->QueryInterface(table_of(*test)->class_id, &found), E_NOINTERFACE);
  EXPECT_EQ(found, nullptr);

  // What is assigned comes back as itself, also as an unknown, and from a collection.
  const auto list = abc();
  const Held<IDispatch> given = identity_of(list);
  VARIANT unknown{};
  unknown.vt = VT_UNKNOWN;
  unknown.punkVal = given.get();
  DISPID put_id = DISPID_PROPERTYPUT;
  const DISPID scale = id_of(object.get(), u"YesNoScale");
  EXPECT_EQ(invoke(object.get(), scale, put_reference, {&unknown, &put_id, 1, 1}), "EMPTY");
  EXPECT_EQ(test->YesNoScale, list);
  OwnedVariant third;
  EXPECT_EQ(run(object.get(), {u"YesNoScale", get}, third.get()), "OBJECT");
  EXPECT_EQ(third->pdispVal, given.get());
}

// A caller without these declarations: slots of the function tables, and texts by their bytes.
TEST_F(Component, HasTheStandardSlotsAndTexts) {
  using Function = void (*)();
  const auto table_of_functions = [](void* object) { return value_at<const Function*>(object); };
  const Held<IDispatch> held = identity_of(abc());
  void* const object = held.get();
  const Function* const slots = table_of_functions(object);
  void* found = nullptr;
  EXPECT_EQ(
      reinterpret_cast<HRESULT(HEDRO34_CALL*)(void*, const GUID*, void**)>(slots[0])(object, &IID_IUnknown, &found),
      S_OK);
  EXPECT_EQ(found, object);
  EXPECT_EQ(reinterpret_cast<std::uint32_t(HEDRO34_CALL*)(void*)>(slots[1])(object), 3u);
  EXPECT_EQ(reinterpret_cast<std::uint32_t(HEDRO34_CALL*)(void*)>(slots[2])(object), 2u);
  reinterpret_cast<std::uint32_t(HEDRO34_CALL*)(void*)>(slots[2])(object);
  std::uint32_t count = 7;
  EXPECT_EQ(reinterpret_cast<HRESULT(HEDRO34_CALL*)(void*, std::uint32_t*)>(slots[3])(object, &count), S_OK);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(reinterpret_cast<HRESULT(HEDRO34_CALL*)(void*, std::uint32_t, std::uint32_t, void**)>(slots[4])(object, 0,
                                                                                                            0, &found),
            DISP_E_BADINDEX);
  String name = u"Count";
  char16_t* names[] = {name.data()};
  std::int32_t id = 0;
  EXPECT_EQ(reinterpret_cast<HRESULT(HEDRO34_CALL*)(void*, const GUID*, char16_t**, std::uint32_t, std::uint32_t,
                                                    std::int32_t*)>(slots[5])(object, &IID_NULL, names, 1, 0, &id),
            S_OK);
  EXPECT_EQ(id, 1);
  DISPPARAMS nothing{};
  unsigned char result[24] = {};
  EXPECT_EQ(reinterpret_cast<HRESULT(HEDRO34_CALL*)(void*, std::int32_t, const GUID*, std::uint32_t, std::uint16_t,
                                                    void*, void*, void*, std::uint32_t*)>(slots[6])(
                object, id, &IID_NULL, 0, 2, &nothing, result, nullptr, nullptr),
            S_OK);
  EXPECT_EQ(value_at<std::uint16_t>(result), 3);
  EXPECT_EQ(value_at<std::int32_t>(result + 8), 3);

  const BSTR text = SysAllocStringLen(u"a\0b", 3);
  const char* const bytes = static_cast<const char*>(static_cast<const void*>(text));
  EXPECT_EQ(value_at<std::uint32_t>(bytes - 4), 6u);
  EXPECT_EQ(std::string(bytes, 8), std::string("a\0\0\0b\0\0\0", 8));
  SysFreeString(text);
}

// The component as a host loads it.
TEST(ComponentLibrary, GivesItsClasses) {
  const String library = from_utf8(HEDRO34_COMPONENT);
  const auto class_object =
      function_in<HRESULT HEDRO34_CALL(const GUID&, const GUID&, void**)>(library, "DllGetClassObject");
  const auto can_unload = function_in<HRESULT HEDRO34_CALL()>(library, "DllCanUnloadNow");
  EXPECT_EQ(can_unload(), S_OK);
  const auto factory_of = [&](const GUID& id) {
    void* factory = nullptr;
    return class_object(id, IID_IClassFactory, &factory) == S_OK ? static_cast<IClassFactory*>(factory) : nullptr;
  };
  const auto unload = [&](HRESULT expected) { EXPECT_EQ(can_unload(), expected); };
  void* object = &object;
  for (const ClassTable& table : library_classes()) {
    const auto factory = Held<IClassFactory>::taken(factory_of(table.class_id));
    EXPECT_EQ(static_cast<bool>(factory), table.create != nullptr) << to_utf8(table.name);
    if (!factory) {
      EXPECT_EQ(class_object(table.class_id, IID_IUnknown, &object), CLASS_E_CLASSNOTAVAILABLE);
      continue;
    }
    unload(S_FALSE);
    EXPECT_EQ(factory->CreateInstance(nullptr, table.interface_id, &object), S_OK);
    EXPECT_EQ(id_of(static_cast<IDispatch*>(object), u"_no_member"), DISP_E_UNKNOWNNAME);
    EXPECT_FALSE(own_object(static_cast<IDispatch*>(object)));  // another copy's
    static_cast<IDispatch*>(object)->Release();
  }
  unload(S_OK);
  const GUID& known = library_classes()[0].class_id;
  EXPECT_EQ(class_object(IID_NULL, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(class_object(known, IID_IDispatch, &object), E_NOINTERFACE);
  IClassFactory* const factory = factory_of(known);
  EXPECT_EQ(factory->CreateInstance(factory, IID_IDispatch, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  using Slot = HRESULT (*)(void*, ...);
  const auto* const slots = value_at<const Slot*>(factory);
  EXPECT_EQ(reinterpret_cast<HRESULT(HEDRO34_CALL*)(void*, void*, const GUID*, void**)>(slots[3])(
                factory, nullptr, &IID_IUnknown, &object),
            S_OK);
  static_cast<IUnknown*>(object)->Release();
  EXPECT_EQ(reinterpret_cast<HRESULT(HEDRO34_CALL*)(void*, std::int32_t)>(slots[4])(factory, 1), S_OK);
  EXPECT_EQ(factory->Release(), 0u);
  unload(S_FALSE);
  IClassFactory* const again = factory_of(known);
  EXPECT_EQ(again->LockServer(0), S_OK);
  again->Release();
  unload(S_OK);
}

}  // namespace
}  // namespace hedro34::testing::component
