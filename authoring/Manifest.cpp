#include "authoring/Manifest.h"

#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/FileKind.h"
#include "authoring/FileLook.h"
#include "authoring/FileTypes.h"
#include "authoring/Installation.h"
#include "authoring/JsonLines.h"
#include "authoring/SeekableInput.h"
#include "authoring/StubRecognition.h"
#include "tagfile/StreamUtils.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using Folders = std::vector<std::string>;

constexpr std::int64_t kLargestNumber = 0x7FFFFFFF;

class ManifestReader {
 public:
  ManifestReader(const ManifestText& source, const std::vector<std::string>& baseFolders,
                 Findings* findings)
      : m_source(source), m_baseFolders(baseFolders), m_findings(findings) {}

  Manifest read();

 private:
  Manifest read(const Json& json, Manifest manifest);
  [[noreturn]] void fail(const std::string& where, const std::string& what) const;
  void refuseKeys(const Json& json, const std::string& where,
                  const std::vector<std::string>& keys) const;
  // Calls `read`. Where faults are collected, one of its faults is one of these, and `fallback` is
  // returned.
  template <class Value, class Read>
  Value attempt(const Value& fallback, Read read) const;
  Json parse();
  void expectObject(const Json& json, const std::string& where,
                    const std::vector<std::string>& keys) const;
  std::int32_t readNumber(const Json& json, const std::string& where, std::int64_t largest) const;
  std::string readText(const Json& json, const std::string& where) const;
  ManifestFile readFile(const Json& json, const std::string& where) const;
  Json readList(const Json& json) const;
  const Json& member(const Json& file, const char* key, const std::string& where) const;
  std::int32_t readType(const Json& json, const std::string& where) const;
  std::string readName(const Json& file, const std::string& path, const std::string& where) const;
  std::optional<DecompressedSize> readDecompressed(const Json& file,
                                                   const std::string& where) const;
  std::string findFile(const std::string& path, const std::string& where,
                       const std::vector<std::string>& lastFolders = {}) const;
  std::set<std::int32_t> takeGivenIds(const Json& files) const;
  void refuseDoubledNames(const std::vector<ManifestFile>& files) const;

  const ManifestText& m_source;
  const std::vector<std::string>& m_baseFolders;
  Findings* m_findings;
  JsonLines m_lines;
};

struct ManifestFault : AuthoringError {
  ManifestFault(const std::string& path, std::int32_t onLine, const std::string& fault)
      : AuthoringError(path + ": " + fault), line(onLine), what(fault) {}

  std::int32_t line;
  std::string what;  // and what to do, behind a semicolon
};

std::string entry(std::size_t index) {
  return "files[" + std::to_string(index) + "]";
}

std::string shown(const std::string& text) {
  return quotedText(printable(text));
}

void ManifestReader::fail(const std::string& where, const std::string& what) const {
  throw ManifestFault(m_source.label, m_lines.lineOf(where),
                      where + (where.empty() ? "" : ": ") + what);
}

template <class Value, class Read>
Value ManifestReader::attempt(const Value& fallback, Read read) const {
  try {
    return read();
  } catch (const ManifestFault& fault) {
    if (m_findings == nullptr) {
      throw;
    }
    const std::size_t end = std::min(fault.what.find("; "), fault.what.size());
    const std::string advice = fault.what.substr(std::min(end + 2, fault.what.size()));
    m_findings->error({m_source.label, fault.line}, fault.what.substr(0, end), "", advice);
    return fallback;
  }
}

// --- JSON ---

// "[json.exception...] parse error at line 1, column 2: reason" without what only developers read.
std::string withoutExceptionName(const std::string& what) {
  constexpr const char* kPlace = "parse error at ";
  const std::size_t place = what.find(kPlace);
  return place == std::string::npos ? what : what.substr(place + std::strlen(kPlace));
}

// Of "line 11, column 3: reason".
ManifestFault asFault(const std::string& path, const std::string& error) {
  constexpr std::string_view kLine = "line ";
  const std::size_t column = error.find("column ");
  std::int32_t line = 0;
  (void)convertToLong(error.substr(std::min(kLine.size(), error.size())).c_str(), line);
  ManifestFault fault(path, line, error);
  fault.what = error.substr(std::min(column, error.size()));
  return fault;
}

std::string readWhole(std::FILE* file) {
  std::string bytes;
  char chunk[4096];
  for (std::size_t count; (count = std::fread(chunk, 1, sizeof chunk, file)) > 0;) {
    bytes.append(chunk, count);
  }
  return bytes;
}

bool isUtf16(const std::string& text) {
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

Json ManifestReader::parse() {
  if (isUtf16(m_source.text)) {
    fail("", "this is UTF-16; save it as UTF-8");
  }
  if (!looksLikeManifest(m_source.text) && !isText(m_source.text)) {
    fail("", "this is no manifest; it looks like " +
                 (findStubMark(m_source.text) ? "a launcher" : lookOf(m_source.text)));
  }
  // A key that stands twice would silently win over the first.
  const auto refuseDoubledKey = [this](const std::string& path, std::int32_t line) {
    attempt(0, [&]() -> int {
      throw ManifestFault(m_source.label, line,
                          path + ": this key stands twice in one object; remove one of them");
    });
  };
  try {
    return m_lines.parse(m_source.text, refuseDoubledKey);
  } catch (const Json::parse_error& e) {
    throw asFault(m_source.label, withoutExceptionName(e.what()));
  }
}

void ManifestReader::expectObject(const Json& json, const std::string& where,
                                  const std::vector<std::string>& keys) const {
  if (!json.is_object()) {
    fail(where, "this must be an object, as in { \"" + keys.front() + "\": ... }");
  }
  refuseKeys(json, where, keys);
}

void ManifestReader::refuseKeys(const Json& json, const std::string& where,
                                const std::vector<std::string>& keys) const {
  std::string known;
  for (const std::string& name : keys) {
    known += known.empty() ? name : ", " + name;
  }
  for (const auto& [key, value] : json.items()) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
      attempt(0, [&, &name = key]() -> int {
        throw ManifestFault(m_source.label,
                            m_lines.lineOf(where + (where.empty() ? "" : ".") + name),
                            where + (where.empty() ? "" : ": ") + "unknown key " + shown(name) +
                                "; the keys here are " + known);
      });
    }
  }
}

std::int32_t ManifestReader::readNumber(const Json& json, const std::string& where,
                                        std::int64_t largest) const {
  if (!json.is_number_unsigned() ||
      json.get<std::uint64_t>() > static_cast<std::uint64_t>(largest)) {
    fail(where, "this must be a whole number from 0 to " + std::to_string(largest));
  }
  return json.get<std::int32_t>();
}

std::string ManifestReader::readText(const Json& json, const std::string& where) const {
  if (!json.is_string() || json.get_ref<const std::string&>().empty()) {
    fail(where, "this must be a text that is not empty");
  }
  return json;
}

// --- The manifest ---

Manifest ManifestReader::read() {
  Manifest manifest;
  manifest.path = m_source.label;
  const std::optional<Json> parsed = attempt(std::optional<Json>(), [&] { return parse(); });
  return parsed ? read(*parsed, manifest) : manifest;
}

Manifest ManifestReader::read(const Json& json, Manifest manifest) {
  attempt(0, [&] { return expectObject(json, "", {"purpose", "stub", "files"}), 0; });
  manifest.purpose = attempt(0, [&] {
    return json.contains("purpose") ? readNumber(json["purpose"], "purpose", 255) : 0;
  });
  manifest.stub = attempt(std::string(), [&] {
    return json.contains("stub") ? findFile(readText(json["stub"], "stub"), "stub") : "";
  });
  const Json files = attempt(Json(), [&] { return readList(json); });
  manifest.isRead = files.is_array();
  std::set<std::int32_t> givenIds = takeGivenIds(files);
  std::int32_t nextId = 1;
  for (std::size_t i = 0; i < files.size(); ++i) {
    manifest.files.push_back(readFile(files[i], entry(i)));
    if (!files[i].contains("id")) {
      while (givenIds.count(nextId) != 0) {
        ++nextId;
      }
      manifest.files.back().id = nextId++;
    }
  }
  refuseDoubledNames(manifest.files);
  return manifest;
}

Json ManifestReader::readList(const Json& json) const {
  const Json files = json.is_object() ? json.value("files", Json()) : Json();
  if (!files.is_array()) {
    fail("files", "this must be the list of the files, as in \"files\": [ ... ]");
  }
  return files;
}

// The numbers that the author gave; the other files are numbered around them.
std::set<std::int32_t> ManifestReader::takeGivenIds(const Json& files) const {
  std::set<std::int32_t> ids;
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (files[i].is_object() && files[i].contains("id")) {
      attempt(0, [&] {
        const std::int32_t id = readNumber(files[i]["id"], entry(i) + ".id", kLargestNumber);
        if (!ids.insert(id).second) {
          fail(entry(i) + ".id", "another file has the number " + std::to_string(id) +
                                     "; give each file a number of its own, or none");
        }
        return 0;
      });
    }
  }
  return ids;
}

ManifestFile ManifestReader::readFile(const Json& json, const std::string& where) const {
  ManifestFile file;
  file.line = m_lines.lineOf(where);
  attempt(0, [&] {
    return expectObject(json, where, {"type", "id", "path", "name", "decompressed"}), 0;
  });
  if (!json.is_object()) {
    return file;
  }
  file.type = attempt(kUnknownType, [&] { return readType(member(json, "type", where), where); });
  file.id = json.contains("id") && json["id"].is_number() ? json["id"].get<std::int32_t>() : 0;
  const std::string path = attempt(
      std::string(), [&] { return readText(member(json, "path", where), where + ".path"); });
  const Folders lastFolders = file.type == FILE_TYPE_VERIFY_JAR ? verifyFolders() : Folders();
  file.path = attempt(std::string(), [&] {
    return path.empty() ? "" : findFile(path, where + ".path", lastFolders);
  });
  if (json.contains("name") || !file.path.empty()) {
    file.name = attempt(std::string(), [&] { return readName(json, path, where); });
  }
  file.decompressed = attempt(std::optional<DecompressedSize>(),
                              [&] { return readDecompressed(json, where + ".decompressed"); });
  return file;
}

const Json& ManifestReader::member(const Json& file, const char* key,
                                   const std::string& where) const {
  if (!file.contains(key)) {
    fail(where, "the key \"" + std::string(key) + "\" is missing");
  }
  return file[key];
}

std::int32_t ManifestReader::readType(const Json& json, const std::string& where) const {
  const std::string name = readText(json, where + ".type");
  const std::optional<std::int32_t> type = fileTypeFromName(name);
  if (!type) {
    const std::string near = nearestFileType(name);
    fail(where + ".type",
         shown(name) + " is no file type; " +
             (near.empty() ? "the types are " + allFileTypeNames() : "did you mean " + near + "?"));
  }
  return *type;
}

std::string ManifestReader::readName(const Json& file, const std::string& path,
                                     const std::string& where) const {
  const bool given = file.contains("name");
  const std::string name =
      given ? readText(file["name"], where + ".name") : fs::path(path).filename().string();
  const std::string fault = findNameFault(name);
  if (!fault.empty()) {
    fail(where + ".name", shown(name) + " " + fault);
  }
  return name;
}

std::optional<DecompressedSize> ManifestReader::readDecompressed(const Json& file,
                                                                 const std::string& where) const {
  if (!file.contains("decompressed")) {
    return std::nullopt;
  }
  const Json& json = file["decompressed"];
  expectObject(json, where, {"files", "bytes"});
  return DecompressedSize{
      readNumber(json.value("files", Json()), where + ".files", kLargestNumber),
      readNumber(json.value("bytes", Json()), where + ".bytes", kLargestNumber)};
}

// `lastFolders` are looked at without a word.
std::string ManifestReader::findFile(const std::string& path, const std::string& where,
                                     const std::vector<std::string>& lastFolders) const {
  std::vector<std::string> folders = m_baseFolders;
  folders.insert(folders.begin(), m_source.folder);
  std::string tried;
  std::string other;  // what is there instead of a file
  for (const std::string& folder : folders) {
    const fs::path candidate = fs::path(folder) / path;  // an absolute path stays itself
    struct stat status;
    const bool isThere = stat(candidate.c_str(), &status) == 0;
    if (isThere && S_ISREG(status.st_mode)) {
      return candidate.string();
    }
    if (isThere && other.empty()) {
      other = shown(candidate.string()) + " is " + fileKind(status.st_mode);
    }
    tried += (tried.empty() ? "" : ", ") + (folder.empty() ? "." : folder);
  }
  for (const std::string& folder : lastFolders) {
    std::error_code error;
    const fs::path candidate = fs::path(folder) / path;
    if (fs::is_regular_file(candidate, error)) {
      return candidate.string();
    }
  }
  if (!other.empty()) {
    fail(where, other + "; name a regular file");
  }
  fail(where, "there is no file " + shown(path) + " in " + tried +
                  "; make it, or name its folder with --base");
}

void ManifestReader::refuseDoubledNames(const std::vector<ManifestFile>& files) const {
  std::set<std::string> names;
  for (std::size_t i = 0; i < files.size(); ++i) {
    attempt(0, [&] {
      if (!files[i].name.empty() && !names.insert(files[i].name).second) {
        fail(entry(i), "another file is stored as " + shown(files[i].name) +
                           ", too, and would be overwritten; give this one another \"name\"");
      }
      return 0;
    });
  }
}

}  // namespace

ManifestText readManifest(std::FILE* file, const std::string& path, bool isStream) {
  std::rewind(file);
  return {inputLabel(path), isStream ? "" : fs::path(path).parent_path().string(), readWhole(file)};
}

ManifestText readManifest(const std::string& path) {
  const SeekableInput input = openSeekable(path);
  return readManifest(input.file.get(), path, input.isStream);
}

Manifest loadManifest(const ManifestText& text, const std::vector<std::string>& baseFolders,
                      Findings* findings) {
  return ManifestReader(text, baseFolders, findings).read();
}

Manifest loadManifest(const std::string& path, const std::vector<std::string>& baseFolders,
                      Findings* findings) {
  return loadManifest(readManifest(path), baseFolders, findings);
}

}  // namespace authoring
