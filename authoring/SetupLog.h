// SetupLog: what the log of a setup tells about its runs (docs/formats.md, "Log file").
//
// The log holds what foreign programs have printed, between lines of the launcher, and may have
// been cut or be no log at all. Reading never fails: lines that mean nothing are passed over, and
// memory is what the launcher's own lines take. A program that imitates those lines on its standard
// error may be taken for the launcher; explain compares what it printed with what was wanted.
#ifndef CORVANE_AUTHORING_SETUPLOG_H
#define CORVANE_AUTHORING_SETUPLOG_H

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace authoring {

// What led to a candidate.
enum class Origin { UserHome, PlatformHint, PathHint, Path, Scan, Verify };

enum class Verdict {
  Accepted,
  OtherValues,  // it answered, and the log tells of no match
  NoAnswer,     // the verify class did not run
  TimedOut,
  NotStarted,  // the shell that would have run it
  NotThere,
  NoProgram,  // its jvm file names no JVM_EXE, so nothing was tried
  NotTrusted,
  PassedOver,  // in a mount that a scan does not enter
  Unfinished   // the log ends here, or the user has canceled
};

struct Candidate {
  Origin origin = Origin::Verify;
  std::string hint;         // the variable of a platform hint, the directory of PATH
  std::string description;  // of the jvm file that it was tried for; empty: the log does not tell
  std::string program;      // as it was tried; a home when no program was
  bool wasAsked = false;    // the verify class was started
  bool hasVerifyClass = false;
  bool hasAnswered = false;
  std::vector<std::string> names;    // of the properties that it was asked for
  std::vector<std::string> answers;  // to each of them; fewer when it told less
  std::vector<std::string> errors;   // first lines of its standard error
  Verdict verdict = Verdict::Unfinished;
  std::string reason;  // the launcher's words, where it has some
};

struct WizardRun {
  std::string command;
  bool hasEnded = false;  // and its output was logged
  std::string
      lastError;  // the last line of its standard error; none of a stack trace, no blank one
};

struct LoggedRun {
  bool hasSearched = false;
  bool isSearchForAll = false;
  bool hasIndex = false;
  bool hasVerifyArchive = false;
  bool hasInputFile = false;
  std::vector<Candidate> candidates;  // in the order of the log
  std::string chosenHome;
  std::string chosenFile;
  std::vector<WizardRun> wizards;
  std::vector<std::string> problems;  // other warnings and errors, each once, with their prefix
  bool isWhole = true;                // false: the last line has no end
};

// The runs of a log, in its order. Empty: no line of a launcher is in it.
std::vector<LoggedRun> readSetupLog(std::FILE* file);

}  // namespace authoring

#endif
