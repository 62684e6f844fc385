// Launcher: the driver of a run.
//
// Everything is static: the state (LauncherState.h) is that of the process. An instance exists only
// so that its destructor cleans up (temporary files, and the running copy of the launcher where
// asked for).
//
// What low rooms need of it is in LauncherFacts and Log. The rest is declared whole here and
// defined in several files, cut by concern and height:
//
//   LauncherRun.cpp      process, destructor
//   LauncherCmdLine.cpp  the options of the command line
//   LauncherActions.cpp  the input-file protocol ("-cv:in")
//   LauncherInputs.cpp   the input files, run
//   LauncherFind.cpp     finding and verifying a JVM
//   LauncherInstall.cpp  installing the bundled JVM
//   LauncherLaunch.cpp   running the wizard, handing over, the application archive
//
// Operations that fail throw LauncherException and nothing else.
#ifndef CORVANE_LAUNCHER_LAUNCHER_H
#define CORVANE_LAUNCHER_LAUNCHER_H

#include <cstdint>

#include "launcher/LauncherFacts.h"
#include "launcher/Log.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class JVMMatch;
class JVMMessage;
class LauncherInputFiles;
class TagFile;

enum InstallJVMOption {
  INSTALL_JVM_OPTION_HIDDEN = 0,  // into a new temporary directory, console hidden
  INSTALL_JVM_OPTION_TEMP = 1,    // into a new temporary directory, console shown
  INSTALL_JVM_OPTION_PROMPT = 2   // into a directory that the user names
};

class Launcher : public LauncherFacts {
 public:
  Launcher() = default;
  ~Launcher();  // PlatformImpl::cleanup; whatever it throws is swallowed
  Launcher(const Launcher&) = delete;
  Launcher& operator=(const Launcher&) = delete;

  // --- The run (LauncherRun, LauncherCmdLine, LauncherActions) ---

  // Runs the launcher at `launcherPath` (absolute) with the arguments after argv[0]. Returns the
  // status for the exit code; -1 after a LauncherException, which is shown and logged. So is
  // Canceled: then the status is that of the wizard that ran meanwhile, or of the signal.
  [[nodiscard]] static std::int32_t process(StringDeque& args, const SString& launcherPath);
  // After `process`: true when the process is to end by the signal that canceled the run.
  [[nodiscard]] static bool endsByCancel();
  // Applies the options from left to right and, unless one of them said otherwise, loads the
  // embedded files and runs the instruction script.
  [[nodiscard]] static std::int32_t processCmdLine(const StringDeque& args);

  // --- Log ---

  // As in Log.h.
  static void logMessage(const char* text, LogMessageType type) { ::logMessage(text, type); }
  static void logMessage(const SString& text, LogMessageType type) { ::logMessage(text, type); }
  static void setLogFileName(const SString& name) { ::setLogFileName(name); }

  // --- The input files (LauncherInputs) ---

  static LauncherInputFiles& getInputFiles();
  // Runs the instruction script; -1 when there is none. An error in the script is thrown as
  // "Error in instructions. TEXT Line number (N)".
  [[nodiscard]] static std::int32_t run();

  // --- Finding and verifying (LauncherFind) ---
  // showProgress: show the console and a status line; showFailMsg: show failures on the console.

  static void initializeUI();
  // N1 = found; S1 = home and S2 = path of the written jvm file when found.
  static void findJVM(bool showProgress, bool showFailMsg);
  static void search(bool showProgress, bool showFailMsg);
  static void searchAll(bool showProgress, bool showFailMsg);
  // N1 = valid; S1 = home when valid. Throws when `fileId` is not that of an embedded jvm file.
  static void verifyJVM(bool showProgress, bool showFailMsg, std::int32_t fileId);
  static void verifyJVM(bool showProgress, bool showFailMsg, TagFile& jvmFile,
                        const SString& javaHome);
  static void verifyJVM(bool showProgress, bool showFailMsg, const SString& jvmFileName,
                        const SString& javaHome);

  // --- Installing (LauncherInstall) ---

  // N1 = installed; S1 = path of the installed JVM's "jvm" file.
  static void installJVM(InstallJVMOption option);
  static void installJVM(bool showProgress, bool showFailMsg, const SString& installerCommand,
                         const SString& destination);

  // --- Launching (LauncherLaunch) ---

  // Run the launch script with a jvm file on disk, or with an embedded one. Return the wizard's
  // exit code, or -1 when a file that is needed is missing.
  [[nodiscard]] static std::int32_t launch(const SString& jvmFileName, std::int16_t uiSeconds);
  [[nodiscard]] static std::int32_t ilaunch(std::int32_t fileId, std::int16_t uiSeconds);
  // Replaces this process by the launcher embedded at `position` of the file index. Returns only
  // when that fails.
  static void executeEmbeddedLauncher(std::int32_t position);
  // The application archive on disk: the embedded one, or the one of that name beside the
  // launcher. Extracted or copied once; both forms share the result.
  static const SString& getApplicationArchive();
  static const SString& getApplicationArchive(const SString& name);

 private:
  // What the options decide about the run.
  struct RunPlan {
    std::int32_t status = 0;
    bool runInstructions = true;
  };
  struct OptionRow;
  static const OptionRow kOptions[];
  static long applyOption(const StringDeque& args, long index, RunPlan& plan);
  static void loadEmbeddedFiles();

  struct InputRequest;
  struct ActionRow;
  static const ActionRow kActions[];
  static void performInputFile(const SString& argument, RunPlan& plan);
  static void readInputFile(const SString& argument, TagFile& tags);
  static void loadFilesOf(const TagFile& inputFile);
  static void performAction(const InputRequest& request, RunPlan& plan);
  static void performVerify(const InputRequest& request, RunPlan& plan);
  static void endAction(RunPlan& plan);

  static void recordMatch(JVMMatch& match);
  static void reportNoJVM();
  static void printSearchResult();

  static std::int32_t statusOfCanceledRun();
  static std::int32_t runWizard(TagFile& jvmFile, std::int16_t uiSeconds);
  static StringDeque handOverWords(const SString& embeddedLauncher);
};

#endif
