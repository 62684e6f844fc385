// Finding a JVM and verifying a given one: for the instruction script and for calling programs.
#include <new>

#include "archive/LauncherFileFormat.h"
#include "archive/LauncherInputFiles.h"
#include "jvm/JVMFiles.h"
#include "jvm/JVMMatch.h"
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"
#include "launcher/ScriptVariables.h"
#include "platform/PlatformImpl.h"
#include "platform/ResultLines.h"
#include "platform/WriteError.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kUnexpected = "Unexpected failure in search.";

void printNumber(std::int32_t number) {
  printResult({convertToString(number)});
}

// The result of a canceled action. The cancel decides how the run ends, also where nobody reads
// this any more.
void printNothingFound() {
  try {
    printNumber(0);
  } catch (const LostResult& e) {
    logMessage(e.getMessage(), LOG_ERROR);
  }
}

// QUIRK(first-status-unseen): the status line is written before the console is switched on, so it
// is not seen when the console was hidden.
void showSearching(bool showProgress) {
  if (showProgress) {
    PlatformImpl::setUIStatus(UI_STATUS_SEARCHING);
    PlatformImpl::showUI();
  } else {
    PlatformImpl::hideUI(0);
  }
}

// Tells a calling program, whose jvm file outlives the launcher from then on.
void handOut(std::initializer_list<SString> lines, const SString& jvmFile) {
  printResult(lines);
  PlatformImpl::removeFileFromCleanupList(jvmFile);
}

void printMatches(const JVMMatchPtrDeque& matches) {
  printNumber(static_cast<std::int32_t>(matches.size()));
  for (long i = 0; i < matches.size(); ++i) {
    JVMMatch& match = *matches[i];
    const SString path = match.writeNewJVMFile();
    handOut({match.getJVMHome(), path}, path);
  }
}

}  // namespace

void Launcher::initializeUI() {
  PlatformImpl::setUIStatus(UI_STATUS_INITIALIZING);
  PlatformImpl::setUISubStatus(UI_SUBSTATUS_NONE, "");
  PlatformImpl::showUI();
}

void Launcher::findJVM(bool showProgress, bool showFailMsg) {
  logMessage("Finding a JVM", LOG_INFO);
  showSearching(showProgress);
  setStringVariable(resultvariable::kHome, "");
  setStringVariable(resultvariable::kJVMFile, "");
  setLongVariable(resultvariable::kFlag, 0);
  JVMMatchPtrDeque matches;
  getInputFiles().getJVMFiles().search(matches);
  if (JVMMatch* match = matches.at(0)) {
    recordMatch(*match);
    return;
  }
  PlatformImpl::throwIfCanceled();
  if (showFailMsg) {
    reportNoJVM();
  }
}

void Launcher::recordMatch(JVMMatch& match) {
  const SString path = match.writeNewJVMFile();
  const SString home = match.getJVMHome();
  logMessage("Matching JVM home is " + home, LOG_INFO);
  logMessage("Matching JVM file is " + path, LOG_INFO);
  setStringVariable(resultvariable::kHome, home);
  setStringVariable(resultvariable::kJVMFile, path);
  setLongVariable(resultvariable::kFlag, 1);
}

// Shows the author's text, or our own where the author gave none.
void Launcher::reportNoJVM() {
  g_launcher.m_jvmMessage = getInputFiles().getJVMMessage();
  const SString text = g_launcher.m_jvmMessage != nullptr
                           ? g_launcher.m_jvmMessage->getMessage()
                           : PlatformImpl::getMessageText(MSG_NO_SUITABLE_JVM);
  logMessage(text, LOG_INFO);
  PlatformImpl::showUIMessage(text);
}

void Launcher::search(bool showProgress, bool showFailMsg) {
  try {
    findJVM(showProgress, showFailMsg);
    PlatformImpl::throwIfCanceled();
    printSearchResult();
  } catch (const Canceled&) {
    printNothingFound();
    throw;
  } catch (const LostResult&) {
    throw;
  } catch (const WriteError& e) {
    logMessage(e.getMessage(), LOG_ERROR);
    printNumber(0);
  } catch (const LauncherException&) {
    // QUIRK(search-fails-silently): a search that fails for another reason prints a 0 and says
    // nothing, neither on the console nor in the log.
    printNumber(0);
  } catch (const std::bad_alloc&) {
    logMessage(kUnexpected, LOG_ERROR);
    printNumber(0);
    throw;
  } catch (...) {
    logMessage(kUnexpected, LOG_ERROR);
    printNumber(0);
  }
}

void Launcher::printSearchResult() {
  const std::int32_t found = getLongVariable(resultvariable::kFlag);
  if (found == 0) {
    printNumber(0);
    return;
  }
  const SString jvmFile = getStringVariable(resultvariable::kJVMFile);
  handOut({convertToString(found), getStringVariable(resultvariable::kHome), jvmFile}, jvmFile);
}

void Launcher::searchAll(bool showProgress, bool showFailMsg) {
  try {
    logMessage("Finding all matching JVMs", LOG_INFO);
    showSearching(showProgress);
    JVMMatchPtrDeque matches;
    getInputFiles().getJVMFiles().searchAll(matches, false);
    PlatformImpl::throwIfCanceled();
    printMatches(matches);
  } catch (const Canceled&) {
    printNothingFound();
    throw;
  } catch (const LostResult&) {
    throw;
  } catch (const LauncherException& e) {
    const SString text = PlatformImpl::getMessageText(MSG_SEARCH_ALL_FAILED) + e.getMessage();
    logMessage(text, LOG_ERROR);
    if (showFailMsg) {
      PlatformImpl::showUIMessage(text);
    }
    // QUIRK(zero-after-partial-output): a 0 is printed even after a count that was printed before
    // the failure.
    printNumber(0);
  }
}

void Launcher::verifyJVM(bool showProgress, bool showFailMsg, std::int32_t fileId) {
  showSearching(showProgress);
  const SString id = convertToString(fileId);
  const FileIndexEntry* entry = getInputFiles().getFileIndex().findId(fileId);
  if (entry == nullptr) {
    throw LauncherException("Cannot verify jvm file at index " + id +
                            " because it does not exist.");
  }
  if (entry->getFileType() != FILE_TYPE_JVM) {
    throw LauncherException(
        "To verify a JVM, use an index of a jvm file. The index passed in was " + id +
        " which corresponds to the file named " + entry->getFileName());
  }
  if (entry->getTagFile() == nullptr) {
    throw LauncherException("The jvm file with file id " + id + " could not be read.");
  }
  verifyJVM(showProgress, showFailMsg, *entry->getTagFile(), g_launcher.m_userJavaHome);
}

void Launcher::verifyJVM(bool showProgress, bool showFailMsg, TagFile& jvmFile,
                         const SString& javaHome) {
  setLongVariable(resultvariable::kFlag, 0);
  if (showProgress) {
    PlatformImpl::setUISubStatus(UI_SUBSTATUS_VERIFYING, jvmFile.getTagValue(tagname::kDesc, 0));
  }
  const VerifyClass& verifyClass = getInputFiles().getJVMFiles().writeVerifyJar();
  JVMFile candidate(jvmFile);
  const auto match =
      javaHome.empty() ? candidate.verify(verifyClass) : candidate.verify(javaHome, verifyClass);
  PlatformImpl::throwIfCanceled();
  if (match != nullptr) {
    const SString home = jvmFile.getTagValue(tagname::kJVMHome, 0);
    setLongVariable(resultvariable::kFlag, 1);
    setStringVariable(resultvariable::kHome, home);
    logMessage("After VERIFY, the jvm home is " + home, LOG_INFO);
    return;
  }
  if (showFailMsg) {
    PlatformImpl::showUIMessage(PlatformImpl::getMessageText(MSG_INVALID_JVM));
  }
  logMessage("In VERIFY, the jvm is invalid.", LOG_INFO);
}

void Launcher::verifyJVM(bool showProgress, bool showFailMsg, const SString& jvmFileName,
                         const SString& javaHome) {
  TagFile jvmFile(jvmFileName);
  try {
    verifyJVM(showProgress, showFailMsg, jvmFile, javaHome);
  } catch (const Canceled&) {
    printNothingFound();
    throw;
  }
  printNumber(getLongVariable(resultvariable::kFlag));
}
