// UnverifiedJVMMatch: the homes that a scan of the disks found for one jvm file, to be verified
// when the scan has ended.
#ifndef CORVANE_JVM_UNVERIFIEDJVMMATCH_H
#define CORVANE_JVM_UNVERIFIEDJVMMATCH_H

#include "util/PtrDeque.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class JVMFile;

class UnverifiedJVMMatch {
 public:
  explicit UnverifiedJVMMatch(JVMFile& jvmFile) : m_jvmFile(&jvmFile) {}

  JVMFile& getJVMFile() const { return *m_jvmFile; }  // not owned
  StringDeque& getHomeDirs() { return m_homeDirs; }   // in the order found
  // Adds `home` unless it is there already.
  void addJVMHome(const SString& home);
  // True for that very object, not for one with the same content.
  bool equals(const JVMFile& jvmFile) const { return m_jvmFile == &jvmFile; }

 private:
  JVMFile* m_jvmFile;
  StringDeque m_homeDirs;
};

class UnverifiedJVMMatchPtrDeque : public PtrDeque<UnverifiedJVMMatch> {
 public:
  // Adds `home` to the match of that jvm file; does nothing when there is none.
  void addMatch(const JVMFile& jvmFile, const SString& home);
  // The match of that jvm file, or null.
  UnverifiedJVMMatch* findMatch(const JVMFile& jvmFile) const;
};

#endif
