// JVMFileCheck: the tags of a jvm file that make the command of a Java, and what one jvm file means
// for the others of the setup.
#ifndef CORVANE_AUTHORING_JVMFILECHECK_H
#define CORVANE_AUTHORING_JVMFILECHECK_H

#include <cstdint>
#include <set>

#include "authoring/CommandModel.h"
#include "authoring/SetupContents.h"

namespace authoring {

// The jvm files that only end the run with a status: ILAUNCH names such a file, and it has neither
// JVM_PROPERTIES nor hints, on purpose, so that no search tries it (docs/check.md). Where an
// ILAUNCH may name any file (its number is wrong or a variable, or the script does not parse), each
// file without both is one; a file that VERIFY names is none.
class StatusFiles {
 public:
  explicit StatusFiles(const Setup& setup);
  bool contain(const SetupFile& file) const;

 private:
  void addStatement(const Setup& setup, const SString& line);

  // The numbers that the script names.
  std::set<std::int32_t> m_launched;
  std::set<std::int32_t> m_verified;
  bool m_mayLaunchAny = false;
};

// `file` is a jvm file that parses; `command` is the COMMAND of the launch script.
void checkJVMFile(const Setup& setup, const SetupFile& file, const CommandModel& command,
                  Findings& findings);

// A jvm file whose SEARCH_ALL keeps the hints of those behind it from being tried.
void checkSearchAll(const Setup& setup, const StatusFiles& statusFiles, Findings& findings);

}  // namespace authoring

#endif
