// Launcher: the input files and the run of their script. Lower files know only the name of their
// type.
#include "archive/LauncherInputFiles.h"
#include "instructions/InstructionsException.h"
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"
#include "platform/WithPrefix.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

LauncherInputFiles& Launcher::getInputFiles() {
  if (g_launcher.m_inputFiles == nullptr) {
    g_launcher.m_inputFiles = std::make_shared<LauncherInputFiles>();
  }
  return *g_launcher.m_inputFiles;
}

// Loads the index and the tag files of the launcher, unless that has been done in this run.
void Launcher::loadEmbeddedFiles() {
  if (!getInputFiles().areInternalFilesLoaded()) {
    withPrefix(MSG_FILE_INDEX_LOAD_FAILED, [] { getInputFiles().load(true); });
  }
}

std::int32_t Launcher::run() {
  const Instructions* instructions = getInputFiles().getInstructions();
  if (instructions == nullptr) {
    return -1;
  }
  try {
    return instructions->execute();
  } catch (const InstructionsException& e) {
    throw LauncherException("Error in instructions. " + e.getMessage() + " Line number (" +
                            convertToString(e.getLineNumber()) + ")");
  }
}
