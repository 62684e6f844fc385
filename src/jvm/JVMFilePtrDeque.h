// JVMFilePtrDeque: a sequence of jvm files of which each entry says whether it owns its object.
//
// Destroying an entry destroys the JVMFile only when the entry owns it; its tag file never.
// Indexes follow GenericDeque: one outside the sequence yields null.
#ifndef CORVANE_JVM_JVMFILEPTRDEQUE_H
#define CORVANE_JVM_JVMFILEPTRDEQUE_H

#include <memory>

#include "jvm/JVMFile.h"
#include "util/GenericDeque.h"

class JVMFilePtrDE {
 public:
  JVMFilePtrDE(JVMFile* jvmFile, bool owning) : m_jvmFile(jvmFile, Deleter{owning}) {}
  JVMFile* get() const { return m_jvmFile.get(); }

 private:
  struct Deleter {
    bool owning;
    void operator()(JVMFile* jvmFile) const {
      if (owning) {
        delete jvmFile;
      }
    }
  };
  std::unique_ptr<JVMFile, Deleter> m_jvmFile;
};

class JVMFilePtrDeque {
 public:
  constexpr JVMFilePtrDeque() noexcept = default;

  long size() const { return m_entries.size(); }
  JVMFile* at(long index) const {
    const JVMFilePtrDE* entry = m_entries.at(index);
    return entry == nullptr ? nullptr : entry->get();
  }
  JVMFile* operator[](long index) const { return at(index); }
  JVMFile* back() const { return at(size() - 1); }
  void push_back(JVMFile* jvmFile, bool owning) { m_entries.push_back({jvmFile, owning}); }
  void insert(long index, JVMFile* jvmFile, bool owning) {
    m_entries.insert(index, {jvmFile, owning});
  }

 private:
  GenericDeque<JVMFilePtrDE> m_entries;
};

#endif
