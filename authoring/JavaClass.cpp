#include "authoring/JavaClass.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include "authoring/AuthoringError.h"
#include "authoring/Installation.h"
#include "authoring/ZipFile.h"

namespace authoring {
namespace {

// A class file begins with four fixed bytes, the minor and the major version, each of two bytes.
constexpr const char kClassMark[] = "\xCA\xFE\xBA\xBE";
constexpr std::size_t kMajor = 6;
constexpr std::size_t kHeadLength = 8;
constexpr int kMajorOfJava0 = 44;
constexpr const char* kVerifyEntry = "Verify.class";
constexpr const char* kManifestEntry = "META-INF/MANIFEST.MF";
constexpr const char* kMainClass = "Main-Class: ";

bool isClass(const std::string& bytes) {
  return bytes.size() >= kHeadLength && bytes.starts_with(kClassMark);
}

int versionOf(const std::string& bytes) {
  const auto byte = [&bytes](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  return byte(kMajor) * 256 + byte(kMajor + 1) - kMajorOfJava0;
}

std::string findVerifyArchive() {
  for (const std::string& folder : verifyFolders()) {
    const std::string path = (std::filesystem::path(folder) / "verify.jar").string();
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) {
      return path;
    }
  }
  throw AuthoringError(
      "verify.jar was not installed with this program; install corvane-pack with it");
}

}  // namespace

bool isClassName(const std::string& name) {
  bool atStart = true;
  for (const char c : name) {
    const auto letter = static_cast<unsigned char>(c);
    const bool isStart = std::isalpha(letter) || letter >= 0x80 || c == '_' || c == '$';
    if (atStart ? !isStart : !isStart && !std::isdigit(letter) && c != '.') {
      return false;
    }
    atStart = c == '.';
  }
  return !atStart;
}

std::optional<int> compiledFor(const std::string& jar, const std::string& className) {
  std::string entry = className + ".class";
  std::replace(entry.begin(), entry.end() - 6, '.', '/');
  const auto bytes = readZipEntry(jar, entry);
  if (!bytes) {
    return std::nullopt;
  }
  if (!isClass(*bytes)) {
    throw AuthoringError(jar + ": " + entry + " is no class; make the jar again");
  }
  return versionOf(*bytes);
}

std::string mainClassOf(const std::string& jar) {
  std::istringstream lines(readZipEntry(jar, kManifestEntry).value_or(""));
  std::string line;
  std::string found;
  while (std::getline(lines, line)) {
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    if (line.starts_with(kMainClass)) {
      found = line.substr(std::string(kMainClass).size());
    } else if (!found.empty() && line.starts_with(' ')) {
      found += line.substr(1);  // a manifest's lines have 72 bytes and go on behind a blank
    } else if (!found.empty()) {
      break;
    }
  }
  found.erase(found.find_last_not_of(' ') + 1);
  return found;
}

void writeVerifyArchive(const std::string& path, int version) {
  const std::string archive = findVerifyArchive();
  auto bytes = readZipEntry(archive, kVerifyEntry);
  if (!bytes || !isClass(*bytes)) {
    throw AuthoringError(archive + " holds no " + kVerifyEntry + "; install corvane-pack again");
  }
  const int major = std::max(versionOf(*bytes), version) + kMajorOfJava0;
  (*bytes)[kMajor] = static_cast<char>(major / 256);
  (*bytes)[kMajor + 1] = static_cast<char>(major % 256);
  writeZip(path, kVerifyEntry, *bytes);
}

}  // namespace authoring
