#include "jvm/JVMFiles.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "archive/FileIndex.h"
#include "archive/LauncherFileFormat.h"
#include "launcher/LauncherFacts.h"
#include "launcher/Log.h"
#include "platform/PlatformImpl.h"
#include "platform/SubStatusWrapper.h"
#include "platform/Trust.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"
#include "util/StringDeque.h"

namespace {

// The executables to look for: each one once, in the order of the jvm files.
StringDeque distinctExecutables(const JVMFilePtrDeque& jvmFiles) {
  StringDeque names;
  std::unordered_set<std::string_view> known;  // views of the bytes that `names` shares
  for (long i = 0; i < jvmFiles.size(); ++i) {
    const SString exe = jvmFiles[i]->getJVMExe();
    if (!known.contains(exe.view())) {
      names.push_back(exe);
      known.insert(names.back().view());
    }
  }
  return names;
}

}  // namespace

void JVMFiles::addJVMFile(std::unique_ptr<JVMFile> jvmFile) {
  m_jvmFiles.push_back(jvmFile.release(), true);
}

JVMFile* JVMFiles::getJVMFile(std::int32_t index) const {
  if (index < 0 || index >= getJVMFileCount()) {
    throw LauncherException(PlatformImpl::getMessageText(MSG_INVALID_JVM_FILE_ID));
  }
  return m_jvmFiles.at(index);
}

void JVMFiles::search(JVMMatchPtrDeque& matches) {
  m_currentMatch = nullptr;
  writeVerifyJar();
  searchUserHome();
  const bool isScanWanted = m_currentMatch == nullptr && searchHints();
  if (m_currentMatch == nullptr && isScanWanted) {
    m_stopAtFirst = true;
    exhaustiveSearch(matches);
  }
  if (m_currentMatch != nullptr) {
    matches.push_back(std::move(m_currentMatch));
  }
}

void JVMFiles::searchUserHome() {
  const SString& home = LauncherFacts::getUserJavaHome();
  if (home.empty()) {
    return;
  }
  logMessage(
      "Checking user specified Java home directory => " + LauncherFacts::getUserJavaHomeAsGiven(),
      LOG_INFO);
  for (long i = 0; i < m_jvmFiles.size() && mustTryNext(m_currentMatch); ++i) {
    m_currentMatch = m_jvmFiles[i]->verify(home, m_verifyClass);
  }
}

bool JVMFiles::searchHints() {
  logMessage("Initiating JVM search based on hints...", LOG_INFO);
  bool isScanWanted = false;
  for (long i = 0; i < m_jvmFiles.size() && mustTryNext(m_currentMatch) && !isScanWanted; ++i) {
    JVMFile& jvmFile = *m_jvmFiles[i];
    isScanWanted = jvmFile.isSearchAll();
    const SubStatusWrapper subStatus;
    PlatformImpl::setUISubStatus(UI_SUBSTATUS_SEARCHING_FOR, jvmFile.getDesc());
    m_currentMatch = jvmFile.verifyWithPlatformHints(m_verifyClass);
    if (mustTryNext(m_currentMatch)) {
      m_currentMatch = jvmFile.verifyWithPathHints(m_verifyClass);
    }
    if (mustTryNext(m_currentMatch)) {
      m_currentMatch = jvmFile.verifyWithPlatformJVMPaths(m_verifyClass);
    }
  }
  return isScanWanted;
}

void JVMFiles::searchAll(JVMMatchPtrDeque& matches, bool stopAtFirst) {
  // QUIRK(search-all-keeps-scan-match): a match made while the disks are scanned (only
  // `stopAtFirst` makes one) is not delivered here.
  m_currentMatch = nullptr;
  writeVerifyJar();
  m_stopAtFirst = stopAtFirst;
  exhaustiveSearch(matches);
}

void JVMFiles::exhaustiveSearch(JVMMatchPtrDeque& matches) {
  m_unverifiedMatches.clear();
  const StringDeque names = distinctExecutables(m_jvmFiles);
  const SubStatusWrapper subStatus;
  PlatformImpl::setUISubStatus(UI_SUBSTATUS_SCANNING_DISKS, "");
  logMessage("Beginning exhaustive search", LOG_INFO);
  PlatformImpl::findFiles(names, *this);
  if (m_currentMatch == nullptr) {
    verifyUnverifiedMatches(matches);
  }
}

void JVMFiles::verifyUnverifiedMatches(JVMMatchPtrDeque& matches) {
  logMessage("Processing unverified matches.\n", LOG_INFO);
  for (long i = 0; i < m_unverifiedMatches.size(); ++i) {
    JVMFile& jvmFile = m_unverifiedMatches[i]->getJVMFile();
    const StringDeque& homes = m_unverifiedMatches[i]->getHomeDirs();
    for (long j = 0; j < homes.size(); ++j) {
      if (PlatformImpl::isCanceled()) {
        return;
      }
      std::unique_ptr<JVMMatch> match = verifyFind(jvmFile, homes[j]);
      if (match != nullptr) {
        matches.push_back(std::move(match));
        if (m_stopAtFirst) {
          return;
        }
      }
    }
  }
}

// Asks for the program that would be run, which need not be the file that was found
// (scan-suffix-without-boundary).
std::unique_ptr<JVMMatch> JVMFiles::verifyFind(JVMFile& jvmFile, const SString& home) {
  const SString exe = jvmFile.getJVMExe();
  if (exe.empty() || home.empty()) {
    return nullptr;
  }
  SString program = home;
  appendPathSeparator(program);
  program += exe;
  return mayTryFind(program) ? jvmFile.verify(home, m_verifyClass) : nullptr;
}

bool JVMFiles::foundFile(const SString& path) {
  const bool hadMatch = m_currentMatch != nullptr;
  for (long i = 0; i < m_jvmFiles.size() && mustTryNext(m_currentMatch); ++i) {
    JVMFile& jvmFile = *m_jvmFiles[i];
    const SString exe = jvmFile.getJVMExe();
    // QUIRK(scan-suffix-without-boundary): a found file is offered to every jvm file whose
    // executable its path ends with: "/opt/jdk/bin/java" also gives the home "/opt/jdk/bin" for
    // "java".
    if (!path.endsWith(exe)) {
      continue;
    }
    const std::size_t tail = exe.size() + 1;
    const SString home = path.substr(0, path.size() - std::min(tail, path.size()));
    // QUIRK(first-jvm-file-verified-at-once): where one match is enough, the first jvm file is
    // verified during the scan and not afterwards; a file that matches several names is verified
    // for each of them.
    if (i == 0 && m_stopAtFirst) {
      m_currentMatch = verifyFind(jvmFile, home);
    } else {
      addUnverifiedMatch(&jvmFile, home);
    }
  }
  return !hadMatch && m_currentMatch != nullptr;
}

void JVMFiles::addUnverifiedMatch(JVMFile* jvmFile, const SString& home) {
  UnverifiedJVMMatch* match = m_unverifiedMatches.findMatch(*jvmFile);
  if (match == nullptr) {
    m_unverifiedMatches.push_back(std::make_unique<UnverifiedJVMMatch>(*jvmFile));
    match = m_unverifiedMatches.findMatch(*jvmFile);
  }
  match->addJVMHome(home);
}

const VerifyClass& JVMFiles::writeVerifyJar() {
  if (!m_verifyClass.empty()) {
    return m_verifyClass;
  }
  SString path;
  m_embeddedFiles.forEachOfType(FILE_TYPE_VERIFY_JAR, [&](const FileIndexEntry& jar) {
    path = jar.extract(PlatformImpl::createTempSubDirectory());
  });
  if (!path.empty()) {
    m_verifyClass = {CommandText::insertedInQuotes(path), "\"Verify\"", true};
  }
  return m_verifyClass;
}
