// Real faults, each by the instruction or the access that makes it, and the host that runs them inside an operation.
#pragma once

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
  const char* report;          // number and name
  bool reaches_frames = true;  // the frames between fault and operation are left with their destructors
};
std::vector<Provocation> provocations();  // those of the system among them
std::vector<Provocation> provocations_of_system();

extern volatile int* volatile null;
void read_null();
int recurse_for_ever(int depth);  // each level holds a `Counted`
void touch_the_next_100_kb();     // where the stack is to run full, and not in an allocation, which would keep its lock
void may_throw();
void fault_without_the_flags();  // compiled like a host's code, with a destructor in the faulting frame

// Clears mask bits of both floating-point units while it lives: 1 invalid, 2 denormal, 4 division by zero, 8 overflow,
// 16 underflow, 32 inexact.
class Unmasked {
 public:
  explicit Unmasked(std::uint32_t faults);
  ~Unmasked();
  Unmasked(const Unmasked&) = delete;
  Unmasked& operator=(const Unmasked&) = delete;

  static std::uint32_t vector_modes();  // without the flags
  static std::uint16_t control_word();
  static void set(std::uint32_t vector_modes, std::uint16_t control_word);

 private:
  std::uint32_t vector_modes_;
  std::uint16_t control_word_;
};

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

// Loads a file through a host that does the deed; gives the reports.
std::vector<std::string> load(clsHEDROTest& test, const std::function<void()>& deed);

// For the whole program, before the library starts: the handlers that the tests want to be there before it.
void install_former_handlers();

// Whether a fault outside operations, with whatever traps are left behind, gets to the handler that was there.
bool null_reaches_former_handler();

// Runs the deed on a thread that was started, with such a stack.
void on_thread(std::size_t stack_size, void (*deed)());

}  // namespace hedro34::testing
