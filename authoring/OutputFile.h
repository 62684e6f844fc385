// OutputFile: a file that appears whole or not at all.
//
// It is written under a temporary name in the same folder and renamed by `commit`. Without
// `commit`, even when the program is interrupted, it is removed. Only one at a time.
#ifndef CORVANE_AUTHORING_OUTPUTFILE_H
#define CORVANE_AUTHORING_OUTPUTFILE_H

#include <cstdio>
#include <string>

#include "tagfile/StreamUtils.h"

namespace authoring {

class OutputFile {
 public:
  // Throws AuthoringError when the temporary file cannot be made.
  explicit OutputFile(std::string path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::FILE* stream() const { return m_file.get(); }
  // Closes the file, makes it executable and puts it into place. Throws AuthoringError.
  void commit();

 private:
  [[noreturn]] void fail() const;

  std::string m_path;
  FilePtr m_file;
};

}  // namespace authoring

#endif
