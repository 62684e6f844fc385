// LauncherState: the launcher's part of the process's state, which is four values.
//
// `g_launcher = {}` makes it that of a new process; each test begins so. Read and written by
// Launcher's own files, the log and VerificationMemory only; other code asks Launcher.
#ifndef CORVANE_LAUNCHER_LAUNCHERSTATE_H
#define CORVANE_LAUNCHER_LAUNCHERSTATE_H

#include <cstdint>
#include <memory>
#include <optional>

#include "launcher/ScriptVariables.h"
#include "tagfile/KeptFile.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class JVMMessage;
class LauncherInputFiles;
class VerificationMemory;

// The comment of a field says who writes it.
struct LauncherState {
  SString m_logFileName;                                 // no log when empty; "-cv:log", LOGFILE
  bool m_logFileInitialized = false;                     // logMessage, with the separator line
  SString m_launcherFileName;                            // process
  KeptFile m_launcherFile;                               // process, openLauncherFile
  SString m_origLauncherFileName;                        // process, "-cv:orig"
  SString m_stringVariables[kStringVariables];           // the script
  std::int32_t m_numericVariables[kNumericVariables]{};  // the script
  StringDeque m_passThroughArgs;                         // arguments that are not ours
  StringDeque m_args;                                    // process
  bool m_showJavaConsole = false;                        // "-cv:javaconsole" and its like
  SString m_userJavaHome;                                // "-cv:javahome"; absolute
  SString m_userJavaHomeAsGiven;                         // "-cv:javahome", for messages
  SString m_prependClasspath;                            // "-cp:p"
  SString m_appendClasspath;                             // "-cp:a"
  SString m_applicationArchive;                          // getApplicationArchive
  std::int32_t m_launcherPurpose = -1;                   // not read yet; getLauncherPurpose
  bool m_wizardHasRun = false;                           // launch and ilaunch
  // The status of the wizard that ran when the user canceled.
  std::optional<std::int32_t> m_canceledWizard;  // launch and ilaunch
  bool m_endsByCancel = false;                   // process
  SString m_stdOutput;                           // launch and ilaunch
  SString m_errOutput;                           // launch and ilaunch
  // Null until getInputFiles makes it. Nobody shares it: a shared_ptr, unlike a unique_ptr, can
  // be destroyed where the type is incomplete.
  std::shared_ptr<LauncherInputFiles> m_inputFiles;
  std::shared_ptr<VerificationMemory> m_verificationMemory;  // VerificationMemory, in the same way
  const JVMMessage* m_jvmMessage = nullptr;                  // findJVM; one of m_inputFiles
};

extern LauncherState g_launcher;

#endif
