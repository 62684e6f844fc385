#include "authoring/Extractor.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/FileTypes.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

std::string place(long position, const FileIndexEntry& entry) {
  return "entry " + std::to_string(position) + " (" + printable(entry.getFileName()) + ")";
}

// "input.tag" is a fault only for -cv:extract, which writes a file of that name.
std::string findEscape(const SString& name) {
  return name == "input.tag" ? "" : findNameFault(name);
}

void checkEntries(const LauncherFile& launcher, const std::string& folder) {
  std::set<std::string> names;
  for (long i = 0; i < launcher.index.size(); ++i) {
    const FileIndexEntry& entry = *launcher.index.at(i);
    const std::string name = entry.getFileName().c_str();
    const std::string fault = findEscape(entry.getFileName());
    if (!fault.empty()) {
      throw AuthoringError(place(i, entry) + ": its name " + fault + "; nothing was written");
    }
    if (!isInside(launcher, entry)) {
      throw AuthoringError(place(i, entry) +
                           ": its bytes lie outside the file; nothing was written");
    }
    std::error_code error;
    if (!names.insert(name).second ||
        fs::exists(fs::symlink_status(fs::path(folder) / name, error))) {
      throw AuthoringError(place(i, entry) +
                           ": a file of that name is there already; nothing was "
                           "written, name an empty folder with --output");
    }
  }
}

[[noreturn]] void failToWrite(const fs::path& path, int error) {
  throw AuthoringError(path.string() + " cannot be written: " + std::strerror(error));
}

// Reads the next bytes of an entry, at least one.
std::size_t readBytes(std::FILE* launcher, char* bytes, std::size_t size,
                      const std::string& place) {
  const std::size_t count = std::fread(bytes, 1, size, launcher);
  const int error = errno;
  if (count == 0) {
    throw AuthoringError(place + ": its bytes cannot be read: " +
                         (std::ferror(launcher) != 0 ? std::strerror(error)
                                                     : "the launcher file has become shorter"));
  }
  return count;
}

void copyBytes(const LauncherFile& launcher, long position, const fs::path& path,
               std::FILE* output) {
  const FileIndexEntry& entry = *launcher.index.at(position);
  char chunk[65536];
  (void)fseeko(launcher.file.get(), entry.getOffsetToBytes(), SEEK_SET);
  for (std::int64_t rest = entry.getFileLength(); rest > 0;) {
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(rest, sizeof chunk));
    const std::size_t count = readBytes(launcher.file.get(), chunk, wanted, place(position, entry));
    if (std::fwrite(chunk, 1, count, output) != count) {
      const int error = errno;
      failToWrite(path, error);
    }
    rest -= static_cast<std::int64_t>(count);
  }
}

// A file that cannot be copied whole is not left behind.
void extractFile(const LauncherFile& launcher, long position, const fs::path& path) {
  FilePtr output = openFile(path.c_str(), "wbx");
  if (output == nullptr) {
    const int error = errno;
    failToWrite(path, error);
  }
  try {
    copyBytes(launcher, position, path, output.get());
    if (std::fclose(output.release()) != 0) {
      const int error = errno;
      failToWrite(path, error);
    }
  } catch (const AuthoringError&) {
    std::error_code error;
    fs::remove(path, error);
    throw;
  }
}

void makeExecutable(const FileIndexEntry& entry, const fs::path& path) {
  if (isProgramType(entry.getFileType())) {
    const auto execute = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    fs::permissions(path, execute, fs::perm_options::add);
  }
}

}  // namespace

void extractFiles(const LauncherFile& launcher, const std::string& folder) {
  checkEntries(launcher, folder);
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    throw AuthoringError(folder + " cannot be made: " + error.message());
  }
  for (long i = 0; i < launcher.index.size(); ++i) {
    const FileIndexEntry& entry = *launcher.index.at(i);
    const fs::path path = fs::path(folder) / entry.getFileName().c_str();
    extractFile(launcher, i, path);
    makeExecutable(entry, path);
  }
}

}  // namespace authoring
