// Real faults, each by the instruction or the access that makes it, and the host that runs them inside an operation.
#pragma once

#include <csetjmp>
#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/platform/platform.h"
#include "hedro34/xml/xml_document.h"
#include "tests/support.h"

namespace hedro34::testing {

struct Provocation {
  const char* name;
  std::function<void()> fault;
  const char* report;  // number and name
};
std::vector<Provocation> provocations();

extern volatile int* volatile null;
void read_null();
int recurse_for_ever(int depth);         // each level holds a `Counted`
void fault_without_the_flags();          // compiled like a host's code, with a destructor in the faulting frame
extern thread_local bool malloc_faults;  // every allocation of the thread does

// So many allocations of the thread succeed, and none after them; below 0 memory does not end.
extern thread_local int allocations_left;

// Counts its destructors, those of the frames that a fault leaves.
struct Counted {
  ~Counted() { ++ended; }
  static thread_local int ended;
};

// While it lives, loading an ExamView file on any thread asks this host for a document, which then does what it is told.
class FaultingHost : public XmlDocumentFactory {
 public:
  explicit FaultingHost(std::function<void()> deed)
      : deed_(std::move(deed)), former_(std::exchange(platform().xml_documents, this)) {}
  ~FaultingHost() override { platform().xml_documents = former_; }
  Ref<IXMLDOMDocument2> document() override {
    const Counted counted;
    deed_();
    return former_->document();
  }

 private:
  std::function<void()> deed_;
  XmlDocumentFactory* former_;
};

// The handlers that were there before the library's: those of SIGSEGV and SIGFPE note the signal and jump back to where
// `outside` was called; SIGILL is ignored, SIGBUS and SIGTRAP have none.
void install_former_handlers();
extern std::string former_handler;  // what it noted
extern sigjmp_buf way_back;
extern volatile bool jumps;  // else the handler of SIGSEGV returns

template <class Deed>
std::string outside(Deed deed) {
  former_handler.clear();
  jumps = true;
  if (sigsetjmp(way_back, 1) == 0) deed();
  jumps = false;
  return former_handler;
}

}  // namespace hedro34::testing
