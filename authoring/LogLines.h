// LogLines: the lines of a text that anybody may have written.
#ifndef CORVANE_AUTHORING_LOGLINES_H
#define CORVANE_AUTHORING_LOGLINES_H

#include <cstdio>
#include <string>

namespace authoring {

class LogLines {
 public:
  // `file` is not owned.
  explicit LogLines(std::FILE* file) : m_file(file) {}

  // Reads a line without its end; of a long one the first 64 KiB alone. A carriage return at its
  // end, as mails and editors leave it, is dropped. False when there is no further line.
  bool next(std::string& line);
  // Of the line read last: false when the text ended before the line did.
  bool hasEnd() const { return m_hasEnd; }

 private:
  std::FILE* m_file;
  bool m_hasEnd = true;
};

}  // namespace authoring

#endif
