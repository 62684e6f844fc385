// LauncherInputFiles: loading, from an input file and from the launcher file.
#include "archive/LauncherInputFiles.h"

#include "archive/LauncherFileFormat.h"
#include "jvm/JVMFile.h"
#include "launcher/LauncherFacts.h"
#include "launcher/Log.h"
#include "platform/PlatformImpl.h"
#include "platform/WithPrefix.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kCannotOpen = "Cannot open launcher file.";

SString describe(const FileIndexEntry& entry) {
  return "file type: " + convertToString(entry.getFileType()) +
         "\n  file id: " + convertToString(entry.getFileId()) +
         "\n  length: " + convertToString(entry.getFileLength()) +
         "\n  offset: " + convertToString(entry.getOffsetToBytes()) +
         "\n  file name: " + entry.getFileName();
}

}  // namespace

// --- The input file ---

void LauncherInputFiles::load(const TagFile& inputFile) {
  const SString instructions = inputFile.getTagValue(tagname::kInstructions, 0);
  if (!instructions.empty()) {
    withPrefix(MSG_INSTRUCTIONS_LOAD_FAILED,
               [&] { m_instructions = std::make_unique<Instructions>(loadTagFile(instructions)); });
  }
  const SString launchScript = inputFile.getTagValue(tagname::kLaunchScript, 0);
  if (!launchScript.empty()) {
    withPrefix(MSG_LAUNCH_SCRIPT_LOAD_FAILED, [&] { setLaunchScript(loadTagFile(launchScript)); });
  }
  const VerifyClass verifyClass = {inputFile.getTagValue(tagname::kVerifyClasspath, 0),
                                   inputFile.getTagValue(tagname::kVerifyClassName, 0)};
  if (!verifyClass.classpath.empty() && !verifyClass.name.empty()) {
    m_jvmFiles.setVerifyClass(verifyClass);
  }
  const SString title = inputFile.getTagValue(tagname::kUITitle, 0);
  if (!title.empty()) {
    PlatformImpl::setUITitle(title);  // after that of the launch script, so it wins
  }
  for (long i = 0; i < inputFile.getTagValueCount(tagname::kJVM); ++i) {
    loadJVMFile(inputFile.getTagValue(tagname::kJVM, static_cast<unsigned long>(i)));
  }
}

// QUIRK(empty-jvm-value): an input file whose JVM values are all empty still replaces the embedded
// jvm files.
void LauncherInputFiles::loadJVMFile(const SString& path) {
  m_jvmFilesGiven = true;
  if (!path.empty()) {
    withPrefix(MSG_JVM_FILE_LOAD_FAILED,
               [&] { m_jvmFiles.addJVMFile(std::make_unique<JVMFile>(loadTagFile(path))); });
  }
}

TagFile& LauncherInputFiles::loadTagFile(const SString& path) {
  m_tagFiles.push_back(std::make_unique<TagFile>(path));
  return *m_tagFiles.back();
}

void LauncherInputFiles::setLaunchScript(const TagFile& tagFile) {
  m_launchScript = std::make_unique<LaunchScript>(tagFile, true, m_fileIndex);
  PlatformImpl::setUITitle(m_launchScript->getDesc());
}

// --- The launcher file ---

void LauncherInputFiles::load(bool loadTagFilesToo) {
  if (m_internalFilesLoaded) {
    return;
  }
  const FilePtr launcherFile = FileIndex::openLauncherFile();
  if (launcherFile == nullptr) {
    throw LauncherException(kCannotOpen);
  }
  if (m_fileIndex.load(launcherFile.get())) {
    logFileIndex();
    if (loadTagFilesToo) {
      loadTagFiles(launcherFile.get());
    }
  }
  m_internalFilesLoaded = true;
}

void LauncherInputFiles::logFileIndex() const {
  for (long i = 0; i < m_fileIndex.size(); ++i) {
    logMessage(describe(*m_fileIndex.at(i)), LOG_INFO);
  }
}

// QUIRK(one-prefix-for-all): the error of any tag file, of whatever type, begins with the text for
// the instruction script.
void LauncherInputFiles::loadTagFiles(std::FILE* launcherFile) {
  withPrefix(MSG_INSTRUCTIONS_LOAD_FAILED, [&] {
    TagFileLoader loader(launcherFile);
    for (long i = 0; i < m_fileIndex.size(); ++i) {
      loader.load(*m_fileIndex.at(i));
      useTagFile(*m_fileIndex.at(i));
    }
  });
  m_jvmFilesGiven = true;
}

void LauncherInputFiles::useTagFile(const FileIndexEntry& entry) {
  TagFile* const tagFile = entry.getTagFile();
  switch (entry.getFileType()) {
    case FILE_TYPE_INSTRUCTIONS:
      if (m_instructions == nullptr) {
        m_instructions = std::make_unique<Instructions>(*tagFile);
      }
      break;
    case FILE_TYPE_JVM:
      if (!m_jvmFilesGiven) {
        m_jvmFiles.addJVMFile(std::make_unique<JVMFile>(*tagFile));
      }
      break;
    case FILE_TYPE_LAUNCH_SCRIPT:
      if (m_launchScript == nullptr) {
        setLaunchScript(*tagFile);
      }
      break;
    case FILE_TYPE_JVM_MESSAGE:
      m_jvmMessage = std::make_unique<JVMMessage>(*tagFile);
      break;
    default:
      break;  // extracted when it is needed
  }
}
