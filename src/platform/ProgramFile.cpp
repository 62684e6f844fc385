#include "platform/ProgramFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "tagfile/StreamUtils.h"

namespace {

// ELF; Mach-O of 32 and 64 bits in either byte order.
constexpr std::string_view kBinaryMarks[] = {"\177ELF", "\xfe\xed\xfa\xce", "\xfe\xed\xfa\xcf",
                                             "\xce\xfa\xed\xfe", "\xcf\xfa\xed\xfe"};

// Mach-O for several processors begins as a Java class does, which some systems run, too. Then
// comes the number of processors there, a version from 45 on here: both in four bytes, the highest
// first.
constexpr std::string_view kMarkOfSeveral("\xca\xfe\xba\xbe\0\0\0", 7);
constexpr unsigned char kFirstClassVersion = 45;
constexpr std::size_t kLongestMark = kMarkOfSeveral.size() + 1;

// The function of OpenJDK's library that its program calls. The program itself is small.
constexpr std::string_view kOpenJDKEntry = "JLI_Launch";
constexpr off_t kLargestOpenJDKLauncher = off_t{512} << 10;
#ifdef __linux__
constexpr bool kOpenJDKIgnoresName = true;
#else
constexpr bool kOpenJDKIgnoresName = false;  // there it may look at it
#endif

std::string beginningOf(const SString& path, std::size_t count) {
  std::string bytes(count, '\0');
  const FilePtr file = openFile(path, "rb");
  bytes.resize(file == nullptr ? 0 : std::fread(bytes.data(), 1, count, file.get()));
  return bytes;
}

bool isForSeveralProcessors(const std::string& bytes) {
  return bytes.size() >= kLongestMark && bytes.starts_with(kMarkOfSeveral) &&
         static_cast<unsigned char>(bytes[kMarkOfSeveral.size()]) < kFirstClassVersion;
}

bool isBinary(const std::string& bytes) {
  return isForSeveralProcessors(bytes) ||
         std::any_of(std::begin(kBinaryMarks), std::end(kBinaryMarks),
                     [&](std::string_view mark) { return bytes.starts_with(mark); });
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

ProgramFile::Kind ProgramFile::kind() const {
  const bool isSmall = size <= kLargestOpenJDKLauncher;
  const std::string bytes =
      beginningOf(path, isSmall ? static_cast<std::size_t>(size) : kLongestMark);
  if (!isBinary(bytes)) {
    return Kind::Script;
  }
  const bool isOpenJDKs = isSmall && bytes.find(kOpenJDKEntry) != std::string::npos;
  return kOpenJDKIgnoresName && isOpenJDKs ? Kind::OpenJDKLauncher : Kind::Binary;
}
