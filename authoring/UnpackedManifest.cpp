#include "authoring/UnpackedManifest.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "authoring/FileBytes.h"
#include "authoring/FileTypes.h"
#include "authoring/LauncherFileWriter.h"

namespace authoring {
namespace {

using Json = nlohmann::ordered_json;

Json fileAsJson(const FileIndexEntry& entry) {
  Json file;
  file["type"] = fileTypeName(entry.getFileType());
  file["id"] = entry.getFileId();
  file["path"] = std::string(entry.getFileName().view());
  if (entry.isCompressed()) {
    file["decompressed"]["files"] = entry.getDecompressedFileCount();
    file["decompressed"]["bytes"] = entry.getDecompressedSize();
  }
  return file;
}

// Where the writer would put the next file.
std::int64_t endOf(const LauncherFile& launcher, const FileIndexEntry& entry) {
  const std::int64_t end = std::int64_t{entry.getOffsetToBytes()} + entry.getFileLength();
  const bool isEnded = entry.getFileLength() <= 0 ||
                       bytesAt(launcher.file.get(), end - 1, 1) == std::string(1, '\n');
  return isEnded ? end : end + 1;
}

IndexRecord recordOf(const FileIndexEntry& entry) {
  IndexRecord record{entry.getFileType(),
                     entry.getFileId(),
                     entry.getFileLength(),
                     entry.getOffsetToBytes(),
                     std::string(entry.getFileName().view()),
                     {}};
  if (entry.isCompressed()) {
    record.decompressed = {entry.getDecompressedFileCount(), entry.getDecompressedSize()};
  }
  return record;
}

// Index, digests, purpose byte and trailer.
bool hasOurEnd(const LauncherFile& launcher, const std::vector<IndexRecord>& records) {
  const DigestBlock& digests = launcher.digests;
  const std::string end = static_cast<char>(launcher.purpose) + encodeTrailer(launcher.indexOffset);
  const std::string wanted =
      encodeIndex(records) + encodeDigests(digests.offset, digests.pieces, end) + end;
  const std::int64_t size = launcher.size - launcher.indexOffset;
  return digests.pieces.size() == records.size() + 2 &&
         size == static_cast<std::int64_t>(wanted.size()) &&
         bytesAt(launcher.file.get(), launcher.indexOffset, size) == wanted;
}

}  // namespace

std::string unpackedManifest(const LauncherFile& launcher, const std::string& stub) {
  Json json;
  json["stub"] = stub;
  json["purpose"] = launcher.purpose;
  json["files"] = Json::array();
  for (long i = 0; i < launcher.index.size(); ++i) {
    json["files"].push_back(fileAsJson(*launcher.index.at(i)));
  }
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

long findForeignName(const LauncherFile& launcher) {
  for (long i = 0; i < launcher.index.size(); ++i) {
    try {
      (void)Json(std::string(launcher.index.at(i)->getFileName().view())).dump();
    } catch (const Json::exception&) {
      return i;
    }
  }
  return -1;
}

std::int64_t sizeOfStub(const LauncherFile& launcher) {
  std::int64_t size = launcher.hasTrailer ? launcher.indexOffset : launcher.size;
  for (long i = 0; i < launcher.index.size(); ++i) {
    size = std::min<std::int64_t>(size, launcher.index.at(i)->getOffsetToBytes());
  }
  return std::max<std::int64_t>(size, 0);
}

bool hasOurLayout(const LauncherFile& launcher) {
  std::int64_t position = sizeOfStub(launcher);
  std::vector<IndexRecord> records;
  for (long i = 0; i < launcher.index.size(); ++i) {
    const FileIndexEntry& entry = *launcher.index.at(i);
    const std::int64_t end = endOf(launcher, entry);
    const std::int64_t filled = std::int64_t{entry.getOffsetToBytes()} + entry.getFileLength();
    if (entry.getOffsetToBytes() != position ||
        (end > filled && bytesAt(launcher.file.get(), filled, 1) != std::string(1, '\n'))) {
      return false;
    }
    position = end;
    records.push_back(recordOf(entry));
  }
  return position == launcher.indexOffset && hasOurEnd(launcher, records);
}

}  // namespace authoring
