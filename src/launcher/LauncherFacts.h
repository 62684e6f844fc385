// LauncherFacts: facts about the run, for rooms of every rank.
//
// The launcher's own names and purpose byte, the script's variables, and what the options said.
// Launcher adds operations: code that includes Launcher.h calls all of this Launcher::NAME. The
// fields are in LauncherState.h.
#ifndef CORVANE_LAUNCHER_LAUNCHERFACTS_H
#define CORVANE_LAUNCHER_LAUNCHERFACTS_H

#include <cstdint>

#include "tagfile/StreamUtils.h"
#include "util/SString.h"

class LauncherFacts {
 public:
  // --- File names and the purpose byte ---

  static SString getLauncherFileName();
  // The running launcher's own file, as FileIndex::openLauncherFile.
  static FilePtr openLauncherFile();
  static SString getOriginalLauncherFileName();
  // The part before the last "/" or "\" of the original launcher's path; empty without one.
  static SString getOriginalLauncherDir();
  // The byte before the file's trailer, 0..255; -1 when it cannot be read. The running launcher's
  // is read once.
  [[nodiscard]] static std::int32_t getLauncherPurpose(const char* file);
  // True for the purposes 0 and 2 of the running launcher.
  static bool isQuietPurpose();

  // --- The script's variables: N1..N5 and S1..S10 ---

  static bool isValidStringVariable(std::int32_t number);
  static bool isValidLongVariable(std::int32_t number);
  // Throw "Invalid string variable number: N" or "Invalid numeric variable number: N".
  static SString getStringVariable(std::int32_t number);
  static void setStringVariable(std::int32_t number, const SString& value);
  static std::int32_t getLongVariable(std::int32_t number);
  static void setLongVariable(std::int32_t number, std::int32_t value);

  // --- Values of options, and the wizard's error output ---

  static SString& getUserJavaHome();  // absolute
  static SString& getUserJavaHomeAsGiven();
  static SString& getPrependClasspath();
  static SString& getAppendClasspath();
  static SString& getErrOutput();
  // True once a wizard has run to its end.
  static bool hasWizardRun();
};

#endif
