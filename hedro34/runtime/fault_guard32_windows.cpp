// The guard of a trap and the other entries in assembly.
#include "hedro34/runtime/fault_support.h"

#if defined(HEDRO34_TRANSLATES_FAULTS) && defined(__i386__)

// The guard notes its stack pointer at the call, from which its own unwind data lead to its caller, whatever became of the
// registers inside. The other entry calls on behalf of the faulting instruction: its unwind data lead to the registers that it
// is given, as those of an interrupt.
asm(R"(
        .text
        .globl  _hedro34_run_guarded, _hedro34_behind_body
        .def    _hedro34_run_guarded; .scl 2; .type 32; .endef
_hedro34_run_guarded:
        .cfi_startproc
        pushl   %ebp
        .cfi_def_cfa_offset 8
        .cfi_offset 5, -8
        pushl   %ebx
        .cfi_def_cfa_offset 12
        .cfi_offset 3, -12
        pushl   %esi
        .cfi_def_cfa_offset 16
        .cfi_offset 6, -16
        pushl   %edi
        .cfi_def_cfa_offset 20
        .cfi_offset 7, -20
        subl    $12, %esp
        .cfi_def_cfa_offset 32
        movl    32(%esp), %ecx
        movl    36(%esp), %edx
        movl    40(%esp), %eax
        movl    %edx, (%esp)
        movl    %esp, 8(%eax)
        call    *%ecx
_hedro34_behind_body:
        addl    $12, %esp
        .cfi_def_cfa_offset 20
        popl    %edi
        .cfi_restore 7
        .cfi_def_cfa_offset 16
        popl    %esi
        .cfi_restore 6
        .cfi_def_cfa_offset 12
        popl    %ebx
        .cfi_restore 3
        .cfi_def_cfa_offset 8
        popl    %ebp
        .cfi_restore 5
        .cfi_def_cfa_offset 4
        ret
        .cfi_endproc

        .globl  _hedro34_at_fault
        .def    _hedro34_at_fault; .scl 2; .type 32; .endef
_hedro34_at_fault:
        pushl   %ebp
        movl    %esp, %ebp
        pushl   %ebx
        andl    $-16, %esp
        subl    $16, %esp
        movl    8(%ebp), %ebx
        movl    16(%ebp), %eax
        movl    %eax, (%esp)
        .cfi_startproc
        .cfi_signal_frame
        .cfi_escape 0x0f, 3, 0x73, 4, 0x06      # the frame's address: what is at 4(%ebx)
        .cfi_escape 0x10, 8, 2, 0x73, 0         # the registers are at: (%ebx), the instruction
        .cfi_escape 0x10, 3, 2, 0x73, 8         # ebx
        .cfi_escape 0x10, 5, 2, 0x73, 12        # ebp
        .cfi_escape 0x10, 6, 2, 0x73, 16        # esi
        .cfi_escape 0x10, 7, 2, 0x73, 20        # edi
        nop
        call    *12(%ebp)
        nop
        .cfi_endproc
        leal    -4(%ebp), %esp
        popl    %ebx
        popl    %ebp
        ret

        .globl  _hedro34_leave_frames
        .def    _hedro34_leave_frames; .scl 2; .type 32; .endef
_hedro34_leave_frames:
        pushl   %ebp
        movl    %esp, %ebp
        pushl   %ebx
        pushl   %esi
        pushl   %edi
        pushl   $0
        pushl   12(%ebp)
        pushl   $1f
        pushl   8(%ebp)
        call    _RtlUnwind@16
1:
        leal    -12(%ebp), %esp
        popl    %edi
        popl    %esi
        popl    %ebx
        popl    %ebp
        ret
)");

#endif
