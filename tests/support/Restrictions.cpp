#include "support/Restrictions.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstddef>

#include "support/OwnProcess.h"

#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#endif

// The filter below is written for one processor's system calls.
#if defined(__linux__) && defined(__x86_64__)
#define CORVANE_HAS_FILTER
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cerrno>
#endif

namespace test {

#ifdef CORVANE_HAS_FILTER
namespace {

// The system call `number` fails with `error` from now on, here and in children.
bool forbidCall(unsigned number, unsigned error) {
  sock_filter rules[] = {
      {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
      {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, number},
      {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | error},
      {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
  };
  sock_fprog program = {4, rules};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace
#endif

bool limit(int resource, unsigned long value) {
  const auto kind = static_cast<decltype(RLIMIT_NOFILE)>(resource);
  rlimit limits = {};
  if (getrlimit(kind, &limits) != 0) {
    return false;
  }
  limits.rlim_cur = value;
  return setrlimit(kind, &limits) == 0;
}

bool forbidProcesses() {
  becomeOrdinaryUser();
  return limit(RLIMIT_NPROC, 0);
}

bool forbidWaiting() {
#ifdef CORVANE_HAS_FILTER
  return forbidCall(SYS_wait4, ECHILD) && forbidCall(SYS_waitid, ECHILD);
#else
  return false;
#endif
}

bool forbidRedirection() {
#ifdef CORVANE_HAS_FILTER
  return forbidCall(SYS_dup2, EBUSY);
#else
  return false;
#endif
}

bool hideProc() {
#ifdef __linux__
  return (unshare(CLONE_NEWNS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) &&
         mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", "/proc", "tmpfs", 0, nullptr) == 0;
#else
  return false;
#endif
}

void closeAllDescriptorsButStandardOnes() {
  constexpr int kHighest = 1024;
  for (int fd = STDERR_FILENO + 1; fd < kHighest; ++fd) {
    close(fd);
  }
}

}  // namespace test
