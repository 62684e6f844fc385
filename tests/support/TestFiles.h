// Scratch folders and files for tests.
#ifndef CORVANE_TESTS_SUPPORT_TESTFILES_H
#define CORVANE_TESTS_SUPPORT_TESTFILES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace test {

// A new empty folder, removed with everything in it at the end of the scope.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return m_path; }
  std::string operator/(std::string_view name) const;

 private:
  std::string m_path;
};

// Makes `path` with exactly these bytes, and the folders above it. Returns `path`.
std::string writeFile(const std::string& path, std::string_view bytes);
// The same, made executable: a stand-in program.
std::string writeScript(const std::string& path, std::string_view text);
// All bytes of a file; fails the test when it cannot be read.
std::string readFile(const std::string& path);
// The paths below `folder`, relative to it and sorted; folders end with "/".
std::vector<std::string> listTree(const std::string& folder);

// Numbers as the launcher file holds them, most significant byte first.
std::string bigEndian32(std::int64_t number);
std::string bigEndian16(std::int64_t number);

// Collects what the launcher writes to standard output during `body`.
template <class Body>
std::string captureStdout(Body body);

// Sets an environment variable (null: unsets it) and puts the old value back at the end.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const char* value);
  ~ScopedEnvironment();
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  std::string m_name;
  std::string m_oldValue;
  bool m_wasSet;
};

// Makes `path` the current folder until the end of the scope.
class ScopedCurrentDir {
 public:
  explicit ScopedCurrentDir(const std::string& path);
  ~ScopedCurrentDir();
  ScopedCurrentDir(const ScopedCurrentDir&) = delete;
  ScopedCurrentDir& operator=(const ScopedCurrentDir&) = delete;

 private:
  int m_old;
};

void beginCapture();
std::string endCapture();

template <class Body>
std::string captureStdout(Body body) {
  beginCapture();
  body();
  return endCapture();
}

}  // namespace test

#endif
