// JVMFiles: the jvm files that the launcher carries, and the search over them.
//
// `search` finds one JVM: a home given by the user, then the hints of each jvm file, then, where a
// jvm file asks for it, a scan of the disks. `searchAll` finds every JVM by the scan alone. Owns
// its JVMFiles and is the listener of the scan: candidates are gathered while it walks and
// verified afterwards. LauncherExceptions of verification pass through.
#ifndef CORVANE_JVM_JVMFILES_H
#define CORVANE_JVM_JVMFILES_H

#include <cstdint>
#include <memory>

#include "jvm/JVMFilePtrDeque.h"
#include "jvm/JVMMatch.h"
#include "jvm/UnverifiedJVMMatch.h"
#include "jvm/VerifyClass.h"
#include "platform/FileFindListener.h"
#include "util/SString.h"

class FileIndex;

class JVMFiles : public FileFindListener {
 public:
  // `embeddedFiles` holds the verify archive and must outlive this object.
  explicit constexpr JVMFiles(const FileIndex& embeddedFiles) : m_embeddedFiles(embeddedFiles) {}
  JVMFiles(const JVMFiles&) = delete;
  JVMFiles& operator=(const JVMFiles&) = delete;

  // Appends in the order of search; takes ownership.
  void addJVMFile(std::unique_ptr<JVMFile> jvmFile);
  long getJVMFileCount() const { return m_jvmFiles.size(); }
  // Throws LauncherException with the text of MSG_INVALID_JVM_FILE_ID for an index out of range.
  JVMFile* getJVMFile(std::int32_t index) const;

  // Appends at most one match.
  void search(JVMMatchPtrDeque& matches);
  // Appends every match of the scan; with `stopAtFirst` the scan ends with the first.
  void searchAll(JVMMatchPtrDeque& matches, bool stopAtFirst);
  void exhaustiveSearch(JVMMatchPtrDeque& matches);
  bool foundFile(const SString& path) override;
  void addUnverifiedMatch(JVMFile* jvmFile, const SString& home);

  // The verify class: that of the input file, or that of the embedded verify archive, which is
  // extracted once in a run. Empty when there is neither.
  const VerifyClass& writeVerifyJar();
  void setVerifyClass(const VerifyClass& verifyClass) { m_verifyClass = verifyClass; }

 private:
  void searchUserHome();
  bool searchHints();  // true when the last jvm file looked at asks for the scan
  void verifyUnverifiedMatches(JVMMatchPtrDeque& matches);
  // Of what the scan found: verifies it only if it may be tried (Trust.h).
  std::unique_ptr<JVMMatch> verifyFind(JVMFile& jvmFile, const SString& home);

  const FileIndex& m_embeddedFiles;
  JVMFilePtrDeque m_jvmFiles;
  UnverifiedJVMMatchPtrDeque m_unverifiedMatches;
  std::unique_ptr<JVMMatch> m_currentMatch;
  bool m_stopAtFirst = false;
  VerifyClass m_verifyClass;
};

#endif
