#include "jvm/JVMFile.h"

#include "tagfile/TagFile.h"
#include "tagfile/TagNames.h"

SString JVMFile::tagValue(const char* tag, long index) const {
  return m_tagFile.getTagValue(tag, static_cast<unsigned long>(index));
}

SString JVMFile::getDesc() const {
  return tagValue(tagname::kDesc);
}

SString JVMFile::getJVMExe() const {
  return tagValue(tagname::kJVMExe);
}

bool JVMFile::isSearchAll() const {
  return m_tagFile.getBoolTagValue(tagname::kSearchAll, false);
}

CommandText JVMFile::processMacro(const MacroText& text, char /*delimiter*/, std::size_t start,
                                  std::size_t& end) const {
  const SString name = text.buffer().bytes().substr(start + 1, end - start - 1);
  SString value = tagValue(name.c_str());
  // QUIRK(jvm-home-backslash): the macro JVM_HOME drops one backslash at its end, but keeps a "/".
  if (name == tagname::kJVMHome && value.endsWith("\\")) {
    value.erase(value.size() - 1);
  }
  return isFoundPath(name) ? CommandText::inserted(value) : value;
}

// True for what the launcher found out, in this run or, in a file that it wrote, in an earlier one.
bool JVMFile::isFoundPath(const SString& tag) const {
  const bool isWritten = m_tagFile.getValue(tagname::kJVMFile) != nullptr;
  return m_tagFile.isOwnValue(tag.c_str()) ||
         (isWritten && (tag == tagname::kJVMHome || tag == tagname::kJVMFile));
}
