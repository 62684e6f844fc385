// Launcher: the input files. Below this file their type is known by name only.
#include "archive/LauncherInputFiles.h"
#include "launcher/Launcher.h"

constinit LauncherInputFiles Launcher::m_inputFiles;

LauncherInputFiles& Launcher::getInputFiles() {
  return m_inputFiles;
}
