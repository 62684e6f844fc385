// SourceFile: an input that must stay as it is while it is read.
#ifndef CORVANE_AUTHORING_SOURCEFILE_H
#define CORVANE_AUTHORING_SOURCEFILE_H

#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "tagfile/StreamUtils.h"

namespace authoring {

// What an open file was like.
class FileState {
 public:
  FileState() = default;
  // `path` is where the file was found; empty when nobody else can reach it. Throws AuthoringError.
  FileState(std::FILE* file, std::string path);

  std::int64_t size() const { return static_cast<std::int64_t>(m_status.st_size); }
  // Throws AuthoringError when the file has shrunk, grown, been written to, or been replaced since:
  // what was read may be half of the old and half of the new.
  void checkUnchanged(std::FILE* file) const;

 private:
  std::string m_path;
  struct stat m_status = {};
};

class SourceFile {
 public:
  // Opens the file for reading. Throws AuthoringError when it is no regular file or cannot be read.
  explicit SourceFile(const std::string& path);

  std::FILE* stream() const { return m_file.get(); }
  std::int64_t size() const { return m_state.size(); }
  // To be called after reading.
  void checkUnchanged() const { m_state.checkUnchanged(m_file.get()); }

 private:
  FilePtr m_file;
  FileState m_state;
};

}  // namespace authoring

#endif
