#include "authoring/SumFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "authoring/AuthoringError.h"
#include "authoring/TemporaryName.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

bool isFileOrLink(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && (S_ISREG(status.st_mode) || S_ISLNK(status.st_mode));
}

bool moveTo(const char* free, const std::string& path) {
  if (access(free, F_OK) == 0) {
    errno = EEXIST;
    return false;
  }
  return std::rename(path.c_str(), free) == 0;
}

// A link that leads to the new sum is right.
bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return a == b || fs::equivalent(a, b, error);
}

}  // namespace

std::string sumFileOf(const std::string& path) {
  return path + ".sha256";
}

// A line may hold no newline; then, as sha256sum has it, a backslash in front says so.
std::string sumLine(const std::string& hex, const std::string& name) {
  std::string escaped;
  for (const char byte : name) {
    escaped += byte == '\\' ? "\\\\" : byte == '\n' ? "\\n" : std::string(1, byte);
  }
  return (escaped == name ? "" : "\\") + hex + "  " + escaped + "\n";
}

SetAside::SetAside(std::string path) : m_path(std::move(path)) {
  if (!isFileOrLink(m_path)) {
    return;
  }
  const std::string folder = fs::path(m_path).parent_path().string();
  m_temporary = createTemporary(folder.empty() ? "." : folder,
                                [this](const char* free) { return moveTo(free, m_path); });
  if (m_temporary.empty()) {
    throw AuthoringError(m_path + " cannot be replaced: " + std::strerror(errno));
  }
}

SetAside::~SetAside() {
  if (!m_temporary.empty()) {
    (void)std::rename(m_temporary.c_str(), m_path.c_str());
  }
}

void SetAside::discard() {
  if (!m_temporary.empty()) {
    unlink(m_temporary.c_str());
    m_temporary.clear();
  }
}

void commitWithSum(OutputFile& setup, OutputFile* sum, const std::string& sumPath,
                   const std::string& linkSumPath) {
  setup.complete();
  if (sum != nullptr) {
    sum->complete();
  }
  SetAside ofLink(isSameFile(linkSumPath, sumPath) ? sumPath : linkSumPath);
  SetAside ofFile(sumPath);
  setup.commit();
  ofLink.discard();
  ofFile.discard();
  if (sum != nullptr) {
    sum->commit();
  }
}

}  // namespace authoring
