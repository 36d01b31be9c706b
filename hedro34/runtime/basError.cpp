#include "hedro34/runtime/basError.h"

#include <array>
#include <new>
#include <stdexcept>
#include <utility>

#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"
#include "hedro34/platform/thread_value.h"
#include "hedro34/runtime/fault_trap.h"

namespace hedro34 {
namespace {

struct OfThread {
  Ref<Object> moErr;
};

Ref<Object> error_object() noexcept {
  const OfThread* const of_thread = ThreadValue<OfThread>::get();
  return of_thread != nullptr ? of_thread->moErr : nullptr;
}

// The failure that is being handled, in the library's terms. Foreign exceptions of the standard library keep their words.
Failure current_failure() {
  try {
    throw;
  } catch (const Failure& failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return {7, failure_text(7)};
  } catch (const std::length_error&) {
    return {7, failure_text(7)};
  } catch (const std::exception& exception) {
    return {5, from_utf8(exception.what())};
  } catch (...) {
    return {5, failure_text(5)};
  }
}

// The same where memory may be gone: failure 7 when its words cannot be had, itself without words if need be.
Failure failure_to_report() noexcept {
  Failure result(7, {});
  if (!quietly([&] { result = current_failure(); })) quietly([&] { result.description = failure_text(7); });
  return result;
}

void remove_all(String& text, StringView removed) {
  for (auto at = text.find(removed); at != String::npos; at = text.find(removed, at)) text.erase(at, removed.size());
}

String report_text(const Variant& vNumber, const String& sDescription, const String& sLocation) {
  return u"Error# " + to_text(vNumber) + u": " + sDescription + u", Location: " + sLocation;
}

// Makes ready for the next fault what the last one used up.
void restock() {
  if (faults_of_thread.overflowed) faults_of_thread.overflowed = !restore_end_of_stack();
  if (!faults_of_thread.needs_failure()) return;
  faults_of_thread.making = true;
  quietly([] { make_fault_failure(); });
  faults_of_thread.making = false;
}

void show(StringView text) { platform().message_box->Show(text, box_exclamation, u"Application Error"); }

}  // namespace

String Location::text() const {
  String result = with_library ? u"HEDRO34 - " : u"";
  return result.append(owner).append(u".").append(operation);
}

bool set_error_object(const Ref<Object>& oErr) {
  OfThread* const of_thread = oErr ? ThreadValue<OfThread>::make() : ThreadValue<OfThread>::get();
  if (of_thread == nullptr && oErr) throw std::bad_alloc();
  if (of_thread != nullptr) of_thread->moErr = oErr;
  return static_cast<bool>(oErr);
}

void prepare_thread_for_reports() noexcept { ThreadValue<OfThread>::make(); }

std::int16_t RaiseError(std::int32_t lLine, Variant vNumber, std::int32_t lExtra1, String sDescription,
                        String sLocation, String sExtra1, String sExtra2, String sExtra3, String sExtra4,
                        std::int32_t lExtra2, String sExtra5, String sExtra6, String sExtra7, bool bExtra) noexcept {
  std::int16_t result = 0;
  const std::optional<Failure> inner = caught([&] {
    platform().screen->SetMousePointer(0);
    remove_all(sLocation, u" - HEDRO34");
    if (lLine > 0) sLocation += u"; Line: " + decimal(lLine);
    const Ref<Object> target = error_object();  // lives through the call, whatever the host does with `SetError` in it
    if (!target) return show(report_text(vNumber, sDescription, sLocation));
    // The host gets the words themselves, as it may change them. Copies stay for the box as far as there is memory.
    String description, location;
    quietly([&] {
      description = sDescription;
      location = sLocation;
    });
    description.swap(sDescription);
    location.swap(sLocation);
    std::array<Variant, 13> arguments = {vNumber,
                                         lExtra1,
                                         std::move(description),
                                         std::move(location),
                                         std::move(sExtra1),
                                         std::move(sExtra2),
                                         std::move(sExtra3),
                                         std::move(sExtra4),
                                         lExtra2,
                                         std::move(sExtra5),
                                         std::move(sExtra6),
                                         std::move(sExtra7),
                                         bExtra};
    result = to_int16(target->Call(u"RaiseError", arguments));
  });
  if (!inner) return result;
  String text;
  const bool has_text = quietly([&] {
    String words;
    const bool has_words = quietly([&] { words = platform().error_texts->text(inner->number); });
    if (!has_words) words = failure_text(inner->number);
    text = u"Application error: (#" + decimal(inner->number) + u") " + words +
           u" occurred while trying to display:\r\n\r\n" + report_text(vNumber, sDescription, sLocation);
  });
  quietly([&] { show(has_text ? StringView(text) : u"Application error: (#7) Out of memory"); });
  return 0;
}

// What the body itself held is released on the way into the handler, so before the report and not behind it.
void run_trapped(const Location& where, void (*body)(void*), void* context) noexcept {
  ActiveTrap here(true);
  try {
    here.run(body, context);
    here.leave();
  } catch (...) {
    here.leave();
    restock();
    Failure failure = failure_to_report();
    String location;
    const auto make_location = [&] { location = where.text(); };
    if (!quietly(make_location)) quietly(make_location);
    quietly([&] {
      RaiseError(0, failure.number, 0, std::move(failure.description), std::move(location), {}, {}, {}, {}, 1, {}, {},
                 {}, false);
    });
  }
}

bool run_quietly(void (*body)(void*), void* context) noexcept {
  ActiveTrap here(false);
  try {
    here.run(body, context);
    here.leave();
    return true;
  } catch (...) {
    here.leave();
    restock();
    return false;
  }
}

std::optional<Failure> run_caught(void (*body)(void*), void* context) noexcept {
  ActiveTrap here(false);
  try {
    here.run(body, context);
    here.leave();
    return {};
  } catch (...) {
    here.leave();
    restock();
    return failure_to_report();
  }
}

}  // namespace hedro34
