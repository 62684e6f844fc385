#include "torture/Tracer.h"

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <set>

#include "torture/Registers.h"

namespace torture {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kCallStop = SIGTRAP | 0x80;
constexpr int kOptions = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                         PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;

}  // namespace

bool Tracer::beTraced() {
  return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0;
}

Tracer::Process& Tracer::know(pid_t pid) {
  Process& process = m_processes[pid];
  if (process.ordinal == -1) {
    process.ordinal = m_nextOrdinal++;
  }
  return process;
}

void Tracer::handle(pid_t pid, int status) {
  if (!WIFSTOPPED(status)) {
    m_processes.erase(pid);
    m_held.erase(pid);
    return;
  }
  const int signal = WSTOPSIG(status);
  // A new child may stop before its parent tells of it.
  const bool isNew = m_processes.count(pid) == 0 || m_processes[pid].serial == 0;
  Process& process = know(pid);
  if (status >> 16 != 0) {
    handleEvent(pid, process, status >> 16);
  } else if (signal == kCallStop) {
    handleCall(pid, process);
  } else if (signal == SIGTRAP && process.programs == 0) {
    process.programs = 1;  // the first stop of all: it has become the launcher
    ptrace(PTRACE_SETOPTIONS, pid, nullptr, kOptions);
    resume(pid);
  } else {
    resume(pid, isNew && signal == SIGSTOP ? 0 : signal);
  }
}

void Tracer::handleEvent(pid_t pid, Process& process, int event) {
  if (event != PTRACE_EVENT_EXEC) {
    unsigned long child = 0;
    ptrace(PTRACE_GETEVENTMSG, pid, nullptr, &child);
    know(static_cast<pid_t>(child)).programs = process.programs;
    resume(pid);
    return;
  }
  ++process.programs;
  if (m_followPrograms) {
    resume(pid);
  } else {
    ptrace(PTRACE_DETACH, pid, nullptr, nullptr);
    m_processes.erase(pid);
  }
}

void Tracer::handleCall(pid_t pid, Process& process) {
  __ptrace_syscall_info info = {};
  ptrace(PTRACE_GET_SYSCALL_INFO, pid, sizeof info, &info);
  if (info.op == PTRACE_SYSCALL_INFO_EXIT) {
    finishCall(pid, process);
  }
  if (info.op == PTRACE_SYSCALL_INFO_ENTRY && !m_lettingGo) {
    std::uint64_t args[6];
    std::copy(std::begin(info.entry.args), std::end(info.entry.args), args);
    const Call call{pid, process.ordinal, process.serial++, static_cast<long>(info.entry.nr), args};
    const Answer answer = m_onCall(call);
    if (answer.error != 0) {
      fail(call, process, answer.error);
    }
    if (answer.hold.count() != 0) {
      m_held[pid] = Clock::now() + answer.hold;
      return;
    }
  }
  resume(pid);
}

void Tracer::finishCall(pid_t pid, Process& process) {
  if (process.result != 0) {
    setResult(pid, process.result);
  }
  if (process.firstArgument != 0) {
    setFirstArgument(pid, process.firstArgument);
  }
  process.result = 0;
  process.firstArgument = 0;
}

void Tracer::fail(const Call& call, Process& process, int error) {
  const Way way = fallibleCall(call.number)->way;
  if (way == Way::Stay) {
    process.firstArgument = static_cast<long>(call.args[0]);
    setFirstArgument(call.pid, 0);
    return;
  }
  if (way == Way::Refuse) {
    skipCall(call.pid);
  }
  process.result = -error;
}

// A call whose result is still to be changed has to stop once more.
void Tracer::resume(pid_t pid, int signal) {
  const auto process = m_processes.find(pid);
  const bool isFree = m_lettingGo && (process == m_processes.end() || !process->second.hasToStop());
  ptrace(isFree ? PTRACE_DETACH : PTRACE_SYSCALL, pid, nullptr, signal);
  if (isFree) {
    m_processes.erase(pid);
  }
}

Clock::time_point Tracer::releaseHeld() {
  Clock::time_point next = Clock::time_point::max();
  const Clock::time_point now = Clock::now();
  for (auto held = m_held.begin(); held != m_held.end();) {
    if (held->second <= now) {
      const pid_t pid = held->first;
      held = m_held.erase(held);
      resume(pid);
    } else {
      next = std::min(next, held->second);
      ++held;
    }
  }
  return next;
}

std::string readText(pid_t pid, std::uint64_t address) {
  char bytes[256];
  const iovec here = {bytes, sizeof bytes - 1};
  const iovec there = {reinterpret_cast<void*>(address), sizeof bytes - 1};
  const ssize_t size = process_vm_readv(pid, &here, 1, &there, 1, 0);
  bytes[std::max<ssize_t>(size, 0)] = '\0';
  return bytes;
}

namespace {

// What a descriptor of another process stands for; empty for none.
std::string targetOf(pid_t pid, std::uint64_t descriptor) {
  const auto number = static_cast<int>(descriptor);
  std::error_code error;
  const auto path = std::filesystem::read_symlink(
      "/proc/" + std::to_string(pid) + "/fd/" + std::to_string(number), error);
  return error ? "" : path.string();
}

// Which argument of a call is a path; -1 where the first one is a descriptor, if anything.
int pathArgument(const std::string& name) {
  static const std::set<std::string> kFirst = {"open",   "stat",  "lstat",  "access", "readlink",
                                               "mkdir",  "rmdir", "unlink", "rename", "chmod",
                                               "execve", "chdir", "statfs"};
  static const std::set<std::string> kSecond = {"openat",     "newfstatat", "statx",   "faccessat",
                                                "faccessat2", "readlinkat", "mkdirat", "unlinkat",
                                                "renameat",   "fchmodat"};
  return kFirst.count(name) != 0 ? 0 : kSecond.count(name) != 0 ? 1 : -1;
}

}  // namespace

std::string describe(const Call& call) {
  const FallibleCall* const row = fallibleCall(call.number);
  const std::string name = row == nullptr ? "call " + std::to_string(call.number) : row->name;
  const int argument = pathArgument(name);
  const std::string path = argument == -1 ? "" : readText(call.pid, call.args[argument]);
  const std::string target = path.empty() ? targetOf(call.pid, call.args[0]) : path;
  return name + (target.empty() ? "" : " " + target);
}

}  // namespace torture
