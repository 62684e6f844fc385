// LauncherInputFiles: extracting everything, to be looked at and run from disk.
#include <cstring>

#include "archive/LauncherFileFormat.h"
#include "archive/LauncherInputFiles.h"
#include "launcher/Log.h"
#include "tagfile/TagNames.h"

namespace {

constexpr const char* kInputTagFile = "input.tag";

// Names the file under the tag that input files have for its type, if there is one.
void recordTagFile(TagFile& input, const FileIndexEntry& entry) {
  switch (entry.getFileType()) {
    case FILE_TYPE_JVM:
      input.appendTagValue(tagname::kJVM, entry.getFileName());
      break;
    case FILE_TYPE_LAUNCH_SCRIPT:
      input.setTagValue(tagname::kLaunchScript, entry.getFileName());
      break;
    case FILE_TYPE_INSTRUCTIONS:
      input.setTagValue(tagname::kInstructions, entry.getFileName());
      break;
    case FILE_TYPE_JVM_MESSAGE:
      input.setTagValue(tagname::kJVMMessage, entry.getFileName());
      break;
    default:
      break;
  }
}

}  // namespace

void LauncherInputFiles::extractAll() {
  TagFile input;
  input.setTagValue(tagname::kAction, actionname::kRunInstructions);
  for (long i = 0; i < m_fileIndex.size(); ++i) {
    recordTagFile(input, *m_fileIndex.at(i));
    m_fileIndex.at(i)->extract(SString());
  }
  // Programs that read our output know of no such failure, so the log alone tells.
  if (const int error = input.write(kInputTagFile); error != 0) {
    logMessage(SString("Could not write ") + kInputTagFile + " :  " + std::strerror(error),
               LOG_WARNING);
  }
}
