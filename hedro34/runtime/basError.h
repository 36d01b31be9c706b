// The one way on which failures leave the library. An operation runs its steps inside `trap`; a failure there is reported
// once, through `RaiseError`, and the operation returns normally with its result as it stood. Reports go to the error object
// that the host gave through `SetError`, or into a message box when there is none.
#pragma once

#include <cstdint>
#include <optional>

#include "hedro34/base/variant.h"

// A function that the optimiser must not look into: it would conclude from a body that cannot throw that none of its calls
// does, but the handler of a native fault throws out of any instruction.
#if defined(__GNUC__) && !defined(__clang__)
#define HEDRO34_OPAQUE [[gnu::noipa]]
#else
#define HEDRO34_OPAQUE
#endif

namespace hedro34 {

// Where a failure happened: the class or module and the operation. As text "HEDRO34 - clsHEDROTest.Clear".
struct HEDRO34_API Location {
  const char16_t* owner;
  const char16_t* operation;
  bool with_library = true;  // the text starts with the library's name

  String text() const;
};

// Stores the host's error object for the calling thread, in place of the one before; an empty reference takes it away. Gives
// whether the reference is not empty. The object is held until the thread ends. Failure 7 when memory is gone.
HEDRO34_API bool set_error_object(const Ref<Object>& oErr);

// Makes the storage of the thread's error object, which the first one makes otherwise.
void prepare_thread_for_reports() noexcept;

// Reports a failure. The mouse pointer goes back to its default shape; a line number above 0 is appended to the location as
// "; Line: " and the number; then the error object's method "RaiseError" is called by name with all arguments but `lLine`,
// each by reference, and its result as a 16-bit integer returned. Without an error object, and when the call or the
// conversion fails, a message box shows the report and the result is 0. Never throws, and allocates nothing on the way to the
// error object unless there is a line number. Where memory is gone the box says no more than that.
HEDRO34_API std::int16_t RaiseError(std::int32_t lLine, Variant vNumber, std::int32_t lExtra1, String sDescription,
                                    String sLocation, String sExtra1, String sExtra2, String sExtra3, String sExtra4,
                                    std::int32_t lExtra2, String sExtra5, String sExtra6, String sExtra7,
                                    bool bExtra) noexcept;

// Runs `body(context)`. A failure in it is reported with the location, error line 0, and goes no further; as failure 7 when
// the memory for its words is gone, and without what cannot be made of the words of that. A native fault is a failure where
// the thread was started (modStartup.h).
HEDRO34_API HEDRO34_OPAQUE void run_trapped(const Location& where, void (*body)(void*), void* context) noexcept;

// As `run_trapped`, for the few operations that answer with a neutral value and report nothing. Gives whether the body came
// to its end.
HEDRO34_API HEDRO34_OPAQUE bool run_quietly(void (*body)(void*), void* context) noexcept;

// As `run_quietly`, and gives the failure that ended the body.
HEDRO34_API HEDRO34_OPAQUE std::optional<Failure> run_caught(void (*body)(void*), void* context) noexcept;

// As `run_trapped`, with a function object as body.
template <class Body>
void trap(const Location& where, Body body) {
  run_trapped(
      where, [](void* context) { (*static_cast<Body*>(context))(); }, &body);
}

// As `run_quietly`, with a function object as body.
template <class Body>
bool quietly(Body body) {
  return run_quietly([](void* context) { (*static_cast<Body*>(context))(); }, &body);
}

// For an operation with a result, which `body(result)` changes as it goes: whatever it was when the body ended or failed is
// given back. It starts as the empty value of its type. (The body moves into the inner one: a step less to what it uses.)
//
//   return trap<bool>(here(u"Clear"), [&](auto& result) { ... });
template <class Result, class Body>
Result trap(const Location& where, Body body) {
  Result result{};
  trap(where, [&result, body = std::move(body)]() mutable { body(result); });
  return result;
}

// As `quietly`, with a result like that of `trap`.
template <class Result, class Body>
Result quietly(Body body) {
  Result result{};
  quietly([&result, body = std::move(body)]() mutable { body(result); });
  return result;
}

// As `run_caught`, with a function object as body.
template <class Body>
std::optional<Failure> caught(Body body) {
  return run_caught([](void* context) { (*static_cast<Body*>(context))(); }, &body);
}

}  // namespace hedro34
