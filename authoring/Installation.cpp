#include "authoring/Installation.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "authoring/AuthoringError.h"
#include "authoring/FileTypes.h"
#include "authoring/LauncherFileReader.h"
#include "authoring/StubRecognition.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStubFolders[] = {"../libexec/corvane", "../lib/corvane", "."};
constexpr const char* kStubNames[] = {"corvane-launcher-any", "corvane-launcher"};
constexpr const char* kMachineFolders[] = {"../libexec/corvane", "../lib/corvane"};
constexpr const char* kOtherNames[][2] = {{"amd64", "x86_64"}, {"arm64", "aarch64"}};
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

// Those that are there, by their names.
std::vector<fs::path> machineFolders() {
  std::vector<fs::path> folders;
  for (const char* const folder : kMachineFolders) {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(placeOf(folder, ""), error)) {
      if (entry.is_directory(error)) {
        folders.push_back(entry.path());
      }
    }
  }
  std::sort(folders.begin(), folders.end(), [](const fs::path& a, const fs::path& b) {
    return std::pair(a.filename(), a) < std::pair(b.filename(), b);
  });
  return folders;
}

// As the marks of stubs name it.
std::string machineName(const std::string& machine) {
  for (const auto& [other, name] : kOtherNames) {
    if (machine == other) {
      return name;
    }
  }
  return machine;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : ", ") + word;
  }
  return text;
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
  for (const fs::path& folder : machineFolders()) {
    for (const char* const name : kStubNames) {
      if (isFile((folder / name).string())) {
        stubs.push_back((folder / name).string());
      }
    }
  }
  return stubs;
}

std::string findStubFor(const std::string& machine) {
  const std::string wanted = machineName(machine);
  std::vector<std::string> machines;
  for (const std::string& path : findStubs()) {
    const auto stub = recognizeStub(readLauncherFile(path));
    if (!stub || stub->kind != kStubNames[0]) {
      continue;
    }
    if (stub->machine == wanted) {
      return path;
    }
    machines.push_back(stub->machine);
  }
  throw AuthoringError("there is no stub for the machine " + quotedText(machine) + ", " +
                       (machines.empty() ? "nor for any other" : "only for " + joined(machines)) +
                       "; install the package corvane-stubs-" + wanted +
                       ", or name a stub with --stub");
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
