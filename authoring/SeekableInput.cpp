#include "authoring/SeekableInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>

#include "authoring/AuthoringError.h"
#include "authoring/LauncherFileWriter.h"

namespace authoring {
namespace {

// Who names the folder of a setup means the manifest in it.
std::string whatToName(const std::string& folder) {
  const std::filesystem::path manifest = std::filesystem::path(folder) / "manifest.json";
  std::error_code ignored;
  return std::filesystem::exists(manifest, ignored) ? "the file in it: " + manifest.string()
                                                    : "a file";
}

[[noreturn]] void fail(const std::string& path, int error) {
  throw AuthoringError(inputLabel(path) + (error == EISDIR
                                               ? " is a folder; name " + whatToName(path)
                                               : std::string(": ") + std::strerror(error)));
}

FilePtr reopen(int open) {
  const int descriptor = fcntl(open, F_DUPFD_CLOEXEC, 0);
  return FilePtr(descriptor < 0 ? nullptr : fdopen(descriptor, "rb"));
}

// What has no folder of its own.
bool isStreamName(const std::string& path) {
  return path == kStandardStream || path.starts_with("/dev/");
}

FilePtr open(const std::string& path) {
  return path == kStandardStream ? reopen(STDIN_FILENO) : openFile(path.c_str(), "rb");
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
  if (std::fflush(copy.get()) != 0) {
    throw AuthoringError(std::string("a temporary file cannot be written: ") +
                         std::strerror(errno));
  }
  return copy;
}

}  // namespace

SeekableInput openSeekable(const std::string& path) {
  static std::map<std::string, FilePtr> copies;
  const auto copy = copies.find(path);
  SeekableInput input{copy == copies.end() ? open(path) : reopen(fileno(copy->second.get())),
                      isStreamName(path) || copy != copies.end()};
  if (input.file == nullptr) {
    fail(path, errno);
  }
  if (!isRegular(input.file.get())) {
    copies[path] = copyOf(input.file.get(), path);
    return openSeekable(path);
  }
  (void)fseeko(input.file.get(), 0, SEEK_SET);
  return input;
}

}  // namespace authoring
