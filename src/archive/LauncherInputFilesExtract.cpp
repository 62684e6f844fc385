// LauncherInputFiles: copying everything out, so that it can be looked at and run from disk.
#include "archive/LauncherFileFormat.h"
#include "archive/LauncherInputFiles.h"

namespace {

constexpr const char* kInputTagFile = "input.tag";

// Names the file under the tag by which an input file gives it; other types are not named.
void recordTagFile(TagFile& input, const FileIndexEntry& entry) {
  switch (entry.getFileType()) {
    case FILE_TYPE_JVM:
      input.appendTagValue("JVM", entry.getFileName());
      break;
    case FILE_TYPE_LAUNCH_SCRIPT:
      input.setTagValue("LAUNCHSCRIPT", entry.getFileName());
      break;
    case FILE_TYPE_INSTRUCTIONS:
      input.setTagValue("INSTRUCTIONS", entry.getFileName());
      break;
    case FILE_TYPE_JVM_MESSAGE:
      input.setTagValue("JVMMESSAGE", entry.getFileName());
      break;
    default:
      break;
  }
}

}  // namespace

void LauncherInputFiles::extractAll() {
  TagFile input;
  input.setTagValue("ACTION", "RUN_INSTRUCTIONS");
  for (long i = 0; i < m_fileIndex.size(); ++i) {
    recordTagFile(input, *m_fileIndex.at(i));
    m_fileIndex.at(i)->extract(SString());
  }
  input.write(kInputTagFile);
}
