// Mistakes: a sound setup of texts, and what `check` says when one place in it is changed.
#ifndef CORVANE_TESTS_UNIT_AUTHORING_MISTAKES_H
#define CORVANE_TESTS_UNIT_AUTHORING_MISTAKES_H

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "authoring/FindingReport.h"
#include "authoring/SetupCheck.h"
#include "authoring/SetupContents.h"
#include "support/ArchiveFixture.h"

namespace mistakes {

inline const std::string kScript =
    R"(INSTRUCTIONS:
:top
  // First of all
:again
  FIND_JVM 1 0
  JMP0 @N1@ install
  LAUNCH @S2@ 1
  GOTO end
:install
  INSTALL_JVM 1
  JMP0 @N1@ nothing
  LAUNCH @S1@ 1
  GOTO end
:nothing
  ILAUNCH 69 0
:end
/:
)";

inline const std::string kLaunchScript =
    R"(DESC: Sample
COMMAND: exec "@JVM_HOME@/@JVM_EXE@" %CP%() %SYSTEMPROP%("a","b") %RUNTIME_JAVAARGS%() com.example.Setup
DISPLAY_CONSOLE: 1
)";

inline const std::string kJavaFile =
    R"(DESC: Java 17
JVM_EXE: bin/java
JVM_PROPERTIES:
  java.specification.version = 17
/:
PLATFORM_HINT: JAVA_HOME
PATH_HINT:
  jre
  /usr/lib/jvm/java-17
/:
CLASSPATH: "-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: "="
REQ_JAVA_ARGS: -Xmx1g
SET_ENV_FOR_WIZARD: A=b
)";

inline const std::string kOtherJavaFile =
    R"(DESC: Java 21
JVM_EXE: bin/java
JVM_PROPERTIES: java.specification.version = 21
PATH_HINT: /usr/lib/jvm/java-21
CLASSPATH: "-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: "="
)";

// No search tries it: ILAUNCH 69 ends with a status of its own.
inline const std::string kNoJavaFile =
    R"(DESC: No Java
JVM_HOME: /bin
JVM_EXE: sh
CLASSPATH: "-c ""exit 69"" "
)";

inline const std::string kMessage =
    R"(MESSAGE: No Java.
)";

// The texts of a setup, each with a number of its own.
struct Texts {
  std::string script = kScript;                                                  // i
  std::string launchScript = kLaunchScript;                                      // l
  std::vector<std::string> jvmFiles = {kJavaFile, kOtherJavaFile, kNoJavaFile};  // j, k, n
  std::string message = kMessage;                                                // m
};

// Their findings as they are shown, without the newlines.
inline std::vector<std::string> findingsOf(const Texts& texts) {
  const test::TempDir dir;
  std::vector<test::StoredFile> files = {{FILE_TYPE_INSTRUCTIONS, 1, "i", texts.script},
                                         {FILE_TYPE_LAUNCH_SCRIPT, 2, "l", texts.launchScript},
                                         {FILE_TYPE_JVM_MESSAGE, 3, "m", texts.message},
                                         {FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "PK"},
                                         {FILE_TYPE_JAR, 5, "wizard.jar", "PK"},
                                         {FILE_TYPE_JVM_INSTALLER, 6, "installer", "#!/bin/sh\n"}};
  const std::string names = "jkn";
  const std::int32_t numbers[] = {17, 21, 69};
  for (std::size_t i = 0; i < texts.jvmFiles.size(); ++i) {
    files.push_back({FILE_TYPE_JVM, numbers[i], names.substr(i, 1), texts.jvmFiles[i]});
  }
  const std::string setup = test::writeFile(dir / "setup", test::launcherFileBytes(files));
  std::vector<std::string> lines;
  const authoring::Findings findings = checkSetup(authoring::loadSetup(setup, {}));
  for (const authoring::Finding& finding : findings.all()) {
    if (finding.place.file.size() == 1) {  // a text, not the files beside them
      lines.push_back(authoring::describe(finding, false));
      lines.back().pop_back();
    }
  }
  return lines;
}

struct Mistake {
  std::string name;
  std::string file;     // as above
  std::string sound;    // the first such text in it
  std::string mistake;  // what stands there instead
  std::vector<std::string> findings;
};

inline void expectFindings(const std::vector<Mistake>& rows) {
  for (const Mistake& row : rows) {
    SCOPED_TRACE(row.name);
    Texts texts;
    std::map<std::string, std::string*> files = {{"i", &texts.script},
                                                 {"l", &texts.launchScript},
                                                 {"j", &texts.jvmFiles[0]},
                                                 {"m", &texts.message}};
    std::string& text = *files.at(row.file);
    const std::size_t place = text.find(row.sound);
    ASSERT_NE(std::string::npos, place);
    text.replace(place, row.sound.size(), row.mistake);
    EXPECT_EQ(row.findings, findingsOf(texts));
  }
}

}  // namespace mistakes

#endif
