#include "hedro34/runtime/modvbCodeShieldSupport.h"

#include "hedro34/runtime/fault_filter.h"
#include "hedro34/runtime/fault_trap.h"

namespace hedro34 {
namespace {

thread_local bool mbFilterInstalled = false;

struct Named {
  std::uint32_t code;
  StringView name;
};

constexpr Named names[] = {
    {0x80000001, u"Guard Page Violation"},
    {0x80000002, u"Data Type Misalignment"},
    {0x80000003, u"Breakpoint"},
    {0x80000004, u"Single Step"},
    {0xC0000005, u"Access Violation"},
    {0xC0000006, u"In Page Error"},
    {0xC0000008, u"Invalid Handle"},
    {0xC000001D, u"Illegal Instruction"},
    {0xC0000025, u"Non Continuable Exception"},
    {0xC0000026, u"Invalid Disposition"},
    {0xC000008C, u"Array Bounds Exceeded"},
    {0xC000008D, u"Float Denormal Operand"},
    {0xC000008E, u"Divide By Zero"},
    {0xC000008F, u"Floating Point Inexact Result"},
    {0xC0000090, u"Invalid Operation"},
    {0xC0000091, u"Float Overflow"},
    {0xC0000092, u"Float Stack Check"},
    {0xC0000093, u"Float Underflow"},
    {0xC0000094, u"Integer Divide By Zero"},
    {0xC0000095, u"Integer Overflow"},
    {0xC0000096, u"Privileged Instruction"},
    {0xC00000FD, u"Stack Overflow"},
    {0xC000013A, u"Control-C Exit"},
};

// The name of a code in storage of its own, as the filter must not allocate.
class ExceptionName {
 public:
  explicit ExceptionName(std::uint32_t code) {
    for (const Named& named : names) {
      if (named.code == code) name_ = named.name;
    }
    if (!name_.empty()) return;
    for (std::size_t digit = 0; digit < 8; ++digit) {
      unknown_[first_digit + digit] = u"0123456789ABCDEF"[(code >> (28 - 4 * digit)) & 0xF];
    }
    name_ = {unknown_.data(), unknown_.size()};
  }
  ExceptionName(const ExceptionName&) = delete;
  ExceptionName& operator=(const ExceptionName&) = delete;

  StringView text() const noexcept { return name_; }

 private:
  static constexpr std::size_t first_digit = 11;
  std::array<char16_t, 20> unknown_ = {u'U', u'n', u'k', u'n', u'o', u'w', u'n', u' ', u'(', u'&',
                                       u'H', u'0', u'0', u'0', u'0', u'0', u'0', u'0', u'0', u')'};
  StringView name_;
};

}  // namespace

void InstallExceptionFilter() noexcept {
  if (mbFilterInstalled) return;
  mbFilterInstalled = set_fault_filter(vbcsExceptionFilter);
}

void vbcsExceptionFilter(const EXCEPTION_POINTERS& pointers) {
  EXCEPTION_RECORD record = *pointers.ExceptionRecord;
  while (record.ExceptionRecord != nullptr) record = *record.ExceptionRecord;
  const ExceptionName name(record.ExceptionCode);
  raise_fault(static_cast<std::int32_t>((record.ExceptionCode & 0x8EF) | 0x2710), name.text(), u"vbcsExceptionFilter");
}

String GetExceptionName(std::uint32_t code) { return String(ExceptionName(code).text()); }

bool translates_faults() noexcept { return fault_filter_supported(); }

}  // namespace hedro34
