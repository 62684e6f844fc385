#include "support/TestFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <utility>

namespace fs = std::filesystem;

namespace test {
namespace {

using DirectoryPtr = std::unique_ptr<DIR, int (*)(DIR*)>;

// Adds the paths below `folder`, each after `prefix`; a folder comes before its contents. Uses
// readdir, as the C++ library cannot read large disks on 32-bit machines.
bool collect(const std::string& folder, const std::string& prefix,
             std::vector<std::string>& paths) {
  const DirectoryPtr directory(opendir(folder.c_str()), closedir);
  if (directory == nullptr) {
    return false;
  }
  bool complete = true;
  while (const dirent* const entry = readdir(directory.get())) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") {
      continue;
    }
    const std::string path = folder + "/" + name;
    struct stat status;
    if (lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
      paths.push_back(prefix + name + "/");
      complete &= collect(path, prefix + name + "/", paths);
    } else {
      paths.push_back(prefix + name);
    }
  }
  return complete;
}

}  // namespace

TempDir::TempDir() {
  std::string pattern = (fs::temp_directory_path() / "corvane-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("cannot make a scratch folder " + pattern);
  }
  m_path = pattern;
}

TempDir::~TempDir() {
  std::vector<std::string> paths;
  collect(m_path, "", paths);
  for (auto path = paths.rbegin(); path != paths.rend(); ++path) {
    std::string full = *this / *path;
    if (full.back() == '/') {
      full.pop_back();
    }
    std::remove(full.c_str());
  }
  std::remove(m_path.c_str());
}

std::string TempDir::operator/(std::string_view name) const {
  return m_path + "/" + std::string(name);
}

std::string writeFile(const std::string& path, std::string_view bytes) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  EXPECT_TRUE(file.good()) << "cannot write " << path;
  return path;
}

std::string writeScript(const std::string& path, std::string_view text) {
  writeFile(path, text);
  EXPECT_EQ(0, chmod(path.c_str(), 0755)) << path;
  return path;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << "cannot read " << path;
  std::ostringstream bytes;  // at once: byte by byte a stub with sanitizers takes a second
  bytes << file.rdbuf();
  return std::move(bytes).str();
}

std::vector<std::string> listTree(const std::string& folder) {
  std::vector<std::string> paths;
  EXPECT_TRUE(collect(folder, "", paths)) << "cannot list " << folder;
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::string bigEndian32(std::int64_t number) {
  return bigEndian16(number >> 16) + bigEndian16(number);
}

std::string bigEndian16(std::int64_t number) {
  return {static_cast<char>(number >> 8 & 0xFF), static_cast<char>(number & 0xFF)};
}

ScopedEnvironment::ScopedEnvironment(const char* name, const char* value) : m_name(name) {
  const char* old = std::getenv(name);
  m_wasSet = old != nullptr;
  m_oldValue = m_wasSet ? old : "";
  if (value == nullptr) {
    unsetenv(name);
  } else {
    setenv(name, value, 1);
  }
}

ScopedEnvironment::~ScopedEnvironment() {
  if (m_wasSet) {
    setenv(m_name.c_str(), m_oldValue.c_str(), 1);
  } else {
    unsetenv(m_name.c_str());
  }
}

ScopedCurrentDir::ScopedCurrentDir(const std::string& path)
    : m_old(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  EXPECT_EQ(0, chdir(path.c_str())) << path;
}

ScopedCurrentDir::~ScopedCurrentDir() {
  EXPECT_EQ(0, fchdir(m_old));
  close(m_old);
}

void beginCapture() {
  testing::internal::CaptureStdout();
}

std::string endCapture() {
  std::fflush(stdout);
  return testing::internal::GetCapturedStdout();
}

}  // namespace test
