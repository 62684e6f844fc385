// The options of the command line, applied from left to right.
#include <algorithm>
#include <iterator>

#include "archive/LauncherInputFiles.h"
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"
#include "platform/PlatformImpl.h"
#include "platform/ResultLines.h"
#include "platform/WithPrefix.h"

namespace {

constexpr const char* kOrigNameMissing = "Missing original launcher file name.";
constexpr const char* kConsoleOption = "-console";
constexpr const char* kSilentOption = "-silent";

void showMessage(MessageIdentifier id) {
  PlatformImpl::showUIMessage(PlatformImpl::getMessageText(id));
}

}  // namespace

struct Launcher::OptionRow {
  const char* name;
  bool takesArgument;
  void (*act)(RunPlan& plan, const SString& argument);
  void (*actOnMissing)(RunPlan& plan);  // null: an option without its argument is ignored
};

// QUIRK(option-names-in-texts): the texts about missing arguments call the options "-log" and
// "-in".
// QUIRK(missing-log-name-goes-on): without their argument "-cv:log" and "-cv:orig" set the status,
// and the status of the run replaces it.
const Launcher::OptionRow Launcher::kOptions[] = {
    {"-cv:log", true, [](RunPlan&, const SString& name) { setLogFileName(name); },
     [](RunPlan& plan) {
       plan.status = -1;
       showMessage(MSG_LOG_FILE_NAME_MISSING);
     }},
    {"-cv:orig", true,
     [](RunPlan&, const SString& path) {
       g_launcher.m_origLauncherFileName = path;
       PlatformImpl::setDeleteLauncher(true);
     },
     [](RunPlan& plan) {
       plan.status = -1;
       PlatformImpl::showUIMessage(kOrigNameMissing);
     }},
    {"-cv:tempdir", true, [](RunPlan&, const SString& dir) { PlatformImpl::setSystemTempDir(dir); },
     nullptr},
    {"-cv:silent", false, [](RunPlan&, const SString&) { PlatformImpl::setSilent(true); }, nullptr},
    {kSilentOption, false,
     [](RunPlan&, const SString&) {
       PlatformImpl::setSilent(true);
       g_launcher.m_passThroughArgs.push_back(kSilentOption);
     },
     nullptr},
    {"-cv:javahome", true,
     [](RunPlan&, const SString& home) {
       g_launcher.m_userJavaHome = PlatformImpl::makeAbsolute(home);
       g_launcher.m_userJavaHomeAsGiven = home;
     },
     nullptr},
    // QUIRK(extract-leaves-no-script): from here on the index counts as loaded, without the
    // contents of its tag files. A run that a later input file asks for has only what that file
    // names.
    {"-cv:extract", false,
     [](RunPlan& plan, const SString&) {
       withPrefix(MSG_FILE_INDEX_LOAD_FAILED, [] { getInputFiles().load(false); });
       withPrefix(MSG_EXTRACT_FAILED, [] { getInputFiles().extractAll(); });
       PlatformImpl::setUIProgress(100);
       plan.runInstructions = false;
     },
     nullptr},
    {"-cv:in", true, [](RunPlan& plan, const SString& path) { performInputFile(path, plan); },
     [](RunPlan& plan) {
       showMessage(MSG_INPUT_FILE_NAME_MISSING);
       plan = {.status = -1, .runInstructions = false};
     }},
    {"-cv:version", false,
     [](RunPlan& plan, const SString&) {
       showResult(CORVANE_VERSION);
       plan.runInstructions = false;
     },
     nullptr},
    {"-cv:javaconsole", false,
     [](RunPlan&, const SString&) { g_launcher.m_showJavaConsole = true; }, nullptr},
    // QUIRK(accessibility-is-console): the wizard never sees "-accessibility", only "-console".
    {"-accessibility", false,
     [](RunPlan&, const SString&) {
       g_launcher.m_showJavaConsole = true;
       g_launcher.m_passThroughArgs.push_back(kConsoleOption);
     },
     nullptr},
    {kConsoleOption, false,
     [](RunPlan&, const SString&) {
       g_launcher.m_showJavaConsole = true;
       g_launcher.m_passThroughArgs.push_back(kConsoleOption);
     },
     nullptr},
    {"-cp:p", true, [](RunPlan&, const SString& path) { g_launcher.m_prependClasspath = path; },
     nullptr},
    {"-cp:a", true, [](RunPlan&, const SString& path) { g_launcher.m_appendClasspath = path; },
     nullptr},
};

// Applies the argument at `index`; returns the index of the next one to be looked at. The value of
// an option is never compared with the option names.
long Launcher::applyOption(const StringDeque& args, long index, RunPlan& plan) {
  const SString& name = args[index];
  const auto* row = std::find_if(std::begin(kOptions), std::end(kOptions),
                                 [&name](const OptionRow& r) { return name == r.name; });
  if (row == std::end(kOptions)) {
    g_launcher.m_passThroughArgs.push_back(name);
    return index + 1;
  }
  if (!row->takesArgument) {
    row->act(plan, StringDeque::emptyString);
    return index + 1;
  }
  if (index + 1 < args.size()) {
    row->act(plan, args[index + 1]);
    return index + 2;
  }
  if (row->actOnMissing != nullptr) {
    row->actOnMissing(plan);
  }
  return index + 1;
}

std::int32_t Launcher::processCmdLine(const StringDeque& args) {
  PlatformImpl::setDeleteLauncher(false);
  PlatformImpl::setUIProgress(0);
  RunPlan plan;
  for (long i = 0; i < args.size();) {
    i = applyOption(args, i, plan);
  }
  if (plan.runInstructions) {
    loadEmbeddedFiles();
    plan.status = run();
    PlatformImpl::setUIProgress(100);
  }
  return plan.status;
}
