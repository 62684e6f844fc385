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

// A name that only -cv:extract could not take is taken here.
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

void copyBytes(std::FILE* from, std::int64_t count, std::FILE* to) {
  char chunk[65536];
  while (count > 0) {
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(count, sizeof chunk));
    const std::size_t got = std::fread(chunk, 1, wanted, from);
    if (got == 0 || std::fwrite(chunk, 1, got, to) != got) {
      return;  // the stream remembers its error
    }
    count -= static_cast<std::int64_t>(got);
  }
}

void extractFile(const LauncherFile& launcher, const FileIndexEntry& entry, const fs::path& path) {
  FilePtr output = openFile(path.c_str(), "wbx");
  if (output != nullptr && fseeko(launcher.file.get(), entry.getOffsetToBytes(), SEEK_SET) == 0) {
    copyBytes(launcher.file.get(), entry.getFileLength(), output.get());
    const bool failed = std::ferror(output.get()) != 0;
    if (std::fclose(output.release()) == 0 && !failed) {
      return;
    }
  }
  throw AuthoringError(path.string() + " cannot be written: " + std::strerror(errno));
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
    extractFile(launcher, entry, path);
    makeExecutable(entry, path);
  }
}

}  // namespace authoring
