// Installing a JVM: the one carried in the launcher, or one that a calling program names.
#include <cstdio>

#include "archive/LauncherFileFormat.h"
#include "archive/LauncherInputFiles.h"
#include "launcher/Launcher.h"
#include "launcher/ScriptVariables.h"
#include "platform/PlatformImpl.h"
#include "platform/ProcessRequest.h"
#include "tagfile/TagFile.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

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

// Leaves no copy of the installer in a directory that is the user's own, also when it could not be
// written whole or not be run; what stood there before is not ours to remove then.
void runInstaller(const FileIndexEntry& installer, const SString& destination) {
  SString path = destination;
  appendPathSeparator(path);
  path += installer.getFileName();
  if (!PlatformImpl::fileExists(path)) {
    PlatformImpl::addFileToCleanupList(path);
  }
  installer.extract(destination);
  ProcessRequest request;
  request.command = quoteForShell(path);
  request.workingDir = destination;
  request.captures = true;
  (void)PlatformImpl::executeProcess(request);
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
  (void)jvmFile.write(jvmPath);
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
  (void)PlatformImpl::executeProcess(request);
  PlatformImpl::throwIfCanceled();
  const SString jvmPath = jvmFileIn(destination);
  recordHome(jvmPath, destination, false);
  std::printf("%s\n", jvmPath.c_str());
}
