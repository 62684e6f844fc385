// JVMFile, location by hints: each strategy forms candidate homes in a fixed order and verifies
// them one by one until one is accepted.
#include "jvm/JVMFile.h"
#include "jvm/JVMMatch.h"
#include "launcher/LauncherFacts.h"
#include "launcher/Log.h"
#include "platform/PlatformImpl.h"
#include "tagfile/Paths.h"
#include "tagfile/TagFile.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/StringDeque.h"

namespace {

// The home of a JVM whose executable may be in `dir`, a directory of PATH: `dir` without the
// executable's own directory at its end.
SString homeFromPathEntry(const SString& dir, const SString& exe) {
  const SString exeDir = exe.substr(0, exe.size() - baseNameOf(exe).size());  // "bin/"
  if (exeDir.empty()) {
    return dir;
  }
  SString home = dir;
  appendPathSeparator(home);
  // QUIRK(path-suffix-without-boundary): only the end of the text is compared: "/opt/xbin" gives
  // the home "/opt/x" for "bin/java".
  if (home.endsWith(exeDir)) {
    home.erase(home.size() - exeDir.size());
  }
  return home;
}

}  // namespace

bool JVMFile::beginHintSearch(const char* strategy) const {
  if (!hasProperties()) {
    return false;
  }
  logMessage("Searching for " + getDesc() + strategy, LOG_INFO);
  return true;
}

std::unique_ptr<JVMMatch> JVMFile::verifyWithPlatformHints(const VerifyClass& verifyClass) {
  std::unique_ptr<JVMMatch> match;
  if (!beginHintSearch(" using platform hints")) {
    return match;
  }
  const long count = m_tagFile.getTagValueCount(tagname::kPlatformHint);
  for (long i = 0; i < count && mustTryNext(match); ++i) {
    match = verifyPlatformHint(tagValue(tagname::kPlatformHint, i), verifyClass);
  }
  return match;
}

std::unique_ptr<JVMMatch> JVMFile::verifyPlatformHint(const SString& hint,
                                                      const VerifyClass& verifyClass) {
  std::unique_ptr<JVMMatch> match;
  StringDeque homes;
  PlatformImpl::getPlatformHint(homes, hint);
  for (long i = 0; i < homes.size() && mustTryNext(match); ++i) {
    if (!homes[i].empty()) {
      logMessage("Checking JVM at " + homes[i] + " which was resolved from platform hint " + hint,
                 LOG_INFO);
      match = verify(homes[i], verifyClass);
    }
  }
  return match;
}

std::unique_ptr<JVMMatch> JVMFile::verifyWithPathHints(const VerifyClass& verifyClass) {
  std::unique_ptr<JVMMatch> match;
  if (!beginHintSearch(" using path hints")) {
    return match;
  }
  const long count = m_tagFile.getTagValueCount(tagname::kPathHint);
  for (long i = 0; i < count && mustTryNext(match); ++i) {
    const SString hint = tagValue(tagname::kPathHint, i);
    match = hint.startsWith(kPathSeparator) ? verifyAbsoluteHint(hint, verifyClass)
                                            : verifyRelativeHint(hint, verifyClass);
  }
  return match;
}

std::unique_ptr<JVMMatch> JVMFile::verifyAbsoluteHint(const SString& hint,
                                                      const VerifyClass& verifyClass) {
  std::unique_ptr<JVMMatch> match;
  StringDeque partitions;
  PlatformImpl::getJVMSearchPartitions(partitions);
  for (long i = 0; i < partitions.size() && mustTryNext(match); ++i) {
    SString home = partitions[i];
    appendPathSeparator(home);
    home += hint.substr(1);
    if (!home.empty()) {
      logMessage("Checking path hint " + home, LOG_INFO);
      match = verify(home, verifyClass);
    }
  }
  return match;
}

// A JVM found beside the launcher was shipped with it: it is a temporary one.
std::unique_ptr<JVMMatch> JVMFile::verifyRelativeHint(const SString& hint,
                                                      const VerifyClass& verifyClass) {
  SString home = LauncherFacts::getOriginalLauncherDir();
  appendPathSeparator(home);
  home += hint;
  std::unique_ptr<JVMMatch> match = verify(home, verifyClass);
  if (match != nullptr) {
    match->setJVMTemporary(true);
  }
  return match;
}

std::unique_ptr<JVMMatch> JVMFile::verifyWithPlatformJVMPaths(const VerifyClass& verifyClass) {
  std::unique_ptr<JVMMatch> match;
  if (!beginHintSearch(" using platform specific JVM Path hints")) {
    return match;
  }
  StringDeque dirs;
  PlatformImpl::getPlatformJVMPaths(dirs);
  for (long i = 0; i < dirs.size() && mustTryNext(match); ++i) {
    if (dirs[i].empty()) {
      continue;
    }
    const SString home = homeFromPathEntry(dirs[i], getJVMExe());
    logMessage(
        "Checking JVM at " + home + " which was resolved from the platform JVM path " + dirs[i],
        LOG_INFO);
    match = verify(home, verifyClass);
  }
  return match;
}
