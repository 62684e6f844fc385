// The tests' access to the process's state: sets what the command line or a signal normally sets.
// Nothing needs to be restored: each test begins as a new process does (NewProcess.h).
#ifndef CORVANE_TESTS_SUPPORT_TESTACCESS_H
#define CORVANE_TESTS_SUPPORT_TESTACCESS_H

#include <string>

#include "platform/PlatformImpl.h"
#include "util/StringDeque.h"

class LauncherTestAccess {
 public:
  static void setLauncherFileName(const std::string& path);  // the running and the original one
  static void setOriginalLauncherFileName(const std::string& path);
  static void setPrependClasspath(const std::string& path);
  static void setAppendClasspath(const std::string& path);
  static void setUserJavaHome(const std::string& path);
  static void setPurpose(int purpose);
  static std::string logFileName();
  static bool showsJavaConsole();
  static const StringDeque& args();
  static const StringDeque& passThroughArgs();
  // What the command line sets, as at the start of a process.
  static void resetCommandLine();
  // Log, purpose, archive and variables as at the start of a process.
  static void resetState();
  // No input file was loaded.
  static void resetInputFiles();
};

class PlatformTestAccess {
 public:
  static void setCanceled(bool canceled);
  static bool isSilent();
  static const StringDeque& createdFiles();
  static const StringDeque& createdDirectories();
  static bool deletesLauncher();
  static std::string tempDir();  // as chosen; it need not exist
  // Nothing chosen by an option, nothing canceled, the console on.
  static void resetOptions();
};

#endif
