// Memory over many merges, and over loading and unloading the component many times: `memory merges COUNT`, `memory loads COUNT
// LIBRARY`. A line for the state after a tenth of them and one for the end: bytes in use, resident bytes.
#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

#include "hedro34/component/binary.h"
#include "hedro34/component/classes.h"
#include "hedro34/component/held.h"
#include "hedro34/runtime/modStartup.h"
#include "tests/deep/road.h"
#include "tests/failing_host.h"

namespace {

using namespace hedro34;
using namespace hedro34::testing;

void require(bool holds, const char* what) {
  if (holds) return;
  std::printf("memory: %s\n", what);
  std::exit(1);
}

void tell_state() {
  malloc_trim(0);  // what is free goes back to the system, so that the resident bytes are those that something holds
  long pages = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  std::printf("%zu %ld\n", mallinfo2().uordblks, resident * sysconf(_SC_PAGESIZE));
}

// Runs a step so many times; the first tenth warms up what is kept on purpose.
template <class Step>
void repeat(int count, Step step) {
  for (int i = 1; i <= count; ++i) {
    step(i);
    if (i == count / 10 || i == count) tell_state();
  }
}

// Merges with one merge object; among them one of a new one, failures at each call of a host in turn, and whole roads with page and
// files.
void merges(int count) {
  const String samples = u"examples/versions";
  const String folder = std::filesystem::temp_directory_path().u16string() + u"/hedro34-memory-" + decimal(getpid());
  std::filesystem::create_directory(std::filesystem::path(folder));
  const auto reports = make<Reports>();
  const auto form = make<FormTemplate>();
  require(form->Load(samples + u"/unit.form.json"), "the form cannot be read; run this in the folder of the sources");
  const auto give = [&](clsHEDRO& merge) {
    merge.TemplateIn = form;
    merge.TemplateOut = make<FormTemplate>();
    merge.SequenceQuestion = 1;
    merge.Verbose = false;
    for (const char16_t version : StringView(u"ab")) {
      const auto test = make<clsHEDROTest>();
      require(test->LoadXML(samples + u"/unit-" + version + u".xml", false, nullptr, false), "a test cannot be read");
      merge.Tests->Add(test);
    }
  };
  const auto lasting = make<clsHEDRO>();
  give(*lasting);
  int calls = 0;  // of a merge
  const auto merge_once = [&](int i) {
    set_error_object(reports);
    reports->lines.clear();
    if (i % 100 == 0) {
      require(whole_road(samples, folder).find("FAILED") == std::string::npos, "a road has failed");
    } else if (i % 10 == 0) {
      const auto fresh = make<clsHEDRO>();
      give(*fresh);
      require(fresh->Merge(), "a merge of a new object has failed");
    } else if (i % 3 == 0) {
      FailingHost host;
      const auto merge = make<clsHEDRO>();
      give(*merge);
      merge->TemplateIn = host.wrap(merge->TemplateIn);
      merge->TemplateOut = host.wrap(merge->TemplateOut);
      host.calls.clear();
      if (calls == 0) {
        require(merge->Merge(), "a host's merge has failed");
        calls = static_cast<int>(host.calls.size());
      } else {
        host.fail_at_call(i % calls + 1);
        require(!merge->Merge() && host.has_failed(), "a failure was passed over");
      }
    } else {
      lasting->SequenceQuestion = 1;
      require(lasting->Merge(), "a merge has failed");
    }
  };
  repeat(count, merge_once);
  std::filesystem::remove_all(std::filesystem::path(folder));
}

using Handlers = std::array<void (*)(int), 6>;
Handlers handlers() {
  Handlers found{};
  constexpr std::array signals = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT};
  for (std::size_t i = 0; i < signals.size(); ++i) {
    struct sigaction action;
    sigaction(signals[i], nullptr, &action);
    found[i] = action.sa_handler;
  }
  return found;
}

const binary::GUID& merge_class() {
  for (const ClassTable& table : library_classes()) {
    if (table.name == u"clsHEDRO") return table.class_id;
  }
  std::abort();
}

// Loads the component, uses an object of it on a thread that ends, and unloads it.
void loads(int count, const char* path) {
  const Handlers before = handlers();
  require(dlclose(dlopen(path, RTLD_NOW | RTLD_LOCAL)) == 0, "the component cannot be loaded");
  require(handlers() == before, "loading alone has installed a handler of signals");
  Handlers first{};
  const auto load_once = [&](int i) {
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    const auto function = [&](const char* name) { return dlsym(library, name); };
    const auto class_object = reinterpret_cast<binary::HRESULT (*)(const binary::GUID&, const binary::GUID&, void**)>(
        function("DllGetClassObject"));
    const auto can_unload = reinterpret_cast<binary::HRESULT (*)()>(function("DllCanUnloadNow"));
    require(class_object != nullptr && can_unload != nullptr, "the component has not its functions");
    std::thread([&] {
      void* found = nullptr;
      require(class_object(merge_class(), binary::IID_IClassFactory, &found) == 0, "no class");
      const auto factory = Held<binary::IClassFactory>::taken(static_cast<binary::IClassFactory*>(found));
      require(factory->CreateInstance(nullptr, binary::IID_IDispatch, &found) == 0, "no object");
      const auto object = Held<binary::IDispatch>::taken(static_cast<binary::IDispatch*>(found));
      require(can_unload() == binary::S_FALSE, "an object that is held does not count");
      binary::OLECHAR name[] = u"SetError";
      binary::OLECHAR* names[] = {name};
      binary::DISPID id = 0;
      require(object->GetIDsOfNames(binary::IID_NULL, names, 1, 0, &id) == 0, "no member SetError");
      OwnedVariant error_object;
      error_object->vt = binary::VT_DISPATCH;
      error_object->pdispVal = Held<binary::IDispatch>(object).detach();  // the thread holds it until it ends
      binary::DISPPARAMS parameters = {error_object.get(), nullptr, 1, 0};
      OwnedVariant result;
      require(object->Invoke(id, binary::IID_NULL, 0, binary::DISPATCH_METHOD, &parameters, result.get(), nullptr,
                             nullptr) == 0,
              "SetError has failed");
    }).join();
    require(can_unload() == binary::S_OK, "an object is left behind");
    require(dlclose(library) == 0, "the component cannot be unloaded");
    if (i == 1) first = handlers();
    require(handlers() == first, "another use has installed another handler of signals");
  };
  repeat(count, load_once);
}

}  // namespace

int main(int, char** arguments) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  if (std::strcmp(arguments[1], "merges") == 0) {
    merges(std::atoi(arguments[2]));
  } else {
    loads(std::atoi(arguments[2]), arguments[3]);
  }
}
