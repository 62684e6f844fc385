#include "platform/ProgramFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "tagfile/Paths.h"
#include "tagfile/StreamUtils.h"

namespace {

// ELF; Mach-O of 32 and 64 bits in either byte order; Mach-O for several processors.
constexpr std::string_view kBinaryMarks[] = {"\177ELF",          "\xfe\xed\xfa\xce",
                                             "\xfe\xed\xfa\xcf", "\xce\xfa\xed\xfe",
                                             "\xcf\xfa\xed\xfe", "\xca\xfe\xba\xbe"};

// The function of OpenJDK's library that its program calls. The program itself is small.
constexpr std::string_view kOpenJDKEntry = "JLI_Launch";
constexpr std::size_t kLargestOpenJDKLauncher = std::size_t{512} << 10;

std::string beginningOf(const SString& path, std::size_t count) {
  std::string bytes(count, '\0');
  const FilePtr file = openFile(path, "rb");
  bytes.resize(file == nullptr ? 0 : std::fread(bytes.data(), 1, count, file.get()));
  return bytes;
}

bool isSameTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

void setTimes(ProgramFile& program, const struct stat& status) {
#ifdef __APPLE__
  program.modified = status.st_mtimespec;
  program.changed = status.st_ctimespec;
#else
  program.modified = status.st_mtim;
  program.changed = status.st_ctim;
#endif
}

}  // namespace

SString ProgramFile::withoutLinks(const SString& path) {
  const std::unique_ptr<char, decltype(&std::free)> realPath(realpath(path.c_str(), nullptr),
                                                             &std::free);
  return realPath == nullptr ? SString() : SString(realPath.get());
}

std::optional<ProgramFile> ProgramFile::at(const SString& path) {
  ProgramFile program;
  program.path = withoutLinks(path);
  program.folder = withoutLinks(directoryOf(path));
  struct stat status = {};
  if (program.path.empty() || stat(program.path.c_str(), &status) != 0 ||
      !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  program.device = status.st_dev;
  program.inode = status.st_ino;
  program.size = status.st_size;
  setTimes(program, status);
  return program;
}

bool ProgramFile::operator==(const ProgramFile& other) const {
  return path == other.path && device == other.device && inode == other.inode &&
         size == other.size && isSameTime(modified, other.modified) &&
         isSameTime(changed, other.changed);
}

bool ProgramFile::isBinary() const {
  const std::string mark = beginningOf(path, kBinaryMarks[0].size());
  return std::find(std::begin(kBinaryMarks), std::end(kBinaryMarks), mark) !=
         std::end(kBinaryMarks);
}

bool ProgramFile::isOpenJDKLauncher() const {
#ifdef __linux__
  return size <= static_cast<off_t>(kLargestOpenJDKLauncher) &&
         beginningOf(path, static_cast<std::size_t>(size)).find(kOpenJDKEntry) != std::string::npos;
#else
  return false;  // there it may look at its name
#endif
}
