#include "torture/Registers.h"

#include <elf.h>
#include <sys/ptrace.h>
#include <sys/uio.h>
#include <sys/user.h>

#include <cstddef>

namespace torture {

#if defined(__x86_64__)

namespace {

void poke(pid_t pid, std::size_t offset, long value) {
  ptrace(PTRACE_POKEUSER, pid, offset, value);
}

}  // namespace

bool canTraceHere() {
  return true;
}
void skipCall(pid_t pid) {
  poke(pid, offsetof(user_regs_struct, orig_rax), -1);
}
void setFirstArgument(pid_t pid, long value) {
  poke(pid, offsetof(user_regs_struct, rdi), value);
}
void setResult(pid_t pid, long result) {
  poke(pid, offsetof(user_regs_struct, rax), result);
}

#elif defined(__aarch64__)

namespace {

constexpr int kSystemCallNumber = 0x404;  // NT_ARM_SYSTEM_CALL

void setFirstRegister(pid_t pid, long value) {
  user_regs_struct registers;
  iovec data = {&registers, sizeof registers};
  ptrace(PTRACE_GETREGSET, pid, NT_PRSTATUS, &data);
  registers.regs[0] = static_cast<unsigned long long>(value);
  ptrace(PTRACE_SETREGSET, pid, NT_PRSTATUS, &data);
}

}  // namespace

bool canTraceHere() {
  return true;
}
void skipCall(pid_t pid) {
  int number = -1;
  iovec data = {&number, sizeof number};
  ptrace(PTRACE_SETREGSET, pid, kSystemCallNumber, &data);
}
// The first argument's register holds the result behind the call: nothing is to be put back there.
void setFirstArgument(pid_t pid, long value) {
  if (value == 0) {
    setFirstRegister(pid, value);
  }
}
void setResult(pid_t pid, long result) {
  setFirstRegister(pid, result);
}

#else

bool canTraceHere() {
  return false;
}
void skipCall(pid_t) {}
void setFirstArgument(pid_t, long) {}
void setResult(pid_t, long) {}

#endif

}  // namespace torture
