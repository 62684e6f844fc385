#include "fakes/FakeLauncherOperations.h"

#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"

std::vector<std::string> FakeLauncherOperations::m_calls;
std::vector<std::int32_t> FakeLauncherOperations::m_results;
std::function<void()> FakeLauncherOperations::m_hook;
bool FakeLauncherOperations::m_recording = true;

void FakeLauncherOperations::reset() {
  m_calls.clear();
  g_launcher.m_wizardHasRun = false;
  m_results.clear();
  m_hook = nullptr;
  m_recording = true;
}

void FakeLauncherOperations::record(const std::string& call) {
  if (m_recording) {
    m_calls.push_back(call);
  }
  if (m_hook) {
    m_hook();
  }
}

std::int32_t FakeLauncherOperations::nextResult() {
  if (m_results.empty()) {
    return 0;
  }
  const std::int32_t result = m_results.front();
  m_results.erase(m_results.begin());
  return result;
}

namespace {

template <class... Numbers>
void record(const std::string& operation, Numbers... numbers) {
  std::string call = operation;
  ((call += " " + std::to_string(numbers)), ...);
  FakeLauncherOperations::record(call);
}

}  // namespace

void Launcher::initializeUI() {
  record("initializeUI");
}

void Launcher::findJVM(bool showProgress, bool showFailMsg) {
  record("findJVM", showProgress, showFailMsg);
}

void Launcher::verifyJVM(bool showProgress, bool showFailMsg, std::int32_t fileId) {
  record("verifyJVM", showProgress, showFailMsg, fileId);
}

void Launcher::installJVM(InstallJVMOption option) {
  record("installJVM", static_cast<int>(option));
}

std::int32_t Launcher::launch(const SString& jvmFileName, std::int16_t uiSeconds) {
  record("launch [" + std::string(jvmFileName.view()) + "]", uiSeconds);
  g_launcher.m_wizardHasRun = true;
  return FakeLauncherOperations::nextResult();
}

std::int32_t Launcher::ilaunch(std::int32_t fileId, std::int16_t uiSeconds) {
  record("ilaunch", fileId, uiSeconds);
  g_launcher.m_wizardHasRun = true;
  return FakeLauncherOperations::nextResult();
}

void Launcher::executeEmbeddedLauncher(std::int32_t position) {
  record("executeEmbeddedLauncher", position);
}
