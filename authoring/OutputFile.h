// OutputFile: a file that appears whole or not at all.
//
// It is written beside its place, made whole there by `complete` and put into place by `commit`.
// Without `commit`, also when a signal ends the program, nothing stays of it. Where the system can
// hold a file without a name, not even a KILL leaves something behind.
#ifndef CORVANE_AUTHORING_OUTPUTFILE_H
#define CORVANE_AUTHORING_OUTPUTFILE_H

#include <cstdio>
#include <string>

#include "authoring/DeferredSignals.h"
#include "tagfile/StreamUtils.h"

namespace authoring {

enum class OutputKind { kProgram, kText };

class OutputFile {
 public:
  // `path` is a file, or nothing yet: see findOutputTarget. Throws AuthoringError when nothing can
  // be written beside it.
  explicit OutputFile(std::string path, OutputKind kind = OutputKind::kProgram);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::FILE* stream() const { return m_file.get(); }
  // Closes the file under its temporary name, with the mode of a new file; a program is executable.
  // What can fail has been done then. Throws AuthoringError, also when a signal came.
  void complete();
  // Completes the file, unless that was done, and puts it into place. Throws AuthoringError.
  void commit();

 private:
  [[noreturn]] void fail(int error) const;
  int open();
  bool giveName();

  DeferredSignals m_signals;  // ends last
  std::string m_path;
  OutputKind m_kind;
  std::string m_folder;
  std::string m_temporary;  // empty: the file has no name yet
  FilePtr m_file;
};

}  // namespace authoring

#endif
