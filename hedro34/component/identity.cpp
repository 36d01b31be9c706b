#include "hedro34/component/identity.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>

#include "hedro34/component/classes.h"
#include "hedro34/component/host_object.h"
#include "hedro34/component/result_of.h"
#include "hedro34/component/type_info.h"

namespace hedro34 {
namespace {

using namespace binary;

std::atomic<std::int64_t> alive{0};
std::atomic<std::int64_t> locks{0};

// An interface of this library in this process only: the identifier holds an address in it, so that another copy of the
// library, with objects of another make, does not answer to it.
GUID own_interface() noexcept {
  const std::uint64_t address = reinterpret_cast<std::uintptr_t>(&alive);
  GUID result = {0x8C1D6F27, 0x40BE, 0x4A55, {}};
  for (std::size_t i = 0; i < 8; ++i) result.Data4[i] = static_cast<std::uint8_t>(address >> (8 * i));
  return result;
}

// The identity that was last asked for that interface on this thread. An object of the host that answers to every interface
// is told apart by it.
thread_local const void* asked = nullptr;

HRESULT code_of(std::int32_t failure) noexcept {
  switch (failure) {
    case 6: return DISP_E_OVERFLOW;
    case 7: return E_OUTOFMEMORY;
    case 9: return DISP_E_BADINDEX;
    default: return DISP_E_TYPEMISMATCH;
  }
}

// Tells the caller of a failure that the member itself did not trap.
HRESULT tell(const Failure& failure, EXCEPINFO* exception) {
  if (exception != nullptr) {
    constexpr std::uint32_t failures = 0x800A0000u;
    *exception = {};
    exception->scode = failure.number < 0        ? failure.number  // a result code of a host's object
                       : failure.number > 0xFFFF ? E_FAIL
                                                 : result_code(failures | static_cast<std::uint32_t>(failure.number));
    quietly([&] {
      exception->bstrSource = bstr_of(failure.source);
      exception->bstrDescription = bstr_of(failure.description);
    });
  }
  return DISP_E_EXCEPTION;
}

constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

constexpr std::uint16_t puts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

bool sound(const DISPPARAMS& parameters) noexcept {
  const auto [arguments, ids, all, named] = parameters;
  return named <= all && (all == 0 || arguments != nullptr) && (named == 0 || ids != nullptr);
}

// Whether a call of this member is one of the default member of the object that it gives: `test.Questions(1)` is
// `test.Questions.Item(1)`, since `Questions` has no arguments of its own.
bool is_for_the_result(const Member& member, std::uint16_t flags, const DISPPARAMS& parameters) noexcept {
  const std::uint32_t values = (flags & puts) != 0 ? 1 : 0;
  return parameters.cArgs > values && member.count == 0 && member.type.kind == Kind::Object &&
         (member.kinds & DISPATCH_PROPERTYGET) != 0 && (flags & (DISPATCH_PROPERTYGET | puts)) != 0;
}

// Finds out which argument of the member each argument of a call is. `bad` is the index in `parameters` of one that does
// not fit, or `none`.
[[gnu::noinline]] HRESULT assign(const Member& member, const DISPPARAMS& parameters, bool writes,
                                 CallArguments& arguments, std::uint32_t& bad) {
  const std::uint32_t all = parameters.cArgs;
  const std::uint32_t named = parameters.cNamedArgs;
  if (all - named > member.count) return DISP_E_BADPARAMCOUNT;
  for (std::uint32_t i = 0; i < all - named; ++i) arguments.given[i] = &parameters.rgvarg[all - 1 - i];
  for (std::uint32_t i = 0; i < named; ++i) {
    const DISPID id = parameters.rgdispidNamedArgs[i];
    const bool is_value = writes && id == DISPID_PROPERTYPUT;
    if (!is_value && (id < 0 || id >= member.count)) {
      bad = i;
      return DISP_E_PARAMNOTFOUND;
    }
    VARIANT*& target = arguments.given[is_value ? member.count : static_cast<std::size_t>(id)];
    if (target != nullptr) return DISP_E_BADPARAMCOUNT;
    target = &parameters.rgvarg[i];
  }
  for (std::size_t i = 0; i < member.count; ++i) {
    VARIANT*& given = arguments.given[i];
    const VARIANT* const left_out = given != nullptr && is_left_out(*given) ? given : nullptr;
    if (left_out != nullptr) given = nullptr;
    if (given == nullptr && !member.arguments[i].optional) {
      if (left_out != nullptr) bad = static_cast<std::uint32_t>(left_out - parameters.rgvarg);
      return DISP_E_PARAMNOTOPTIONAL;
    }
  }
  return writes && arguments.given[member.count] == nullptr ? DISP_E_PARAMNOTOPTIONAL : S_OK;
}

// The numbers of a member and of arguments of it.
[[gnu::noinline]] HRESULT find_names(const ClassTable& table, std::span<OLECHAR* const> names, std::span<DISPID> ids) {
  std::fill(ids.begin(), ids.end(), DISPID_UNKNOWN);
  if (std::find(names.begin(), names.end(), nullptr) != names.end()) return E_INVALIDARG;
  ids[0] = table.id_of(names[0]);
  const Member* const member = table.member(ids[0]);
  if (member == nullptr) return DISP_E_UNKNOWNNAME;
  HRESULT result = S_OK;
  for (std::size_t i = 1; i < names.size(); ++i) {
    for (std::uint8_t k = 0; k < member->count; ++k) {
      if (NameIndex::equal(member->arguments[k].name, names[i])) ids[i] = k;
    }
    if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

// The memory of an identity that went, for the next one: mostly they come and go one at a time, and the heaps of some systems
// take longer for that than all else in a call.
std::atomic<void*> spare_memory{nullptr};

class Identity final : public IDispatch {
 public:
  static void* operator new(std::size_t size) {
    void* const memory = spare_memory.exchange(nullptr, std::memory_order_acquire);
    return memory != nullptr ? memory : ::operator new(size);
  }
  static void operator delete(void* memory) noexcept {
    void* nothing = nullptr;
    if (!spare_memory.compare_exchange_strong(nothing, memory, std::memory_order_release, std::memory_order_relaxed)) {
      ::operator delete(memory);
    }
  }

  Identity(Ref<Object> object, const ClassTable& table) : object_(std::move(object)), table_(table) {
    object_->set_outside_holder(this);
  }
  ~Identity() { object_->set_outside_holder(nullptr); }

  const Ref<Object>& object() const noexcept { return object_; }

  HRESULT HEDRO34_CALL QueryInterface(const GUID& iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == table_.interface_id) {
      *object = static_cast<IDispatch*>(this);
    } else if (iid == own_interface()) {
      *object = static_cast<IDispatch*>(this);
      asked = *object;
    } else {
      *object = nullptr;
      return result_of([&] {
        *object = further_interface(table_, iid, *this);
        return *object != nullptr ? S_OK : E_NOINTERFACE;
      });
    }
    AddRef();
    return S_OK;
  }
  std::uint32_t HEDRO34_CALL AddRef() override { return ++count_; }
  std::uint32_t HEDRO34_CALL Release() override {
    const std::uint32_t left = --count_;
    if (left == 0) std::unique_ptr<Identity>(this).reset();
    return left;
  }

  HRESULT HEDRO34_CALL GetTypeInfoCount(std::uint32_t* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return result_of([&] {
      *count = has_type_info(table_) ? 1 : 0;
      return S_OK;
    });
  }
  HRESULT HEDRO34_CALL GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return result_of([&] {
      *info = type_info_of(table_);
      return *info != nullptr ? S_OK : DISP_E_BADINDEX;
    });
  }
  HRESULT HEDRO34_CALL GetIDsOfNames(const GUID& iid, OLECHAR** names, std::uint32_t count, LCID, DISPID* ids) override;
  HRESULT HEDRO34_CALL Invoke(DISPID id, const GUID& iid, LCID locale, std::uint16_t flags, DISPPARAMS* parameters,
                              VARIANT* result, EXCEPINFO* exception, std::uint32_t* bad_argument) override;

 private:
  HRESULT call_the_result(const Member& member, LCID locale, std::uint16_t flags, DISPPARAMS& parameters,
                          VARIANT* result, EXCEPINFO* exception, std::uint32_t* bad_argument);

  Alive alive_;  // counted until the object is gone
  Ref<Object> object_;
  const ClassTable& table_;
  std::uint32_t count_ = 0;
};

HRESULT HEDRO34_CALL Identity::GetIDsOfNames(const GUID& iid, OLECHAR** names, std::uint32_t count, LCID, DISPID* ids) {
  if (!(iid == IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  if (count > 1 || names[0] == nullptr) return find_names(table_, {names, count}, {ids, count});
  ids[0] = table_.id_of(names[0]);
  return ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
}

// The arguments go on as they came, with names, references and all; what is wrong with them the default member says.
HRESULT Identity::call_the_result(const Member& member, LCID locale, std::uint16_t flags, DISPPARAMS& parameters,
                                  VARIANT* result, EXCEPINFO* exception, std::uint32_t* bad_argument) {
  const Held<IDispatch> living(this);
  HRESULT code = S_OK;
  const std::optional<Failure> failure = caught([&] {
    CallArguments nothing(member);
    OwnedVariant made;
    member.read(*object_, nothing, *made);
    if (made->pdispVal == nullptr) fail(FailureNumber::ObjectNotSet);
    const HostCall running;
    if ((flags & puts) != 0) result = nullptr;
    code = made->pdispVal->Invoke(DISPID_VALUE, IID_NULL, locale, flags, &parameters, result, exception, bad_argument);
  });
  return failure ? tell(*failure, exception) : code;
}

HRESULT HEDRO34_CALL Identity::Invoke(DISPID id, const GUID& iid, LCID locale, std::uint16_t flags,
                                      DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                      std::uint32_t* bad_argument) {
  if (!(iid == IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  if (result != nullptr) *result = {};
  if (parameters == nullptr) return E_INVALIDARG;
  const Member* const member = table_.member(id);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  if (is_for_the_result(*member, flags, *parameters)) {
    if (!sound(*parameters)) return E_INVALIDARG;
    return call_the_result(*member, locale, flags, *parameters, result, exception, bad_argument);
  }
  const bool writes = (flags & puts) != 0;
  if ((member->kinds & flags) == 0 || (writes && (member->kinds & flags & puts) == 0)) return DISP_E_MEMBERNOTFOUND;
  if (!sound(*parameters)) return E_INVALIDARG;

  if (result == nullptr) {
    OwnedVariant unwanted;
    return Invoke(id, iid, locale, flags, parameters, unwanted.get(), exception, bad_argument);
  }

  CallArguments arguments(*member);
  std::uint32_t bad = none;
  AddRef();  // a host may let go of the object in the middle of the call
  HRESULT code = S_OK;
  const std::optional<Failure> failure = caught([this, member, parameters, writes, result, &arguments, &code, &bad] {
    if (parameters->cArgs > 0 || member->count > 0 || writes)
      code = assign(*member, *parameters, writes, arguments, bad);
    if (code == S_OK) (writes ? member->write : member->read)(*object_, arguments, *result);
  });
  if (failure) [[unlikely]] {
    OwnedVariant half_made;
    std::swap(*half_made, *result);
    if (arguments.converted) {
      code = tell(*failure, exception);
    } else {
      code = code_of(failure->number);
      const VARIANT* const given = arguments.given[arguments.at];
      if (given != nullptr) bad = static_cast<std::uint32_t>(given - parameters->rgvarg);
    }
  }
  if (bad != none && bad_argument != nullptr) *bad_argument = bad;
  Release();
  return code;
}

}  // namespace

Alive::Alive() noexcept { alive.fetch_add(1, std::memory_order_relaxed); }
Alive::~Alive() { alive.fetch_sub(1, std::memory_order_relaxed); }
std::int64_t Alive::count() noexcept {
  return alive.load(std::memory_order_relaxed) + locks.load(std::memory_order_relaxed);
}
void Alive::lock(bool on) noexcept {
  std::int64_t before = locks.load(std::memory_order_relaxed);
  while ((on || before > 0) &&
         !locks.compare_exchange_weak(before, before + (on ? 1 : -1), std::memory_order_relaxed)) {
  }
}

IDispatch* counted_identity_of(const Ref<Object>& object) {
  if (!object) return nullptr;
  auto* identity = static_cast<Identity*>(object->outside_holder());
  if (identity == nullptr) {
    if (const ClassTable* const table = table_of(*object)) {
      identity = std::make_unique<Identity>(object, *table).release();
    }
  }
  if (identity != nullptr) {
    identity->AddRef();
    return identity;
  }
  const auto* const host = dynamic_cast<const HostSide*>(object.get());
  if (host == nullptr) fail(FailureNumber::TypeMismatch);
  return Held<IDispatch>(host->host()).detach();
}

Held<IDispatch> identity_of(const Ref<Object>& object) { return Held<IDispatch>::taken(counted_identity_of(object)); }

Ref<Object> own_object(IUnknown* object) {
  asked = nullptr;
  const Held<IDispatch> found = query<IDispatch>(object, own_interface());
  if (!found || found.get() != asked) return {};
  return static_cast<const Identity*>(found.get())->object();
}

}  // namespace hedro34
