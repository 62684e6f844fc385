// JVMMatch: a JVM that was found and verified: its home, and the jvm file that it matches.
#ifndef CORVANE_JVM_JVMMATCH_H
#define CORVANE_JVM_JVMMATCH_H

#include <memory>

#include "tagfile/TagFile.h"
#include "util/PtrDeque.h"
#include "util/SString.h"

class JVMMatch {
 public:
  // `tagFile` is shared with the JVMFile, not owned, and must outlive the match.
  JVMMatch(const SString& home, TagFile& tagFile) : m_home(home), m_tagFile(tagFile) {}
  virtual ~JVMMatch() = default;
  JVMMatch(const JVMMatch&) = delete;
  JVMMatch& operator=(const JVMMatch&) = delete;

  SString getJVMHome() const { return m_home; }  // as it was verified, perhaps ending with "/"
  // Temporary: the JVM was shipped beside the launcher.
  void setJVMTemporary(bool temporary) { m_temporary = temporary; }
  bool isJVMTemporary() const { return m_temporary; }
  TagFile& getTagFile() const { return m_tagFile; }

  // Records the match in the jvm file's tags (JVM_HOME, JVM_FILE, JVM_TEMP), writes them to a new
  // temporary file, which is registered for clean-up, and returns its path. Throws as
  // PlatformImpl::createTempFile, and a write error.
  SString writeNewJVMFile();

 private:
  SString m_home;
  bool m_temporary = false;
  TagFile& m_tagFile;
};

// True while a search has to try its next candidate: none matched yet, and the user has not
// canceled.
bool mustTryNext(const std::unique_ptr<JVMMatch>& match);

using JVMMatchPtrDeque = PtrDeque<JVMMatch>;

#endif
