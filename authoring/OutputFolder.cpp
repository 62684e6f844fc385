#include "authoring/OutputFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "authoring/AuthoringError.h"
#include "authoring/FileKind.h"
#include "authoring/TemporaryName.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kFolderMode = 0777;  // less the umask

std::string withoutEndingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') {
    path.pop_back();
  }
  return path;
}

// True when an empty folder is there already.
bool checkPlace(const std::string& path) {
  if (path.empty()) {
    throw AuthoringError("the name of the output is empty; name a folder");
  }
  struct stat status;
  if (stat(path.c_str(), &status) != 0) {
    if (lstat(path.c_str(), &status) == 0) {
      throw AuthoringError(path + " is a link that leads nowhere; name a folder");
    }
    return false;  // new, or the way to it is at fault: making it tells
  }
  if (!S_ISDIR(status.st_mode)) {
    const char* const kind = S_ISREG(status.st_mode) ? "a file" : fileKind(status.st_mode);
    throw AuthoringError(path + " is " + kind + "; name a new or an empty folder");
  }
  std::error_code error;
  const bool isEmpty = fs::is_empty(path, error);
  if (error) {
    throw AuthoringError(path + " cannot be read: " + error.message());
  }
  if (!isEmpty) {
    throw AuthoringError(path + " is not empty; name a new or an empty folder");
  }
  return true;
}

std::string parentOf(const std::string& path) {
  const std::string parent = fs::path(path).parent_path().string();
  return parent.empty() ? "." : parent;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

}  // namespace

OutputFolder::OutputFolder(std::string path)
    : m_path(withoutEndingSlashes(std::move(path))), m_isThere(checkPlace(m_path)) {
  makeParents();
  m_staging = createTemporary(m_isThere ? m_path : parentOf(m_path),
                              [](const char* name) { return mkdir(name, kFolderMode) == 0; });
  if (m_staging.empty()) {
    fail(errno);
  }
}

OutputFolder::~OutputFolder() {
  removeParts();
}

void OutputFolder::removeParts() {
  if (!m_staging.empty()) {
    std::error_code error;
    fs::remove_all(m_staging, error);
    m_staging.clear();
  }
  for (; !m_parents.empty(); m_parents.pop_back()) {
    rmdir(m_parents.back().c_str());
  }
}

void OutputFolder::makeParents() {
  fs::path made;
  for (const fs::path& part : fs::path(m_path).parent_path()) {
    made /= part;
    if (mkdir(made.c_str(), kFolderMode) == 0) {
      m_parents.push_back(made.string());
    } else if (errno != EEXIST) {
      fail(errno);
    }
  }
}

void OutputFolder::commit() {
  DeferredSignals::throwIfCame();
  if (m_isThere) {
    moveFiles();
  } else if (std::rename(m_staging.c_str(), m_path.c_str()) != 0) {
    fail(errno);
  }
  m_staging.clear();
  m_parents.clear();
}

// What was moved goes back when one cannot be.
void OutputFolder::moveFiles() {
  std::vector<std::pair<fs::path, fs::path>> moved;
  for (const std::string& name : namesIn(m_staging)) {
    const fs::path made = fs::path(m_staging) / name;
    const fs::path place = fs::path(m_path) / name;
    std::error_code error;
    if (fs::exists(fs::symlink_status(place, error))) {
      error = std::make_error_code(std::errc::file_exists);
    } else {
      fs::rename(made, place, error);
    }
    if (error) {
      for (const auto& [from, to] : moved) {
        std::error_code ignored;
        fs::rename(to, from, ignored);
      }
      throw AuthoringError(place.string() + " cannot be written: " + error.message());
    }
    moved.emplace_back(made, place);
  }
  rmdir(m_staging.c_str());
}

// The destructor does not run when the constructor throws.
void OutputFolder::fail(int error) {
  removeParts();
  throw AuthoringError(m_path + " cannot be made: " + std::strerror(error));
}

}  // namespace authoring
