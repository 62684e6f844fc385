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

#include <cstdint>

#include "platform/ConsoleTexts.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class FileFindListener;
struct ProcessRequest;
struct ProcessResult;

class PlatformImpl {
 public:
  // --- Start and cancellation (PlatformSignals) ---

  // To be called first in main: makes sure that the descriptors 0 to 2 are open, that children can
  // be waited for, that a closed pipe or a limit to the size of files does not end us, and that
  // INT, TERM, HUP and QUIT (unless they were inherited as ignored) cancel the run; QUIT only while
  // no child runs. A second such signal ends the command that runs.
  // Files are created with a umask that keeps group and others from writing to them; children
  // get the one that we were started with.
  static void prepareProcess();
  // True for a set-user-id or set-group-id program: who started it has fewer rights than it.
  static bool hasBorrowedRights();
  static bool isCanceled();
  // Throws Canceled with the text of MSG_CANCELED when the user has canceled.
  static void throwIfCanceled();
  // The status of a process that signal n ended is this number + n, as a shell puts it.
  static constexpr int kSignalStatus = 128;
  // Of a canceled run: the status of a process that ended by the signal that canceled it, and that
  // end. All output is flushed first. Returns only where the system does not permit it (process 1).
  static int getCancelStatus();
  static void endByCancelingSignal();

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

  // Runs a command through /bin/sh and waits for it (ProcessRequest.h). Throws Canceled instead
  // when the user has canceled, and LauncherException, each text followed by the system's: "Error
  // setting working directory: DIR ", "Couldn't create either stdout or stderr pipe: ", "Error
  // forking new process: ", "Error waiting for child process: " (not when it captures) and, unless
  // it is a trial, "Error starting /bin/sh: " and "Error capturing stdout or stderr in new process:
  // ".
  [[nodiscard]] static ProcessResult executeProcess(const ProcessRequest& request);
  // This process becomes the program `words[0]`, which is looked for on PATH, without a shell and
  // in the current directory. Returns only when that fails. Throws Canceled as above.
  static void replaceProcess(const StringDeque& words);
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
  // Deletes a file, or a directory with its whole tree (DeleteFullDir.h). Never follows a link.
  static void deleteFile(const SString& path);
  // Deletes one file, link or empty directory. False when it does not exist (not logged), or when
  // it cannot be examined or deleted (logged as a warning: "Could not delete PATH :  REASON").
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
};

#endif
