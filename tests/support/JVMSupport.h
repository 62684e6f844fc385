// What the tests of jvm files and launch scripts share: tag files from rows, the log, outcomes.
#ifndef CORVANE_TESTS_SUPPORT_JVMSUPPORT_H
#define CORVANE_TESTS_SUPPORT_JVMSUPPORT_H

#include <string>
#include <utility>
#include <vector>

#include "launchscript/CommandText.h"
#include "support/TestFiles.h"
#include "support/Texts.h"
#include "tagfile/TagFile.h"
#include "util/LauncherException.h"

namespace test {

inline std::string str(const CommandText& text) {
  return str(text.bytes());
}

// The tags of a jvm file or launch script: names, each with its values.
using Tags = std::vector<std::pair<std::string, std::vector<std::string>>>;
void addTags(TagFile& file, const Tags& tags);

// The lines of a log that begin with one of these.
std::vector<std::string> linesBeginning(const std::string& log,
                                        const std::vector<std::string>& beginnings);

// While it lives, the launcher logs to a file of its own.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  // What was logged since the last call, without the separator line.
  std::string take();

 private:
  TempDir m_dir;
};

// What `body` returned, or "LauncherException: " and the text that it threw.
template <class Body>
std::string outcome(Body body) {
  try {
    return str(body());
  } catch (const LauncherException& e) {
    return "LauncherException: " + str(e.getMessage());
  }
}

}  // namespace test

#endif
