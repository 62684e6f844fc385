// UnverifiedJVMMatch: the homes that a scan of the disks found for one jvm file, to be verified
// when the scan has ended.
#ifndef CORVANE_JVM_UNVERIFIEDJVMMATCH_H
#define CORVANE_JVM_UNVERIFIEDJVMMATCH_H

#include <memory>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "util/PtrDeque.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class JVMFile;

class UnverifiedJVMMatch {
 public:
  explicit UnverifiedJVMMatch(JVMFile& jvmFile) : m_jvmFile(&jvmFile) {}

  JVMFile& getJVMFile() const { return *m_jvmFile; }             // not owned
  const StringDeque& getHomeDirs() const { return m_homeDirs; }  // in the order found
  // Adds `home` unless it is there already.
  void addJVMHome(const SString& home);
  // True for that very object, not for one with the same content.
  bool equals(const JVMFile& jvmFile) const { return m_jvmFile == &jvmFile; }

 private:
  JVMFile* m_jvmFile;
  StringDeque m_homeDirs;
  std::unordered_set<std::string_view> m_knownHomes;  // views of the bytes that m_homeDirs shares
};

// In the order of creation, at most one for each jvm file.
class UnverifiedJVMMatchPtrDeque {
 public:
  constexpr UnverifiedJVMMatchPtrDeque() noexcept = default;

  long size() const { return m_matches.size(); }
  UnverifiedJVMMatch* at(long index) const { return m_matches.at(index); }
  UnverifiedJVMMatch* operator[](long index) const { return at(index); }
  void push_back(std::unique_ptr<UnverifiedJVMMatch> match);
  void clear();

  // Adds `home` to the match of that jvm file; does nothing when there is none. A promised name,
  // though nothing of ours calls it.
  void addMatch(const JVMFile& jvmFile, const SString& home);
  // The match of that jvm file, or null.
  UnverifiedJVMMatch* findMatch(const JVMFile& jvmFile) const;

 private:
  using Index = std::unordered_map<const JVMFile*, UnverifiedJVMMatch*>;

  PtrDeque<UnverifiedJVMMatch> m_matches;
  std::unique_ptr<Index> m_index;  // null while there is no match
};

#endif
