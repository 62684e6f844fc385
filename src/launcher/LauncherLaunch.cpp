// Running the wizard, handing over to an embedded launcher.
#include <unistd.h>

#include "archive/LauncherFileFormat.h"
#include "archive/LauncherInputFiles.h"
#include "jvm/JVMFile.h"
#include "launcher/CmdLine.h"
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"
#include "launchscript/LaunchScript.h"
#include "platform/CleanupAfterExec.h"
#include "platform/PlatformImpl.h"
#include "tagfile/Quotes.h"
#include "tagfile/TagFile.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr const char* kInternalLaunchFailed =
    "Unable to launch the internal launch script with the internal JVM file. Either the launch "
    "script or the JVM file is missing from the launcher.";
constexpr const char* kHandOverFailed = "Unable to execute the embedded launcher.";

TagFile* tagFileOfJVM(const FileIndexEntry* entry) {
  const bool isJVM = entry != nullptr && entry->getFileType() == FILE_TYPE_JVM;
  return isJVM ? entry->getTagFile() : nullptr;
}

}  // namespace

std::int32_t Launcher::launch(const SString& jvmFileName, std::int16_t uiSeconds) {
  if (getInputFiles().getLaunchScript() == nullptr) {
    return -1;
  }
  TagFile jvmFile(jvmFileName);
  return runWizard(jvmFile, uiSeconds);
}

std::int32_t Launcher::ilaunch(std::int32_t fileId, std::int16_t uiSeconds) {
  TagFile* jvmFile = tagFileOfJVM(getInputFiles().getFileIndex().findId(fileId));
  if (getInputFiles().getLaunchScript() == nullptr || jvmFile == nullptr) {
    logMessage(kInternalLaunchFailed, LOG_ERROR);
    return -1;
  }
  return runWizard(*jvmFile, uiSeconds);
}

std::int32_t Launcher::runWizard(TagFile& jvmFile, std::int16_t uiSeconds) {
  LaunchScript& script = *getInputFiles().getLaunchScript();
  const JVMFile jvm(jvmFile);
  if (uiSeconds > 0) {
    PlatformImpl::setUIStatus(UI_STATUS_RUNNING);
    PlatformImpl::setUISubStatus(UI_SUBSTATUS_NONE, "");
  }
  PlatformImpl::hideUI(uiSeconds);
  const std::int32_t result =
      script.execute(jvm, &g_launcher.m_passThroughArgs, g_launcher.m_showJavaConsole);
  g_launcher.m_wizardHasRun = true;
  if (PlatformImpl::isCanceled()) {
    g_launcher.m_canceledWizard = result;
  }
  g_launcher.m_stdOutput = script.getStdOut();
  g_launcher.m_errOutput = script.getStdErr();
  return result;
}

// QUIRK(hand-over-quotes): the arguments go through one text, in double quotes as they are; quotes
// inside them are not escaped. The paths are words of their own.
StringDeque Launcher::handOverWords(const SString& embeddedLauncher) {
  SString text("program");  // CmdLine reads the first word by other rules
  for (long i = 0; i < g_launcher.m_args.size(); ++i) {
    text += " " + inQuotes(g_launcher.m_args[i]);
  }
  CmdLine arguments;
  arguments.parse(text);
  StringDeque words;
  words.push_back(embeddedLauncher);
  words.push_back("-cv:orig");
  words.push_back(g_launcher.m_launcherFileName);
  for (int i = 1; i < arguments.getOptionCount(); ++i) {
    words.push_back(arguments.getOption(i));
  }
  return words;
}

void Launcher::executeEmbeddedLauncher(std::int32_t position) {
  const FileIndexEntry* entry = getInputFiles().getFileIndex().at(position);
  if (entry == nullptr || entry->getFileType() != FILE_TYPE_LAUNCHER) {
    logMessage(kHandOverFailed, LOG_ERROR);
    return;
  }
  const SString directory = PlatformImpl::createTempSubDirectory();
  const SString path = entry->extract(directory);
  if (access(path.c_str(), X_OK) != 0) {
    return;
  }
  // The copy removes itself and its directory.
  const CleanupAfterExec cleanup(directory);
  if (cleanup.isReady()) {
    PlatformImpl::replaceProcess(handOverWords(path));
  }
}
