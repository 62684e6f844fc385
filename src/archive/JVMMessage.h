// JVMMessage: the author's own text for "no suitable JVM was found".
//
// Built over a tag file (not owned; it must outlive this object). The text is the first value of
// its tag MESSAGE.
#ifndef CORVANE_ARCHIVE_JVMMESSAGE_H
#define CORVANE_ARCHIVE_JVMMESSAGE_H

#include "tagfile/TagFile.h"
#include "tagfile/TagNames.h"
#include "util/SString.h"

class JVMMessage {
 public:
  explicit JVMMessage(const TagFile& tagFile)
      : m_tagFile(tagFile), m_message(tagFile.getTagValue(tagname::kMessage, 0)) {}

  SString getMessage() const { return m_message; }
  const TagFile& getTagFile() const { return m_tagFile; }

 private:
  const TagFile& m_tagFile;
  SString m_message;
};

#endif
