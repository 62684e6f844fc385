// LauncherTestAccess, the part that knows the input files' type; for programs that link setup_app.
#include <memory>

#include "archive/LauncherInputFiles.h"
#include "support/TestAccess.h"

void LauncherTestAccess::resetInputFiles() {
  std::destroy_at(&Launcher::m_inputFiles);
  std::construct_at(&Launcher::m_inputFiles);
}
