// A host whose objects fail on cue: it writes down every call to a template or a document, and one chosen call throws, or does
// what it is told before it goes on.
// What it wraps, and what the library creates meanwhile, is its own.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/forwarding_host.h"

namespace hedro34::testing {

class FailingHost : private CallListener {
 public:
  // The `nth` call of that name, such as "TIBQuestion.SetGraded", from here on fails, once.
  void fail_at(std::string name, int nth) {
    name_ = std::move(name);
    left_ = nth;
  }
  // The same for the `nth` call of whatever name.
  void fail_at_call(int nth) { fail_at({}, nth); }

  // What the chosen call does instead of throwing.
  std::function<void()> action;

  // Whether the chosen call came.
  bool has_failed() const noexcept { return left_ == 0; }

  template <class Object>
  auto wrap(const Ref<Object>& object) {
    return objects_.wrap(object);
  }

  // All calls in order, the failed one too, until they are forgotten.
  std::vector<std::string> calls;
  bool hears_releases = false;  // of these calls are those, too, that end a region, a template or a document

 private:
  void called(std::string_view interface, std::string_view member) override {
    calls.push_back(std::string(interface) + '.' + std::string(member));
    if (left_ == 0 || (!name_.empty() && name_ != calls.back()) || --left_ > 0) return;
    if (!action) throw Failure(1234, u"The host refuses");
    action();
  }
  void released(std::string_view interface) noexcept override {
    const bool is_whole = interface == "TIBRegion" || interface == "TIBTemplate" || interface == "WENKtdDocument";
    if (hears_releases && is_whole) calls.push_back(std::string(interface) + ".Release");
  }

  std::string name_;
  int left_ = 0;
  ForwardingHost objects_{*this};
};

}  // namespace hedro34::testing
