#include "torture/Calls.h"

#include <fcntl.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace torture {
namespace {

// Not every architecture has every call.
#define CALL(name, way, ...)       \
  {                                \
#name, SYS_##name, Way::way, { \
      __VA_ARGS__                  \
    }                              \
  }

const std::vector<FallibleCall>& table() {
  static const std::vector<FallibleCall> rows = {
      CALL(openat, Refuse, EMFILE, EACCES, EIO, ENOMEM),
      CALL(read, Refuse, EIO, EINTR),
      CALL(readv, Refuse, EIO, EINTR),
      CALL(pread64, Refuse, EIO, EINTR),
      CALL(write, Refuse, ENOSPC, EIO, EINTR),
      CALL(writev, Refuse, ENOSPC, EIO, EINTR),
      CALL(pwrite64, Refuse, ENOSPC, EIO, EINTR),
      CALL(close, DoAndFail, EIO, ENOSPC),
      CALL(fstat, Refuse, EIO, ENOMEM),
      CALL(newfstatat, Refuse, EACCES, EIO, ENOMEM),
      CALL(statx, Refuse, EACCES, EIO),
      CALL(statfs, Refuse, EIO, EACCES),
      CALL(fstatfs, Refuse, EIO),
      CALL(faccessat, Refuse, EACCES, EIO),
      CALL(faccessat2, Refuse, EACCES, ENOSYS),
      CALL(readlinkat, Refuse, EIO, ENOMEM),
      CALL(getdents64, Refuse, EIO, ENOMEM),
      CALL(getcwd, Refuse, ENOENT, ENOMEM),
      CALL(chdir, Refuse, EACCES, EIO),
      CALL(fchdir, Refuse, EACCES, EIO),
      CALL(mkdirat, Refuse, ENOSPC, EACCES, EROFS),
      CALL(unlinkat, Refuse, EIO, EBUSY, EACCES),
      CALL(renameat, Refuse, ENOSPC, EIO),
      CALL(renameat2, Refuse, ENOSPC, EIO),
      CALL(fchmod, Refuse, EPERM, EIO),
      CALL(fchmodat, Refuse, EPERM, EIO),
      CALL(ftruncate, Refuse, ENOSPC, EIO),
      CALL(fsync, Refuse, ENOSPC, EIO),
      CALL(copy_file_range, Refuse, EXDEV, ENOSPC, EIO),
      CALL(sendfile, Refuse, EINVAL, EIO),
      CALL(pipe2, Refuse, EMFILE, ENFILE),
      CALL(dup, Refuse, EMFILE),
      CALL(dup3, Refuse, EMFILE, EBUSY, EINTR),
      CALL(fcntl, Refuse, EMFILE, ENOMEM),
      CALL(clone, Refuse, EAGAIN, ENOMEM),
      CALL(clone3, Refuse, EAGAIN, ENOMEM),
      CALL(execve, Refuse, E2BIG, ENOMEM, EACCES, ENOENT),
      CALL(setpgid, Refuse, EACCES),
      CALL(prctl, Refuse, EINVAL),
      CALL(wait4, Refuse, EINTR),
      CALL(waitid, Refuse, EINTR),
      CALL(ppoll, Refuse, EINTR, ENOMEM),
      CALL(pselect6, Refuse, EINTR, ENOMEM),
      CALL(pidfd_open, Refuse, EMFILE, ENOSYS),
      CALL(getrandom, Refuse, EINTR, ENOSYS),
      CALL(clock_nanosleep, Refuse, EINTR),
      CALL(mmap, Refuse, ENOMEM),
      CALL(mremap, Refuse, ENOMEM),
      CALL(brk, Stay, ENOMEM),
#ifdef SYS_open
      CALL(open, Refuse, EMFILE, EACCES, EIO, ENOMEM),
      CALL(stat, Refuse, EACCES, EIO, ENOMEM),
      CALL(lstat, Refuse, EACCES, EIO, ENOMEM),
      CALL(access, Refuse, EACCES, EIO),
      CALL(readlink, Refuse, EIO, ENOMEM),
      CALL(mkdir, Refuse, ENOSPC, EACCES, EROFS),
      CALL(rmdir, Refuse, EIO, EBUSY, EACCES),
      CALL(unlink, Refuse, EIO, EBUSY, EACCES),
      CALL(rename, Refuse, ENOSPC, EIO),
      CALL(chmod, Refuse, EPERM, EIO),
      CALL(pipe, Refuse, EMFILE, ENFILE),
      CALL(dup2, Refuse, EMFILE, EBUSY, EINTR),
      CALL(fork, Refuse, EAGAIN, ENOMEM),
      CALL(vfork, Refuse, EAGAIN, ENOMEM),
      CALL(poll, Refuse, EINTR, ENOMEM),
      CALL(select, Refuse, EINTR, ENOMEM),
#endif
  };
  return rows;
}

#undef CALL

const int kNamedErrors[] = {EPERM, ENOENT, EINTR,  EIO,    E2BIG,  EAGAIN, ENOMEM, EACCES, EBUSY,
                            EXDEV, EINVAL, ENFILE, EMFILE, ENOSPC, EROFS,  ENOSYS, EPIPE};

bool makesFile(const FallibleCall& call, const std::uint64_t* args) {
  const std::string name = call.name;
  return (name == "openat" && (args[2] & O_CREAT) != 0) ||
         (name == "open" && (args[1] & O_CREAT) != 0);
}

template <class Test>
const FallibleCall* find(Test test) {
  const auto row = std::find_if(table().begin(), table().end(), test);
  return row == table().end() ? nullptr : &*row;
}

}  // namespace

const FallibleCall* fallibleCall(long number) {
  return find([number](const FallibleCall& row) { return row.number == number; });
}

const FallibleCall* fallibleCall(const std::string& name) {
  return find([&name](const FallibleCall& row) { return name == row.name; });
}

std::vector<int> errorsOf(const FallibleCall& call, const std::uint64_t* args) {
  std::vector<int> errors = call.errors;
  if (makesFile(call, args)) {
    errors.insert(errors.begin(), ENOSPC);
  }
  return errors;
}

bool canFail(const FallibleCall& call, const std::uint64_t* args) {
  if (call.number != SYS_fcntl) {
    return true;
  }
  const auto command = static_cast<int>(args[1]);
  return command == F_DUPFD || command == F_DUPFD_CLOEXEC || command == F_SETFL;
}

std::string errorName(int error) {
  return strerrorname_np(error);
}

int errorNumber(const std::string& name) {
  const auto* const end = std::end(kNamedErrors);
  const auto* const at = std::find_if(std::begin(kNamedErrors), end,
                                      [&](int error) { return name == strerrorname_np(error); });
  return at == end ? 0 : *at;
}

}  // namespace torture
