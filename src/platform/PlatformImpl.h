// PlatformImpl: everything the launcher asks of the operating system and of the console.
//
// All static: the state (Console.h, CleanupState.h) is that of the process. Declared whole here and
// defined in several files, cut by concern:
//
//   PlatformImpl.cpp      environment, small file operations, the cancel flag
//   PlatformSignals.cpp   standard descriptors and signals at start, cancellation
//   PlatformConsole.cpp   status lines, progress, messages, title, prompt
//   PlatformTemp.cpp      temporary files, clean-up, free space
//   PlatformProcess.cpp   child processes
//   PlatformSearch.cpp    the scan of the disks
//
// Paths are byte strings, "/" separates their parts. Failures are LauncherException where an
// operation says so; all others report by their result or not at all.
#ifndef CORVANE_PLATFORM_PLATFORMIMPL_H
#define CORVANE_PLATFORM_PLATFORMIMPL_H

#include <sys/types.h>

#include <csignal>
#include <cstdint>

#include "platform/ConsoleTexts.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class FileFindListener;

class PlatformImpl {
 public:
  // --- Start and cancellation (PlatformSignals) ---

  // To be called first in main: makes sure that the descriptors 0 to 2 are open, that children can
  // be waited for, that a closed pipe or a limit to the size of files does not end us, and that
  // INT, TERM and HUP (unless they were inherited as ignored) raise the cancel flag. A second such
  // signal ends the program at once.
  static void prepareProcess();
  static bool isCanceled();
  // Throws LauncherException with the text of MSG_CANCELED when the user has canceled. For loops
  // that a script could make endless.
  static void throwIfCanceled();

  // --- Console (PlatformConsole) ---

  static void setUIStatus(UIStatus status);
  static void setUISubStatus(UISubStatus subStatus, const SString& data);
  static UISubStatus getUISubStatus();
  static const SString& getUISubStatusData();
  static void setUIProgress(std::int32_t progress);
  static void advanceUIProgress(std::int32_t steps);
  static void showUI();
  static void hideUI(std::int16_t seconds);  // the argument is ignored
  static void setSilent(bool silent);
  static bool isUIVisible();  // a promised name, though nothing of ours calls it
  // Shows `text` as a line, also while the console is hidden; only silent mode suppresses it.
  static void showUIMessage(const SString& text);
  static void setUITitle(const SString& title);
  static SString getMessageText(MessageIdentifier id);
  // The directory that the user types (one word); empty in silent mode, at end of input and when
  // the user cancels or has canceled.
  static SString promptJVMDestinationDirectory();

  // --- Child processes (PlatformProcess) ---

  // Runs `command` through /bin/sh in `workingDir` (empty: the current directory) and returns its
  // exit code (the wait status shifted right by 8 bits). With `capture` both output streams are
  // collected and appended to `stdOut` and `stdErr` (either may be null: read and discarded);
  // they are the child's own only when `redirectInChild` is set. `consoleFlag` has no effect.
  // With `replaceProcess` this process becomes the command, split by CmdLine and looked for on
  // PATH, without a shell and in the current directory; returns 0 when that fails.
  // Throws LauncherException, each text followed by the system's: "Error setting working
  // directory: DIR ", "Couldn't create either stdout or stderr pipe: ", "Error forking new
  // process: ", "Error waiting for child process: " (not with `capture`).
  [[nodiscard]] static int executeProcess(const SString& command, const SString& workingDir,
                                          bool consoleFlag, bool capture, bool redirectInChild,
                                          SString* stdOut, SString* stdErr, bool replaceProcess);
  // One read of at most 4096 bytes from a non-blocking descriptor; what came is appended to `out`
  // up to its first zero byte, unless `out` is null, and advances the progress by 1. Returns what
  // read(2) returned: -1 nothing there now, 0 end of file.
  [[nodiscard]] static int readFromFile(int fd, SString* out);
  // Called just before the Java process starts; nothing to do on this platform.
  static void preJavaLaunch() {}

  // --- Temporary files and clean-up (PlatformTemp) ---

  // `dir` is taken as seen from the current directory; messages show it as it is.
  static void setSystemTempDir(const SString& dir);
  // The chosen directory, or "/var/tmp/". Throws the text of MSG_TEMP_DIR_MISSING with the path
  // when it is no directory.
  static SString getSystemTempDirectory();
  // Create a new empty file or directory with a unique name ("cvj" and six characters) in the
  // temporary directory and register it for clean-up. Nothing that exists is ever used. Throw
  // "Error creating tmp file PATH", or the system's text alone for a directory.
  static SString createTempFile();
  static SString createTempSubDirectory();
  static void addFileToCleanupList(const SString& path);
  static void removeFileFromCleanupList(const SString& path);
  static void removeDirFromCleanupList(const SString& path);
  // A relative path behind the current directory, where that can be told.
  static SString makeAbsolute(const SString& path);
  [[nodiscard]] static bool fileExists(const SString& path);
  // Deletes a file, or a directory with its whole tree. Never follows a link.
  static void deleteFile(const SString& path);
  // Deletes one file, link or empty directory. False when it does not exist or its directory cannot
  // be entered (not logged), or when it cannot be deleted (logged as a warning: "Could not delete
  // PATH :  REASON").
  [[nodiscard]] static bool deleteOneFile(const SString& path);
  // True when the file system of `directory` (of the current directory, unless it begins with "/")
  // has room for `bytes` in `files` files. Throws the system's text when it cannot be asked.
  [[nodiscard]] static bool checkFreeSpace(const SString& directory, std::int64_t bytes,
                                           std::int64_t files);
  // The blocks that so many bytes and files need: the arithmetic of checkFreeSpace alone.
  static std::int64_t countBlocks(std::int64_t bytes, std::int64_t files, std::int64_t blockSize);
  static void setDeleteLauncher(bool deleteIt);
  // Removes the running launcher, and then its directory if that is empty.
  static void deleteLauncher();
  // Deletes the registered files, then the registered directories, each in order of registration,
  // then the launcher itself where asked for.
  static void cleanup();

  // --- Disks, environment, small file operations (PlatformSearch, PlatformImpl) ---

  // Offers every file below every search partition whose path ends with "/" and one of `names` to
  // the listener, until it asks to stop or the user cancels.
  static void findFiles(const StringDeque& names, FileFindListener& listener);
  static void getJVMSearchPartitions(StringDeque& partitions);  // appends "/"
  static SString getPathSeparator();                            // "/"
  // The pieces between the ":" of the variable's value, empty ones included; none when it is unset
  // or empty. `homes` is cleared first.
  static void getPlatformHint(StringDeque& homes, const SString& variableName);
  static void getPlatformJVMPaths(StringDeque& dirs);          // those of PATH
  static SString getEnvironmentVariable(const SString& name);  // empty when unset
  static void setEnvironmentVariable(const SString& name, const SString& value);
  // Adds the execute bits for owner, group and others; failures are ignored.
  static void setFileExecutable(const SString& path);
  // In the charset of the user's locale; the text ends at the first character that it lacks. `text`
  // is zero-terminated.
  static SString wideToMultiByte(const wchar_t* text);

 private:
  class Child;  // a running child process (PlatformProcess.cpp)

  static void handleSignal(int signal, siginfo_t* info, void* context);
};

#endif
