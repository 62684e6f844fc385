#include "authoring/LauncherFileReader.h"

#include <sys/types.h>

#include <cerrno>
#include <cstring>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "launcher/Launcher.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

constexpr const char* kIndexCut = "the file index lies outside the file";

void readEntries(LauncherFile& launcher, std::int32_t indexOffset) {
  if (fseeko(launcher.file.get(), indexOffset, SEEK_SET) != 0) {
    throw LauncherException(kIndexCut);
  }
  const std::int32_t count = loadLongValue(launcher.file.get(), kIndexCut);
  for (std::int32_t i = 0; i < count; ++i) {
    auto entry = std::make_unique<FileIndexEntry>();
    entry->load(launcher.file.get());
    launcher.entries.push_back(std::move(entry));
  }
}

}  // namespace

std::optional<std::int32_t> findFileIndex(std::FILE* file) {
  if (fseeko(file, -kTrailerSize, SEEK_END) != 0) {
    return std::nullopt;
  }
  try {
    const std::int32_t offset = loadLongValue(file, "");
    const auto identification = static_cast<std::uint32_t>(loadLongValue(file, ""));
    return identification == kLauncherIdentification ? std::optional(offset) : std::nullopt;
  } catch (const LauncherException&) {
    return std::nullopt;
  }
}

LauncherFile readLauncherFile(const std::string& path) {
  LauncherFile launcher;
  launcher.file = openFile(path.c_str(), "rb");
  if (launcher.file == nullptr) {
    throw AuthoringError(path + ": " + std::strerror(errno));
  }
  const std::optional<std::int32_t> indexOffset = findFileIndex(launcher.file.get());
  launcher.size = fseeko(launcher.file.get(), 0, SEEK_END) == 0 ? ftello(launcher.file.get()) : 0;
  launcher.hasTrailer = indexOffset.has_value();
  if (!launcher.hasTrailer) {
    return launcher;
  }
  launcher.purpose = Launcher::getLauncherPurpose(path.c_str());
  try {
    readEntries(launcher, *indexOffset);
  } catch (const LauncherException& e) {
    throw AuthoringError(path + ": entry " + std::to_string(launcher.entries.size()) +
                         " of the file index cannot be read: " + e.what());
  }
  return launcher;
}

bool isInside(const LauncherFile& launcher, const FileIndexEntry& entry) {
  const std::int64_t begin = entry.getOffsetToBytes();
  const std::int64_t length = entry.getFileLength();
  return begin >= 0 && length >= 0 && begin + length <= launcher.size;
}

}  // namespace authoring
