#include "support/TestAccess.h"

void LauncherTestAccess::setLauncherFileName(const std::string& path) {
  Launcher::m_launcherFileName = path.c_str();
  Launcher::m_origLauncherFileName = path.c_str();
}

void LauncherTestAccess::setOriginalLauncherFileName(const std::string& path) {
  Launcher::m_origLauncherFileName = path.c_str();
}

void LauncherTestAccess::setPrependClasspath(const std::string& path) {
  Launcher::m_prependClasspath = path.c_str();
}

void LauncherTestAccess::setAppendClasspath(const std::string& path) {
  Launcher::m_appendClasspath = path.c_str();
}

void LauncherTestAccess::setUserJavaHome(const std::string& path) {
  Launcher::m_userJavaHome = path.c_str();
}

void LauncherTestAccess::setPurpose(int purpose) {
  Launcher::m_launcherPurpose = purpose;
}

std::string LauncherTestAccess::logFileName() {
  return Launcher::m_logFileName.c_str();
}

bool LauncherTestAccess::showsJavaConsole() {
  return Launcher::m_showJavaConsole;
}

const StringDeque& LauncherTestAccess::args() {
  return Launcher::m_args;
}

const StringDeque& LauncherTestAccess::passThroughArgs() {
  return Launcher::m_passThroughArgs;
}

void LauncherTestAccess::resetCommandLine() {
  Launcher::m_logFileName = SString();
  Launcher::m_logFileInitialized = false;
  Launcher::m_launcherFileName = SString();
  Launcher::m_origLauncherFileName = SString();
  Launcher::m_passThroughArgs.clear();
  Launcher::m_args.clear();
  Launcher::m_showJavaConsole = false;
  Launcher::m_userJavaHome = SString();
  Launcher::m_prependClasspath = SString();
  Launcher::m_appendClasspath = SString();
}

void LauncherTestAccess::resetState() {
  Launcher::m_logFileName = SString();
  Launcher::m_logFileInitialized = false;
  Launcher::m_launcherPurpose = -1;
  Launcher::m_applicationArchive = SString();
  for (SString& variable : Launcher::m_stringVariables) {
    variable = SString();
  }
  for (std::int32_t& variable : Launcher::m_numericVariables) {
    variable = 0;
  }
}

void PlatformTestAccess::setCanceled(bool canceled) {
  PlatformImpl::m_canceled = canceled ? 1 : 0;
}

bool PlatformTestAccess::isSilent() {
  return PlatformImpl::m_silent;
}

const StringDeque& PlatformTestAccess::createdFiles() {
  return PlatformImpl::m_sdqCreatedFiles;
}

const StringDeque& PlatformTestAccess::createdDirectories() {
  return PlatformImpl::m_sdqCreatedDrs;
}

bool PlatformTestAccess::deletesLauncher() {
  return PlatformImpl::m_deleteLauncher;
}

std::string PlatformTestAccess::tempDir() {
  return PlatformImpl::m_tempDir.c_str();
}

void PlatformTestAccess::resetOptions() {
  setCanceled(false);
  PlatformImpl::setSilent(false);
  PlatformImpl::setDeleteLauncher(false);
  PlatformImpl::setSystemTempDir("");
  PlatformImpl::showUI();
}
