// SourceFile: an input that must stay as it is while it is read.
#ifndef CORVANE_AUTHORING_SOURCEFILE_H
#define CORVANE_AUTHORING_SOURCEFILE_H

#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "tagfile/StreamUtils.h"

namespace authoring {

class SourceFile {
 public:
  // Opens the file for reading. Throws AuthoringError when it is no regular file or cannot be read.
  explicit SourceFile(std::string path);

  std::FILE* stream() const { return m_file.get(); }
  const std::string& path() const { return m_path; }
  std::int64_t size() const { return static_cast<std::int64_t>(m_begin.st_size); }

  // To be called after reading. Throws AuthoringError when the file has shrunk, grown, been written
  // to, or been replaced since it was opened: what was read may be half of the old and half of the
  // new.
  void checkUnchanged() const;

 private:
  std::string m_path;
  FilePtr m_file;
  struct stat m_begin = {};
};

}  // namespace authoring

#endif
