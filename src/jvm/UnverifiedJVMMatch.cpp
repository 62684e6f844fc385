#include "jvm/UnverifiedJVMMatch.h"

#include <utility>

void UnverifiedJVMMatch::addJVMHome(const SString& home) {
  if (!m_knownHomes.contains(home.view())) {
    m_homeDirs.push_back(home);
    m_knownHomes.insert(m_homeDirs.back().view());
  }
}

void UnverifiedJVMMatchPtrDeque::push_back(std::unique_ptr<UnverifiedJVMMatch> match) {
  if (m_index == nullptr) {
    m_index = std::make_unique<Index>();
  }
  m_index->emplace(&match->getJVMFile(), match.get());
  m_matches.push_back(std::move(match));
}

void UnverifiedJVMMatchPtrDeque::clear() {
  m_index.reset();
  m_matches.clear();
}

void UnverifiedJVMMatchPtrDeque::addMatch(const JVMFile& jvmFile, const SString& home) {
  if (UnverifiedJVMMatch* match = findMatch(jvmFile)) {
    match->addJVMHome(home);
  }
}

UnverifiedJVMMatch* UnverifiedJVMMatchPtrDeque::findMatch(const JVMFile& jvmFile) const {
  if (m_index == nullptr) {
    return nullptr;
  }
  const auto found = m_index->find(&jvmFile);
  return found == m_index->end() ? nullptr : found->second;
}
