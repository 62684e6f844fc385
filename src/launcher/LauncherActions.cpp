// The input-file protocol ("-cv:in"): a calling program asks for one action; docs/formats.md.
#include <algorithm>
#include <iterator>

#include "archive/LauncherInputFiles.h"
#include "launcher/Launcher.h"
#include "platform/PlatformImpl.h"
#include "tagfile/StreamUtils.h"
#include "tagfile/TagFile.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kVerifyValuesMissing =
    "TO execute the VERIFY_JVM action, you must also provide values in the input file for "
    "VERIFY_JVM_FILE and VERIFY_JVM_HOME.";

SString messageText(MessageIdentifier id) {
  return PlatformImpl::getMessageText(id);
}

// Opens the input file; a missing name and a file that does not open are the same to the caller.
FilePtr openInputFile(const SString& argument) {
  SString path = argument;
  stripQuotes(path);
  FilePtr file = path.empty() ? nullptr : openFile(path, "r");
  if (file == nullptr) {
    throw LauncherException(messageText(MSG_INPUT_FILE_OPEN_FAILED));
  }
  return file;
}

}  // namespace

struct Launcher::ActionRow {
  const char* name;
  void (*perform)(const InputRequest& request, RunPlan& plan);
};

// What the input file asks for.
struct Launcher::InputRequest {
  const TagFile& tags;
  bool showProgress;
  bool showFailMsg;

  SString value(const char* tag) const { return tags.getTagValue(tag, 0); }
};

void Launcher::endAction(RunPlan& plan) {
  PlatformImpl::setUIProgress(100);
  plan.runInstructions = false;
}

const Launcher::ActionRow Launcher::kActions[] = {
    {actionname::kRunInstructions,
     [](const InputRequest&, RunPlan& plan) { plan.runInstructions = true; }},
    {actionname::kSearch,
     [](const InputRequest& request, RunPlan& plan) {
       search(request.showProgress, request.showFailMsg);
       endAction(plan);
     }},
    {actionname::kSearchAll,
     [](const InputRequest& request, RunPlan& plan) {
       searchAll(request.showProgress, request.showFailMsg);
       endAction(plan);
     }},
    {actionname::kVerifyJVM,
     [](const InputRequest& request, RunPlan& plan) { performVerify(request, plan); }},
    {actionname::kInstallJVM,
     // QUIRK(install-without-values): nothing is done or said, and the status stays 0; VERIFY_JVM
     // without its values is an error.
     [](const InputRequest& request, RunPlan& plan) {
       const SString installer = request.value(tagname::kInstallJVMExe);
       const SString destination = request.value(tagname::kInstallJVMDest);
       if (!installer.empty() && !destination.empty()) {
         installJVM(request.showProgress, request.showFailMsg, installer, destination);
       }
       endAction(plan);
     }},
};

void Launcher::performVerify(const InputRequest& request, RunPlan& plan) {
  plan.runInstructions = false;
  const SString jvmFile = request.value(tagname::kVerifyJVMFile);
  const SString home = request.value(tagname::kVerifyJVMHome);
  if (jvmFile.empty() || home.empty()) {
    logMessage(kVerifyValuesMissing, LOG_ERROR);
    plan.status = -1;
    return;
  }
  verifyJVM(request.showProgress, request.showFailMsg, jvmFile, home);
  PlatformImpl::setUIProgress(100);
}

// Reads the input file and turns logging over to the file that it names.
// QUIRK(no-logfile-no-log): without LOGFILE the log is switched off, also that of "-cv:log".
// QUIRK(input-failure-told-twice): a failure is shown here, after a text of its own, and again by
// `process`.
void Launcher::readInputFile(const SString& argument, TagFile& tags) {
  try {
    const FilePtr file = openInputFile(argument);
    logMessage("Loading input file " + argument, LOG_INFO);
    tags.load(file.get(), argument, 0, -1);
    setLogFileName(tags.getTagValue(tagname::kLogFile, 0));
  } catch (const LauncherException& e) {
    PlatformImpl::showUIMessage(messageText(MSG_INPUT_FILE_LOAD_FAILED) + e.getMessage());
    throw;
  }
}

void Launcher::loadFilesOf(const TagFile& inputFile) {
  try {
    getInputFiles().load(inputFile);
  } catch (const LauncherException& e) {
    PlatformImpl::showUIMessage(e.getMessage());
    throw;
  }
  loadEmbeddedFiles();
}

void Launcher::performInputFile(const SString& argument, RunPlan& plan) {
  TagFile tags;
  readInputFile(argument, tags);
  loadFilesOf(tags);
  const InputRequest request{tags, tags.getBoolTagValue(tagname::kShowProgress, false),
                             tags.getBoolTagValue(tagname::kShowFailMsg, false)};
  if (request.showProgress || request.showFailMsg) {
    PlatformImpl::showUI();
  } else {
    PlatformImpl::hideUI(0);
  }
  if (request.showProgress) {
    PlatformImpl::setUIProgress(0);
  }
  performAction(request, plan);
}

void Launcher::performAction(const InputRequest& request, RunPlan& plan) {
  const SString action = request.value(tagname::kAction);
  const auto* row = std::find_if(std::begin(kActions), std::end(kActions),
                                 [&action](const ActionRow& r) { return action == r.name; });
  if (row == std::end(kActions)) {
    const SString text = messageText(MSG_INVALID_ACTION) + action;
    PlatformImpl::showUIMessage(text);
    throw LauncherException(text);
  }
  row->perform(request, plan);
}
