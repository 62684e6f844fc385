// The run as a whole: process, and the clean-up at the end.
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"
#include "platform/PlatformImpl.h"
#include "util/LauncherException.h"

namespace {

void report(const LauncherException& problem) {
  PlatformImpl::showUIMessage(problem.getMessage());
  Launcher::logMessage(problem.getMessage(), LOG_ERROR);
}

}  // namespace

Launcher::~Launcher() {
  try {
    PlatformImpl::cleanup();
  } catch (...) {
    // It is too late to report it: the exit status is decided.
  }
}

std::int32_t Launcher::process(StringDeque& args, const SString& launcherPath) {
  try {
    g_launcher.m_launcherFileName = launcherPath;
    g_launcher.m_launcherFile = {};
    g_launcher.m_launcherFile.keep(launcherPath);
    g_launcher.m_origLauncherFileName = launcherPath;
    for (long i = 0; i < args.size(); ++i) {
      g_launcher.m_args.push_back(args[i]);
    }
    return processCmdLine(args);
  } catch (const Canceled& e) {
    report(e);
    return statusOfCanceledRun();
  } catch (const LauncherException& e) {
    report(e);
    return -1;
  }
}

// The status of a canceled run: that of the wizard that ran when the user canceled, since the
// wizard was told. Else the signal ends us, too, so that a loop in a shell stops.
std::int32_t Launcher::statusOfCanceledRun() {
  if (g_launcher.m_canceledWizard) {
    return *g_launcher.m_canceledWizard;
  }
  g_launcher.m_endsByCancel = true;
  return PlatformImpl::getCancelStatus();
}

bool Launcher::endsByCancel() {
  return g_launcher.m_endsByCancel;
}
