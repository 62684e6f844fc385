// Launcher: the input files. Below this file their type is known by name only.
#include "archive/LauncherInputFiles.h"
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"

LauncherInputFiles& Launcher::getInputFiles() {
  if (g_launcher.m_inputFiles == nullptr) {
    g_launcher.m_inputFiles = std::make_shared<LauncherInputFiles>();
  }
  return *g_launcher.m_inputFiles;
}
