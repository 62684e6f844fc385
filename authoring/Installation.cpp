#include "authoring/Installation.h"

#include <filesystem>

#include "authoring/AuthoringError.h"
#include "authoring/LauncherFileReader.h"
#include "authoring/StubRecognition.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStubFolders[] = {"../libexec/corvane", "../lib/corvane", "."};
constexpr const char* kStubNames[] = {"corvane-launcher-any", "corvane-launcher"};
constexpr const char* kVerifyFolders[] = {"../share/corvane", "../lib/corvane", "../java"};

// Empty where the system does not tell.
fs::path programFolder() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).parent_path();
}

std::string placeOf(const char* folder, const char* name) {
  const fs::path program = programFolder();
  return program.empty() ? "" : (program / folder / name).lexically_normal().string();
}

bool isFile(const std::string& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

}  // namespace

std::vector<std::string> findStubs() {
  std::vector<std::string> stubs;
  for (const char* const name : kStubNames) {
    for (const char* const folder : kStubFolders) {
      const std::string stub = placeOf(folder, name);
      if (isFile(stub)) {
        stubs.push_back(stub);
        break;
      }
    }
  }
  return stubs;
}

std::string findDefaultStub() {
  const std::vector<std::string> stubs = findStubs();
  if (stubs.empty() || fs::path(stubs.front()).filename() != kStubNames[0]) {
    throw AuthoringError("no stub stands beside this program; name one with --stub");
  }
  return stubs.front();
}

std::vector<std::string> verifyFolders() {
  std::vector<std::string> folders;
  for (const char* const folder : kVerifyFolders) {
    folders.push_back(placeOf(folder, ""));
  }
  return folders;
}

std::string describeInstallation() {
  std::string text = "corvane-pack " CORVANE_VERSION;
  for (const std::string& path : findStubs()) {
    const auto stub = recognizeStub(readLauncherFile(path));
    text += "\n" + (stub ? describeStub(*stub) : "unknown stub") + ": " + path;
  }
  return text;
}

}  // namespace authoring
