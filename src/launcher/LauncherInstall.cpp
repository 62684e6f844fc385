// Installing a JVM: the one carried in the launcher, or one that a calling program names.
#include <algorithm>
#include <cerrno>

#include "archive/LauncherFileFormat.h"
#include "archive/LauncherInputFiles.h"
#include "jvm/VerificationMemory.h"
#include "launcher/Launcher.h"
#include "launcher/ScriptVariables.h"
#include "platform/PlatformImpl.h"
#include "platform/ProcessRequest.h"
#include "platform/ResultLines.h"
#include "platform/UniqueEntry.h"
#include "platform/WriteError.h"
#include "tagfile/TagFile.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

// How much of an installer's output the log shows, from its end.
constexpr std::size_t kLastOutput = 4096;
constexpr const char* kMissingJVMFile = "Invalid bundled JVM. Missing 'jvm' file.";

SString chooseDestination(InstallJVMOption option) {
  switch (option) {
    case INSTALL_JVM_OPTION_HIDDEN:
    case INSTALL_JVM_OPTION_TEMP:
      return PlatformImpl::createTempSubDirectory();
    case INSTALL_JVM_OPTION_PROMPT:
      return PlatformImpl::promptJVMDestinationDirectory();
  }
  return {};
}

// One word for the shell, whatever bytes the path holds.
SString quoteForShell(const SString& path) {
  SString quoted("'");
  for (const char c : path.view()) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted += '\'';
}

// Where the installer is unpacked: where it installs to, unless something of the user's has its
// name there.
SString chooseInstallerDirectory(const SString& installerName, const SString& destination) {
  SString path = destination;
  appendPathSeparator(path);
  path += installerName;
  const int error = createEntry(EntryKind::File, path);
  if (error == EEXIST) {
    return PlatformImpl::createTempSubDirectory();
  }
  if (error == 0) {
    PlatformImpl::addFileToCleanupList(path);  // also when it cannot be written whole or not be run
  }
  return destination;
}

void logLastOutput(const char* label, const SString& output) {
  if (!output.empty()) {
    const std::size_t begin = output.size() - std::min(output.size(), kLastOutput);
    logMessage(label, LOG_INFO);
    logMessage(output.substr(begin), LOG_INFO);
  }
}

void logInstallerFailure(const ProcessResult& result) {
  if (result.status != 0) {
    logMessage("The JVM installer ended with status " + convertToString(result.status) + ".",
               LOG_WARNING);
    logLastOutput("StdOut:", result.output.text());
    logLastOutput("ErrOut:", result.errors.text());
  }
}

// Leaves no copy of the installer behind.
void runInstaller(const FileIndexEntry& installer, const SString& destination) {
  const SString path =
      installer.extract(chooseInstallerDirectory(installer.getFileName(), destination));
  ProcessRequest request;
  request.command = quoteForShell(path);
  request.workingDir = destination;
  request.captures = true;
  VerificationMemory::forget();
  const ProcessResult result = PlatformImpl::executeProcess(request);
  logInstallerFailure(result);
  PlatformImpl::deleteFile(path);
  PlatformImpl::removeFileFromCleanupList(path);
  PlatformImpl::throwIfCanceled();
}

SString jvmFileIn(const SString& destination) {
  return destination + PlatformImpl::getPathSeparator() + "jvm";
}

// Records in the installed JVM's own jvm file where it is.
void recordHome(const SString& jvmPath, const SString& home, bool temporary) {
  TagFile jvmFile(jvmPath);
  jvmFile.setDynamicJVMTags(home, jvmPath, temporary);
  throwIfNotWritten(jvmFile.write(jvmPath));
}

}  // namespace

void Launcher::installJVM(InstallJVMOption option) {
  setLongVariable(resultvariable::kFlag, 0);
  setStringVariable(resultvariable::kInstalledJVMFile, "");
  if (option != INSTALL_JVM_OPTION_HIDDEN) {
    PlatformImpl::showUI();
    PlatformImpl::setUIStatus(UI_STATUS_PREPARING_JVM);
  } else {
    PlatformImpl::hideUI(0);
  }
  const FileIndexEntry* installer =
      getInputFiles().getFileIndex().findType(FILE_TYPE_JVM_INSTALLER);
  if (installer == nullptr) {
    throw LauncherException(PlatformImpl::getMessageText(MSG_NO_JVM_INSTALLER));
  }
  const SString destination = chooseDestination(option);
  if (destination.empty()) {
    return;
  }
  runInstaller(*installer, destination);
  const SString jvmPath = jvmFileIn(destination);
  if (!PlatformImpl::fileExists(jvmPath)) {
    logMessage(kMissingJVMFile, LOG_ERROR);
    return;
  }
  recordHome(jvmPath, destination, true);
  setLongVariable(resultvariable::kFlag, 1);
  setStringVariable(resultvariable::kInstalledJVMFile, jvmPath);
}

void Launcher::installJVM(bool, bool, const SString& installerCommand, const SString& destination) {
  ProcessRequest request;
  request.command = installerCommand;
  request.workingDir = destination;
  VerificationMemory::forget();
  logInstallerFailure(PlatformImpl::executeProcess(request));
  PlatformImpl::throwIfCanceled();
  const SString jvmPath = jvmFileIn(destination);
  recordHome(jvmPath, destination, false);
  printResult({jvmPath});
}
