// LauncherInputFiles: loading, from an input file and from the launcher file.
#include "archive/LauncherInputFiles.h"

#include <sys/types.h>

#include "archive/LauncherFileFormat.h"
#include "jvm/JVMFile.h"
#include "launcher/Launcher.h"
#include "platform/PlatformImpl.h"
#include "platform/WithPrefix.h"
#include "tagfile/StreamUtils.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kCannotOpen = "Cannot open launcher file.";
constexpr const char* kInvalidFormat = "Invalid launcher format.";
constexpr const char* kNoIndexOffset = "Unable to read file index offset.";
constexpr const char* kNoIdentification = "Unable to read launcher identification value.";
constexpr const char* kInvalidIndexOffset = "Invalid file index offset.";
constexpr const char* kNoFileCount = "Unable to read the file count.";
constexpr const char* kTooMuchText = "Unable to read tag file.";

// How much more text than the launcher file is long its tag files may have in all.
constexpr std::int64_t kSharedTextAllowance = 16 << 20;

SString describe(const FileIndexEntry& entry) {
  return "file type: " + convertToString(entry.getFileType()) +
         "\n  file id: " + convertToString(entry.getFileId()) +
         "\n  length: " + convertToString(entry.getFileLength()) +
         "\n  offset: " + convertToString(entry.getOffsetToBytes()) +
         "\n  file name: " + entry.getFileName();
}

std::int64_t sizeOf(std::FILE* file) {
  return fseeko(file, 0, SEEK_END) == 0 ? std::int64_t{ftello(file)} : 0;
}

// The tag files of an honest launcher lie beside each other. A hostile index may name the same
// bytes thousands of times, and would otherwise take memory by the square of the file's size.
std::int64_t textSize(const FileIndexEntry& entry) {
  return entry.getTagFile() == nullptr ? 0 : entry.getTagFile()->getLoadedBytes();
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
  const SString verifyClasspath = inputFile.getTagValue(tagname::kVerifyClasspath, 0);
  const SString verifyClass = inputFile.getTagValue(tagname::kVerifyClassName, 0);
  if (!verifyClasspath.empty() && !verifyClass.empty()) {
    m_jvmFiles.setVerifyClass(verifyClasspath, verifyClass);
  }
  const SString title = inputFile.getTagValue(tagname::kUITitle, 0);
  if (!title.empty()) {
    PlatformImpl::setUITitle(title);  // behind the launch script's own, so it wins
  }
  for (long i = 0; i < inputFile.getTagValueCount(tagname::kJVM); ++i) {
    loadJVMFile(inputFile.getTagValue(tagname::kJVM, static_cast<unsigned long>(i)));
  }
}

// QUIRK(empty-jvm-value): an input file whose JVM values are all empty still keeps the embedded jvm
// files out; so a caller says that none of them is wanted.
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
  m_launchScript = std::make_unique<LaunchScript>(tagFile, true);
  PlatformImpl::setUITitle(m_launchScript->getDesc());
}

// --- The launcher file ---

void LauncherInputFiles::load(bool loadTagFilesToo) {
  if (m_internalFilesLoaded) {
    return;
  }
  const FilePtr launcherFile = openFile(Launcher::getLauncherFileName(), "rb");
  if (launcherFile == nullptr) {
    throw LauncherException(kCannotOpen);
  }
  readLauncherFile(launcherFile.get(), loadTagFilesToo);
  m_internalFilesLoaded = true;
}

void LauncherInputFiles::readLauncherFile(std::FILE* launcherFile, bool loadTagFilesToo) {
  if (fseeko(launcherFile, -kTrailerSize, SEEK_END) != 0) {
    throw LauncherException(kInvalidFormat);
  }
  const std::int32_t offset = loadLongValue(launcherFile, kNoIndexOffset);
  const std::int32_t identification = loadLongValue(launcherFile, kNoIdentification);
  if (static_cast<std::uint32_t>(identification) != kLauncherIdentification) {
    return;
  }
  loadFileIndex(launcherFile, offset);
  logFileIndex();
  if (loadTagFilesToo) {
    loadTagFiles(launcherFile);
  }
}

// The count is believed only as far as entries follow: each takes 16 bytes of the file or more,
// and its end throws.
void LauncherInputFiles::loadFileIndex(std::FILE* launcherFile, std::int32_t offset) {
  if (fseeko(launcherFile, offset, SEEK_SET) != 0) {
    throw LauncherException(kInvalidIndexOffset);
  }
  const std::int32_t count = loadLongValue(launcherFile, kNoFileCount);
  for (std::int32_t i = 0; i < count; ++i) {
    auto entry = std::make_unique<FileIndexEntry>();
    entry->load(launcherFile);
    m_fileIndex.push_back(std::move(entry));
  }
}

void LauncherInputFiles::logFileIndex() const {
  for (long i = 0; i < m_fileIndex.size(); ++i) {
    Launcher::logMessage(describe(*m_fileIndex.at(i)), LOG_INFO);
  }
}

// QUIRK(one-prefix-for-all): whatever tag file fails, of whatever type, the message begins with the
// text for the instruction script.
void LauncherInputFiles::loadTagFiles(std::FILE* launcherFile) {
  withPrefix(MSG_INSTRUCTIONS_LOAD_FAILED, [&] {
    std::int64_t allowance = kSharedTextAllowance + sizeOf(launcherFile);
    for (long i = 0; i < m_fileIndex.size(); ++i) {
      m_fileIndex.at(i)->loadTagFile(launcherFile);
      allowance -= textSize(*m_fileIndex.at(i));
      if (allowance < 0) {
        throw LauncherException(kTooMuchText);
      }
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
      break;  // copied out when somebody asks for it
  }
}

FileIndexEntry* LauncherInputFiles::getFile(std::int32_t fileId) const {
  for (long i = 0; i < m_fileIndex.size(); ++i) {
    if (m_fileIndex.at(i)->getFileId() == fileId) {
      return m_fileIndex.at(i);
    }
  }
  return nullptr;
}

FileIndexEntry* LauncherInputFiles::findFileOfType(std::int32_t fileType) const {
  for (long i = 0; i < m_fileIndex.size(); ++i) {
    if (m_fileIndex.at(i)->getFileType() == fileType) {
      return m_fileIndex.at(i);
    }
  }
  return nullptr;
}
