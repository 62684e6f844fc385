#include "authoring/SeekableInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "authoring/AuthoringError.h"
#include "authoring/LauncherFileWriter.h"

namespace authoring {
namespace {

[[noreturn]] void fail(const std::string& path, int error) {
  throw AuthoringError(inputLabel(path) + ": " + std::strerror(error));
}

FilePtr open(const std::string& path) {
  if (path != kStandardStream) {
    return openFile(path.c_str(), "rb");
  }
  const int descriptor = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
  return FilePtr(descriptor < 0 ? nullptr : fdopen(descriptor, "rb"));
}

bool isRegular(std::FILE* file) {
  struct stat status;
  return fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
}

FilePtr copyOf(std::FILE* source, const std::string& path) {
  FilePtr copy(std::tmpfile());
  if (copy == nullptr) {
    throw AuthoringError(std::string("no temporary file can be made: ") + std::strerror(errno));
  }
  char chunk[65536];
  std::int64_t size = 0;
  for (std::size_t count; (count = std::fread(chunk, 1, sizeof chunk, source)) > 0;) {
    size += static_cast<std::int64_t>(count);
    if (size > kMaxLauncherFileSize) {
      throw AuthoringError(inputLabel(path) + " gives more bytes than a launcher file can hold");
    }
    if (std::fwrite(chunk, 1, count, copy.get()) != count) {
      throw AuthoringError(std::string("a temporary file cannot be written: ") +
                           std::strerror(errno));
    }
  }
  if (std::ferror(source) != 0) {
    fail(path, errno);
  }
  std::rewind(copy.get());
  return copy;
}

}  // namespace

SeekableInput openSeekable(const std::string& path) {
  SeekableInput input{open(path), path == kStandardStream};
  if (input.file == nullptr) {
    fail(path, errno);
  }
  if (!isRegular(input.file.get())) {
    input.file = copyOf(input.file.get(), path);
    input.isStream = true;
  }
  return input;
}

}  // namespace authoring
