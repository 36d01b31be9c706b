#include "tests/faults/provoke_windows.h"

#include <windows.h>

#include <utility>

extern "C" void NTAPI RtlRaiseException(::EXCEPTION_RECORD* record);

namespace hedro34::testing {
namespace {

volatile int sink = 0;
constexpr bool has_all_tables = sizeof(void*) == 8;  // the system's own functions among them

void touch_guard_page() {
  struct Page {
    void* memory = VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE | PAGE_GUARD);
    ~Page() { VirtualFree(memory, 0, MEM_RELEASE); }
  } const page;
  sink = *static_cast<volatile char*>(page.memory);
}

// As a host raises one that came up while it looked into another.
void raise_chain() {
  ::EXCEPTION_RECORD inner = {};
  inner.ExceptionCode = STATUS_INVALID_DISPOSITION;
  ::EXCEPTION_RECORD outer = {};
  outer.ExceptionCode = STATUS_INVALID_HANDLE;
  outer.ExceptionFlags = EXCEPTION_NONCONTINUABLE;
  outer.ExceptionRecord = &inner;
  RtlRaiseException(&outer);
}

thread_local DWORD met = 0;
thread_local bool handler_faults = false;

bool is_hosts(const ::EXCEPTION_RECORD& record) {
  if (std::exchange(handler_faults, false)) read_null();
  constexpr DWORD unwinding = 0x06;
  constexpr DWORD of_this_compiler = 0x20474343;
  return (record.ExceptionFlags & unwinding) == 0 && record.ExceptionCode != of_this_compiler;
}

}  // namespace

#ifdef __x86_64__

extern "C" void hedro34_test_host_frame(void (*deed)());
extern "C" char hedro34_test_behind_deed;

extern "C" EXCEPTION_DISPOSITION hedro34_test_host_handler(::EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                                           void*) {
  if (!is_hosts(*record)) return ExceptionContinueSearch;
  met = record->ExceptionCode;
  RtlUnwindEx(frame, &hedro34_test_behind_deed, record, nullptr, context, nullptr);
  return ExceptionContinueSearch;
}

asm(R"(
        .text
        .globl  hedro34_test_host_frame, hedro34_test_behind_deed
        .def    hedro34_test_host_frame; .scl 2; .type 32; .endef
        .seh_proc hedro34_test_host_frame
hedro34_test_host_frame:
        subq    $40, %rsp
        .seh_stackalloc 40
        .seh_endprologue
        .seh_handler hedro34_test_host_handler, @except
        call    *%rcx
hedro34_test_behind_deed:
        nop
        addq    $40, %rsp
        ret
        .seh_endproc
)");

#else

// A host's function with nothing in its registers that an unwinder could follow.
asm(R"(
        .text
        .globl  __ZN7hedro347testing13in_bare_frameEPFvvE
__ZN7hedro347testing13in_bare_frameEPFvvE:
        movl    4(%esp), %eax
        pushl   %ebp
        pushl   %ebx
        pushl   %esi
        pushl   %edi
        xorl    %ebp, %ebp
        movl    $1, %ebx
        movl    $2, %esi
        movl    $3, %edi
        pushl   %ebx
        pushl   %esi
        testl   %eax, %eax
        je      1f
        call    *%eax
1:
        movl    (%ebx), %eax
)");

// No frame pointer, and no data for any unwinder.
extern "C" void hedro34_test_host_frame(void (*deed)());
extern "C" void hedro34_test_host_leave(void* frame, ::EXCEPTION_RECORD* record);

extern "C" EXCEPTION_DISPOSITION hedro34_test_host_handler(::EXCEPTION_RECORD* record, void* frame, CONTEXT*, void*) {
  if (!is_hosts(*record)) return ExceptionContinueSearch;
  met = record->ExceptionCode;
  hedro34_test_host_leave(frame, record);
  return ExceptionContinueSearch;
}

asm(R"(
        .text
        .globl  _hedro34_test_host_frame, _hedro34_test_host_leave
_hedro34_test_host_frame:
        pushl   %ebp
        pushl   %ebx
        pushl   %esi
        pushl   %edi
        movl    20(%esp), %eax
        pushl   $_hedro34_test_host_handler
        pushl   %fs:0
        movl    %esp, %fs:0
        call    *%eax
1:
        popl    %fs:0
        addl    $4, %esp
        popl    %edi
        popl    %esi
        popl    %ebx
        popl    %ebp
        ret
_hedro34_test_host_leave:
        movl    4(%esp), %ebp
        movl    8(%esp), %eax
        pushl   $0
        pushl   %eax
        pushl   $2f
        pushl   %ebp
        call    _RtlUnwind@16
2:
        movl    %fs:0, %esp
        jmp     1b
)");

#endif

std::uint32_t in_host_frame(void (*deed)(), bool with_faulting_handler) {
  met = 0;
  handler_faults = with_faulting_handler;
  hedro34_test_host_frame(deed);
  return met;
}

LONG WINAPI filter_of_host(::EXCEPTION_POINTERS*) { return EXCEPTION_CONTINUE_SEARCH; }

void install_former_handlers() { SetUnhandledExceptionFilter(filter_of_host); }

bool has_filter_of_host() { return SetUnhandledExceptionFilter(filter_of_host) == filter_of_host; }

bool null_reaches_former_handler() { return in_host_frame(read_null) == STATUS_ACCESS_VIOLATION; }

std::vector<Provocation> provocations_of_system() {
  return {
      {"guard page", touch_guard_page, "10001 Guard Page Violation"},
      {"raised", [] { RaiseException(STATUS_INVALID_HANDLE, 0, 0, nullptr); }, "10008 Invalid Handle", has_all_tables},
      {"raised for good", [] { RaiseException(0xC0000001, EXCEPTION_NONCONTINUABLE, 0, nullptr); },
       "10001 Unknown (&HC0000001)", has_all_tables},
      {"a chain of records", raise_chain, "10038 Invalid Disposition"},
  };
}

}  // namespace hedro34::testing
