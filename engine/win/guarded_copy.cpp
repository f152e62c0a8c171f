#include "engine/win/guarded_copy.h"

#include <windows.h>

#include <cstdint>

// The copy is one `rep movsb` in a leaf of known shape, so a fault inside it
// can be undone exactly: the handler pops the two saved registers, returns 0
// to the caller and resumes there. No unwinding, no longjmp across the system's
// exception dispatcher.
extern "C" int velmora_guarded_copy(void* dst, const void* src, size_t bytes);
extern "C" const char velmora_guarded_copy_instruction[];

asm(R"(
    .text
    .p2align 4
    .globl velmora_guarded_copy
    .def velmora_guarded_copy; .scl 2; .type 32; .endef
    .seh_proc velmora_guarded_copy
velmora_guarded_copy:
    pushq %rdi
    .seh_pushreg %rdi
    pushq %rsi
    .seh_pushreg %rsi
    .seh_endprologue
    movq %rcx, %rdi
    movq %rdx, %rsi
    movq %r8, %rcx
    .globl velmora_guarded_copy_instruction
velmora_guarded_copy_instruction:
    rep movsb
    popq %rsi
    popq %rdi
    movl $1, %eax
    ret
    .seh_endproc
)");

namespace velmora::win {
namespace {

LONG CALLBACK AbandonFaultingCopy(EXCEPTION_POINTERS* e) {
  const EXCEPTION_RECORD& r = *e->ExceptionRecord;
  CONTEXT& c = *e->ContextRecord;
  if (r.ExceptionAddress != static_cast<const void*>(velmora_guarded_copy_instruction) ||
      (r.ExceptionCode != EXCEPTION_IN_PAGE_ERROR &&
       r.ExceptionCode != EXCEPTION_ACCESS_VIOLATION)) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  // A fault reading the source would be a bug of the caller: let it crash.
  constexpr uintptr_t kPage = 4096;
  if (r.NumberParameters >= 2 &&
      r.ExceptionInformation[1] / kPage != static_cast<uintptr_t>(c.Rdi) / kPage) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  const auto* stack = reinterpret_cast<const DWORD64*>(c.Rsp);
  c.Rsi = stack[0];
  c.Rdi = stack[1];
  c.Rip = stack[2];
  c.Rsp += 3 * sizeof(DWORD64);
  c.Rax = 0;
  return EXCEPTION_CONTINUE_EXECUTION;
}

// Installed once, first in line, for the life of the process; it only ever
// acts on a fault at the copy instruction above.
struct HandlerRegistration {
  PVOID handle = AddVectoredExceptionHandler(1, &AbandonFaultingCopy);
  HandlerRegistration() = default;
  HandlerRegistration(const HandlerRegistration&) = delete;
  HandlerRegistration& operator=(const HandlerRegistration&) = delete;
  ~HandlerRegistration() {
    if (handle) RemoveVectoredExceptionHandler(handle);
  }
};

}  // namespace

bool CopyUnlessPageFault(void* dst, const void* src, size_t bytes) {
  static const HandlerRegistration registration;
  return velmora_guarded_copy(dst, src, bytes) != 0;
}

}  // namespace velmora::win
