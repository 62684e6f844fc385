#include "authoring/Listing.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "authoring/FileTypes.h"
#include "authoring/SafeText.h"
#include "authoring/Sha256.h"
#include "authoring/StubRecognition.h"

namespace authoring {
namespace {

using Row = std::vector<std::string>;
using Json = nlohmann::ordered_json;

const Row kHeader = {"pos", "type", "id", "length", "offset", "name", "unpacked"};
constexpr bool kRightAligned[] = {true, false, true, true, true, false, false};

std::string unpackedSize(const FileIndexEntry& entry) {
  if (!entry.isCompressed()) {
    return "-";
  }
  return countOf(entry.getDecompressedFileCount(), "file") + ", " +
         countOf(entry.getDecompressedSize(), "byte");
}

Row rowOf(long position, const FileIndexEntry& entry) {
  return {std::to_string(position),
          fileTypeName(entry.getFileType()),
          std::to_string(entry.getFileId()),
          std::to_string(entry.getFileLength()),
          std::to_string(entry.getOffsetToBytes()),
          printable(entry.getFileName()),
          unpackedSize(entry)};
}

// In columns of a UTF-8 terminal: bytes that continue a letter take none.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string padded(const std::string& text, std::size_t width, bool right) {
  const std::string blanks(width - widthOf(text), ' ');
  return right ? blanks + text : text + blanks;
}

std::vector<std::size_t> columnWidths(const std::vector<Row>& rows) {
  std::vector<std::size_t> widths(kHeader.size());
  for (const Row& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], widthOf(row[column]));
    }
  }
  return widths;
}

std::string asTable(const std::vector<Row>& rows) {
  const std::vector<std::size_t> widths = columnWidths(rows);
  std::string table;
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
      line += column == 0 ? "" : "  ";
      line += padded(row[column], widths[column], kRightAligned[column]);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    table += line + "\n";
  }
  return table;
}

Json stubAsJson(const std::optional<Stub>& stub) {
  Json json;
  if (stub) {
    json["kind"] = stub->kind;
    json["version"] = stub->version;
    json["encoding"] = stub->encoding;
    json["machine"] = stub->machine;
  }
  return json;
}

const char* digestState(DigestState state) {
  switch (state) {
    case DigestState::kNone:
      return "none";
    case DigestState::kIntact:
      return "stored";
    case DigestState::kDamaged:
      return "damaged";
    case DigestState::kNewer:
      return "later form";
  }
  return "";
}

}  // namespace

std::string countOf(std::int64_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string listAsTable(const std::string& path, const LauncherFile& launcher) {
  const std::string name = safeText(path);
  const std::string size = countOf(launcher.size, "byte");
  const auto stub = recognizeStub(launcher);
  const std::string end = (stub ? ", stub " + describeStub(*stub) : "") +
                          (launcher.digests.state == DigestState::kIntact ? ", digests" : "") +
                          "\n";
  if (!launcher.hasTrailer) {
    return name + ": no embedded files, " + size + end;
  }
  std::vector<Row> rows = {kHeader};
  for (long i = 0; i < launcher.index.size(); ++i) {
    rows.push_back(rowOf(i, *launcher.index.at(i)));
  }
  return name + ": " + countOf(launcher.index.size(), "file") + ", " + size + ", purpose " +
         std::to_string(launcher.purpose) + end + (rows.size() == 1 ? "" : asTable(rows));
}

std::string listAsJson(const LauncherFile& launcher) {
  Json json;
  json["size"] = launcher.size;
  json["purpose"] = launcher.purpose < 0 ? Json() : Json(launcher.purpose);
  json["stub"] = stubAsJson(recognizeStub(launcher));
  json["digests"] = digestState(launcher.digests.state);
  const bool hasDigests =
      launcher.digests.pieces.size() == static_cast<std::size_t>(launcher.index.size()) + 2;
  json["files"] = Json::array();
  for (long i = 0; i < launcher.index.size(); ++i) {
    const FileIndexEntry& entry = *launcher.index.at(i);
    Json file;
    file["position"] = i;
    file["type"] = fileTypeName(entry.getFileType());
    file["id"] = entry.getFileId();
    file["length"] = entry.getFileLength();
    file["offset"] = entry.getOffsetToBytes();
    file["name"] = entry.getFileName().c_str();
    if (entry.isCompressed()) {
      file["decompressed"]["files"] = entry.getDecompressedFileCount();
      file["decompressed"]["bytes"] = entry.getDecompressedSize();
    }
    if (hasDigests) {
      file["sha256"] = hexOf(launcher.digests.pieces[static_cast<std::size_t>(i) + 1]);
    }
    json["files"].push_back(file);
  }
  return json.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

}  // namespace authoring
