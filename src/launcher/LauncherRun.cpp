// The run as a whole: process, and the clean-up at the end.
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"
#include "platform/PlatformImpl.h"
#include "util/LauncherException.h"

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
    g_launcher.m_origLauncherFileName = launcherPath;
    for (long i = 0; i < args.size(); ++i) {
      g_launcher.m_args.push_back(args[i]);
    }
    return processCmdLine(args);
  } catch (const LauncherException& e) {
    PlatformImpl::showUIMessage(e.getMessage());
    logMessage(e.getMessage(), LOG_ERROR);
    return -1;
  }
}
