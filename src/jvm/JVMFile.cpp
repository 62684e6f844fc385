#include "jvm/JVMFile.h"

#include "tagfile/TagFile.h"

SString JVMFile::tagValue(const char* tag, long index) const {
  return m_tagFile.getTagValue(tag, static_cast<unsigned long>(index));
}

SString JVMFile::getDesc() const {
  return tagValue("DESC");
}

SString JVMFile::getJVMExe() const {
  return tagValue("JVM_EXE");
}

bool JVMFile::isSearchAll() const {
  return m_tagFile.getBoolTagValue("SEARCH_ALL", false);
}

SString JVMFile::processMacro(const MacroText& text, char /*delimiter*/, std::size_t start,
                              std::size_t& end) const {
  const SString name = text.rest().substr(start + 1, end - start - 1);
  SString value = tagValue(name.c_str());
  // QUIRK(jvm-home-backslash): the macro JVM_HOME loses one backslash at its end, never a "/":
  // templates join it with a separator of their own.
  if (name == "JVM_HOME" && value.endsWith("\\")) {
    value.erase(value.size() - 1);
  }
  return value;
}
