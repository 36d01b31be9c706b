#include "hedro34/component/services.h"

#include <memory>
#include <mutex>
#include <unordered_map>

#include "hedro34/base/immortal.h"
#include "hedro34/component/class_registry.h"
#include "hedro34/component/create_object.h"
#include "hedro34/component/host_document.h"
#include "hedro34/component/host_template.h"
#include "hedro34/platform/file_error.h"
#include "hedro34/platform/platform.h"
#include "hedro34/platform/system_user.h"
#include "hedro34/version.h"

namespace hedro34 {
namespace {

// Services of the platform as objects of the host serve them. The host may replace one in the middle of its call: the object
// lives to the end of it.
template <class Service>
struct Served : Service {
  explicit Served(Ref<Object> server) : object(std::move(server)) {}
  Ref<HostObject> host() const { return ref_cast<HostObject>(object); }

  const Ref<Object> object;
};

struct HostMessageBox final : Served<MessageBox> {
  using Served::Served;
  std::int32_t Show(StringView text, std::int32_t flags, StringView title) override {
    if (const auto box = host()) return box->get<std::int32_t>(u"Show", String(text), flags, String(title));
    return ref_cast<MessageBoxObject>(object)->Show(text, flags, title);
  }
};

struct HostScreen final : Served<Screen> {
  using Served::Served;
  void SetMousePointer(std::int32_t shape) override { host()->call(u"SetMousePointer", shape); }
};

struct HostErrorTexts final : Served<ErrorTexts> {
  using Served::Served;
  String text(std::int32_t number) override { return host()->get<String>(u"Text", number); }
};

// What the host put in the place of a service, and what stood there before.
template <class Service, class HostService>
class Replacement {
 public:
  Ref<Object> object() const { return host_ ? host_->object : nullptr; }

  void put(Service*& service, const Ref<Object>& object) {
    if (service != host_.get()) former_ = service;
    auto host = object ? std::make_unique<HostService>(object) : nullptr;
    service = host ? host.get() : former_;
    std::swap(host_, host);
  }

 private:
  Service* former_ = nullptr;
  std::unique_ptr<HostService> host_;
};

// What the host gave, for the process. It is never destroyed: at the end of the process the host may be gone.
struct Given {
  std::recursive_mutex mutex;  // counting a host's object calls the host
  Replacement<MessageBox, HostMessageBox> box;
  Replacement<Screen, HostScreen> screen;
  Replacement<ErrorTexts, HostErrorTexts> error_texts;
  std::unordered_map<String, Held<binary::IDispatch>, IgnoringCase, IgnoringCase> classes;
  std::unordered_map<String, Held<binary::IClassFactory>, IgnoringCase, IgnoringCase> registered;  // empty: not there
};

Given& given() {
  static Given& it = immortal<Given>();
  return it;
}

[[noreturn]] void cannot_create(StringView name, const FileError& error = {}) {
  constexpr auto number = static_cast<std::int32_t>(FailureNumber::CannotCreateObject);
  String description = String(failure_text(number)) + u": " + String(name);
  if (error.kind != FileError::Kind::None) description += u", " + from_utf8(to_line(error));
  throw Failure(number, description);
}

enum class Need { Must, May };  // whether a class has to be there

// The factory of a class in the class registry, which is asked once for each name; nothing for a class that is not there, or
// that need not be there and that a damaged registry does not mention. Failure 429 for one that cannot be had.
Held<binary::IClassFactory> registered_factory(StringView name, Need need) {
  {
    const std::scoped_lock lock(given().mutex);
    if (const auto found = given().registered.find(String(name)); found != given().registered.end())
      return found->second;
  }
  binary::HRESULT result = binary::CO_E_CLASSSTRING;
  binary::IClassFactory* factory = nullptr;
  if (!class_registry_path().empty()) {
    const FileError before = last_file_error();  // that a class is not registered is no file error of a file
    result = class_factory(name, &factory);
    const FileError error = last_file_error();
    if (need == Need::May && result == binary::REGDB_E_READREGDB && !registry_may_mention(name)) {
      result = binary::CO_E_CLASSSTRING;
    }
    if (result < 0 && result != binary::CO_E_CLASSSTRING) {
      set_file_error(error);
      cannot_create(name, error);
    }
    set_file_error(before);
  }
  const Held<binary::IClassFactory> found = Held<binary::IClassFactory>::taken(factory);
  const std::scoped_lock lock(given().mutex);
  return given().registered.emplace(name, found).first->second;
}

// A new object of a host's class, or nothing when there is no such class. Failure 429 when the class gives none.
Held<binary::IDispatch> create_host_object(StringView name, Need need) {
  Held<binary::IDispatch> factory;
  {
    const std::scoped_lock lock(given().mutex);
    if (const auto found = given().classes.find(String(name)); found != given().classes.end()) factory = found->second;
  }
  if (factory) {
    const Variant made = HostObject(std::move(factory)).get<Variant>(u"CreateInstance");
    const auto* const object = made.get_if<Ref<Object>>();
    if (object == nullptr || !*object) cannot_create(name);
    return identity_of(*object);
  }
  const Held<binary::IClassFactory> registered = registered_factory(name, need);
  if (!registered) return {};
  void* made = nullptr;
  const HostCall running;
  const binary::HRESULT result =
      running.make([&] { return registered->CreateInstance(nullptr, binary::IID_IDispatch, &made); });
  if (result < 0 || made == nullptr) cannot_create(name);
  return Held<binary::IDispatch>::taken(static_cast<binary::IDispatch*>(made));
}

template <class T>
Ref<T> create_host(StringView name) {
  const Held<binary::IDispatch> object = create_host_object(name, Need::Must);
  if (!object) cannot_create(name);
  return serving_as<T>(object);
}

template <class T>
bool is_hosts(const Ref<T>& object) {
  return dynamic_cast<const HostSide*>(object.get()) != nullptr;
}

void require_hosts(const Ref<Object>& service) {
  if (service && !ref_cast<HostObject>(service)) fail(FailureNumber::TypeMismatch);
}

class HostFactories final : public TemplateFactory, public DocumentFactory {
 public:
  HostFactories(TemplateFactory& templates, DocumentFactory& documents)
      : templates_(templates), documents_(documents) {}

  Ref<TIBRegion> region(const Ref<TIBTemplate>& of) override {
    return is_hosts(of) ? create_host<TIBRegion>(u"TIBTemplate81.TIBRegion") : templates_.region(of);
  }
  Ref<WENKtdDocument> document() override {
    const Held<binary::IDispatch> object = create_host_object(u"WENKtd81.WENKtdDocument", Need::May);
    return object ? serving_as<WENKtdDocument>(object) : documents_.document();
  }
  Ref<WENKtdQuestion> question(const Ref<WENKtdDocument>& of) override {
    return is_hosts(of) ? create_host<WENKtdQuestion>(u"WENKtd81.WENKtdQuestion") : documents_.question(of);
  }
  Ref<WENKtdObjective> objective(const Ref<WENKtdDocument>& of) override {
    return is_hosts(of) ? create_host<WENKtdObjective>(u"WENKtd81.WENKtdObjective") : documents_.objective(of);
  }
  Ref<WENKtdOrder> order(const Ref<WENKtdDocument>& of) override {
    return is_hosts(of) ? create_host<WENKtdOrder>(u"WENKtd81.WENKtdOrder") : documents_.order(of);
  }

 private:
  TemplateFactory& templates_;
  DocumentFactory& documents_;
};

}  // namespace

std::int32_t MessageBoxObject::Show(StringView sText, std::int32_t lFlags, StringView sTitle) {
  return system::default_message_box().Show(sText, lFlags, sTitle);
}

Ref<Object> PlatformObject::MessageBox() {
  if (Ref<Object> box = given().box.object()) return box;
  return make<MessageBoxObject>();
}

void PlatformObject::SetMessageBox(const Ref<Object>& value) {
  if (!ref_cast<MessageBoxObject>(value)) require_hosts(value);
  given().box.put(platform().message_box, value);
}

Ref<Object> PlatformObject::Screen() { return given().screen.object(); }

void PlatformObject::SetScreen(const Ref<Object>& value) {
  require_hosts(value);
  given().screen.put(platform().screen, value);
}

Ref<Object> PlatformObject::ErrorTexts() { return given().error_texts.object(); }

void PlatformObject::SetErrorTexts(const Ref<Object>& value) {
  require_hosts(value);
  given().error_texts.put(platform().error_texts, value);
}

String PlatformObject::LastFileError() {
  const FileError& error = last_file_error();
  return error.kind == FileError::Kind::None ? String() : from_utf8(to_line(error));
}

String PlatformObject::Version() { return from_utf8(version); }

void PlatformObject::RegisterClass(StringView sName, const Ref<Object>& oFactory) {
  if (sName.empty()) fail(FailureNumber::InvalidCall);
  if (!oFactory) fail(FailureNumber::ObjectNotSet);
  Held<binary::IDispatch> factory = identity_of(oFactory);
  const std::scoped_lock lock(given().mutex);
  std::swap(given().classes[String(sName)], factory);
}

bool PlatformObject::RevokeClass(StringView sName) {
  Held<binary::IDispatch> factory;  // released behind the lock
  const std::scoped_lock lock(given().mutex);
  const auto found = given().classes.find(String(sName));
  if (found == given().classes.end()) return false;
  factory = std::move(found->second);
  given().classes.erase(found);
  return true;
}

void install_host_factories() {
  static const bool installed = [] {
    Platform& services = platform();
    auto& factories = immortal<HostFactories>(*services.template_objects, *services.document_objects);
    services.template_objects = &factories;
    services.document_objects = &factories;
    return true;
  }();
  static_cast<void>(installed);
}

}  // namespace hedro34
