// The guard of a trap and the other entries in assembly.
#include "hedro34/runtime/fault_support.h"

#if defined(HEDRO34_TRANSLATES_FAULTS) && defined(__x86_64__)

// The guard has the trap at 32(%rsp). The thrower finds on the stack what an interrupt would leave, from which the system's
// unwinder takes instruction and stack pointer of the place.
asm(R"(
        .text
        .globl  hedro34_run_guarded
        .def    hedro34_run_guarded; .scl 2; .type 32; .endef
        .seh_proc hedro34_run_guarded
hedro34_run_guarded:
        subq    $40, %rsp
        .seh_stackalloc 40
        .seh_endprologue
        .seh_handler hedro34_on_exception, @except, @unwind
        movq    %r8, 32(%rsp)
        movq    %rcx, %rax
        movq    %rdx, %rcx
        call    *%rax
        nop
        addq    $40, %rsp
        ret
        .seh_endproc

        .globl  hedro34_throw_fault
        .def    hedro34_throw_fault; .scl 2; .type 32; .endef
        .seh_proc hedro34_throw_fault
hedro34_throw_fault:
        .seh_pushframe
        subq    $32, %rsp
        .seh_stackalloc 32
        .seh_endprologue
        call    hedro34_raise_fault
        nop
        ud2
        .seh_endproc
)");

#endif
