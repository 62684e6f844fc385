// VerificationMemory: what the Javas of this run have answered, so that none is asked the same
// question twice.
//
// An answer is that of a real start. It is taken again only where another start would be the same:
// of the same file, unchanged, with the same words behind its name, in the same directory and
// environment. A command that is more than plain words to the shell is never remembered, nor is a
// script, nor a start that did not end by itself. A wizard or an installer may have changed a Java,
// so that all is forgotten when one is run. docs/jvm-file.md tells authors.
#ifndef CORVANE_JVM_VERIFICATIONMEMORY_H
#define CORVANE_JVM_VERIFICATIONMEMORY_H

#include <optional>
#include <vector>

#include "launchscript/CommandText.h"
#include "platform/ProcessRequest.h"
#include "platform/ProgramFile.h"
#include "util/SString.h"

// A start of a Java, as far as its answer may depend on it.
struct VerificationQuestion {
  // Empty when the answer cannot be remembered. JAVA_HOME is to be set already.
  static std::optional<VerificationQuestion> of(const CommandText& command,
                                                const SString& workingDir);

  SString name;   // the program's path as the command spells it
  SString words;  // the rest of the command
  SString workingDir;
  SString javaHome;
  SString environment;  // without JAVA_HOME
  ProgramFile program;
};

class VerificationMemory {
 public:
  // Answers as `PlatformImpl::executeProcess` does, the progress that it shows included.
  // `isPackedClass`: the class prints properties and nothing else, so that only the Java decides on
  // the answer.
  ProcessResult ask(const CommandText& command, const ProcessRequest& request, bool isPackedClass);

  // The memory of this run.
  static VerificationMemory& ofRun();
  // For whoever runs a wizard or an installer.
  static void forget();

 private:
  // Under which other names of the program the answer would be the same.
  enum class Names { None, InSameFolder, All };

  struct Answer {
    VerificationQuestion question;
    ProcessResult result;
    Names names;
    SString places;  // for InSameFolder only
  };

  void keep(const VerificationQuestion& question, const ProcessResult& result, bool isPackedClass);
  static Names namesFor(const VerificationQuestion& question, ProgramFile::Kind kind,
                        const ProcessResult& result);
  static bool holdsForName(const Answer& answer, const VerificationQuestion& question);
  static bool answers(const Answer& answer, const VerificationQuestion& question);
  const ProcessResult* find(const VerificationQuestion& question) const;

  std::vector<Answer> m_answers;
};

#endif
