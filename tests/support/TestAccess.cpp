#include "support/TestAccess.h"

#include "launcher/LauncherState.h"
#include "platform/CleanupState.h"
#include "platform/Console.h"
#include "platform/PlatformImpl.h"

void LauncherTestAccess::setLauncherFileName(const std::string& path) {
  g_launcher.m_launcherFile = {};
  g_launcher.m_launcherFileName = path.c_str();
  g_launcher.m_origLauncherFileName = path.c_str();
}

void LauncherTestAccess::setOriginalLauncherFileName(const std::string& path) {
  g_launcher.m_origLauncherFileName = path.c_str();
}

void LauncherTestAccess::setPrependClasspath(const std::string& path) {
  g_launcher.m_prependClasspath = path.c_str();
}

void LauncherTestAccess::setAppendClasspath(const std::string& path) {
  g_launcher.m_appendClasspath = path.c_str();
}

void LauncherTestAccess::setUserJavaHome(const std::string& path) {
  g_launcher.m_userJavaHome = path.c_str();
  g_launcher.m_userJavaHomeAsGiven = path.c_str();
}

void LauncherTestAccess::setPurpose(int purpose) {
  g_launcher.m_launcherPurpose = purpose;
}

std::string LauncherTestAccess::logFileName() {
  return g_launcher.m_logFileName.c_str();
}

bool LauncherTestAccess::showsJavaConsole() {
  return g_launcher.m_showJavaConsole;
}

const StringDeque& LauncherTestAccess::args() {
  return g_launcher.m_args;
}

const StringDeque& LauncherTestAccess::passThroughArgs() {
  return g_launcher.m_passThroughArgs;
}

void LauncherTestAccess::resetCommandLine() {
  g_launcher.m_logFileName = SString();
  g_launcher.m_logFileInitialized = false;
  g_launcher.m_launcherFileName = SString();
  g_launcher.m_origLauncherFileName = SString();
  g_launcher.m_passThroughArgs.clear();
  g_launcher.m_args.clear();
  g_launcher.m_showJavaConsole = false;
  g_launcher.m_userJavaHome = SString();
  g_launcher.m_userJavaHomeAsGiven = SString();
  g_launcher.m_prependClasspath = SString();
  g_launcher.m_appendClasspath = SString();
}

void LauncherTestAccess::resetInputFiles() {
  g_launcher.m_inputFiles = nullptr;
}

void LauncherTestAccess::resetState() {
  g_launcher.m_logFileName = SString();
  g_launcher.m_logFileInitialized = false;
  g_launcher.m_launcherPurpose = -1;
  g_launcher.m_applicationArchive = SString();
  for (SString& variable : g_launcher.m_stringVariables) {
    variable = SString();
  }
  for (std::int32_t& variable : g_launcher.m_numericVariables) {
    variable = 0;
  }
}

void PlatformTestAccess::setCanceled(bool canceled) {
  g_signals.m_canceledBy = canceled ? SIGINT : 0;
}

bool PlatformTestAccess::isSilent() {
  return g_console.m_silent;
}

const StringDeque& PlatformTestAccess::createdFiles() {
  return g_cleanup.m_sdqCreatedFiles;
}

const StringDeque& PlatformTestAccess::createdDirectories() {
  return g_cleanup.m_sdqCreatedDrs;
}

bool PlatformTestAccess::deletesLauncher() {
  return g_cleanup.m_deleteLauncher;
}

std::string PlatformTestAccess::tempDir() {
  return g_cleanup.m_tempDir.c_str();
}

void PlatformTestAccess::resetOptions() {
  setCanceled(false);
  PlatformImpl::setSilent(false);
  PlatformImpl::setDeleteLauncher(false);
  PlatformImpl::setSystemTempDir("");
  PlatformImpl::showUI();
}
