// JVMFiles, the verify archive: extracts the class that runs inside a candidate.
#include "archive/FileIndexEntry.h"
#include "archive/LauncherFileFormat.h"
#include "archive/LauncherInputFiles.h"
#include "jvm/JVMFiles.h"
#include "launcher/Launcher.h"
#include "platform/PlatformImpl.h"

void JVMFiles::writeVerifyJar() {
  if (!m_verifyClasspath.empty() || !m_verifyClass.empty()) {
    return;
  }
  const LauncherInputFiles& files = Launcher::getInputFiles();
  SString path;
  for (std::int32_t i = 0; i < files.getEmbeddedFileCount(); ++i) {
    const FileIndexEntry* entry = files.getFileAt(i);
    if (entry->getFileType() == FILE_TYPE_VERIFY_JAR) {
      path = entry->extract(PlatformImpl::createTempSubDirectory());
    }
  }
  if (!path.empty()) {
    m_verifyClasspath = "\"" + path + "\"";
    m_verifyClass = "\"Verify\"";
  }
}

void JVMFiles::writeVerifyJar(SString& classpath, SString& verifyClass) {
  writeVerifyJar();
  classpath = m_verifyClasspath;
  verifyClass = m_verifyClass;
}

void JVMFiles::setVerifyClass(const SString& classpath, const SString& verifyClass) {
  m_verifyClasspath = classpath;
  m_verifyClass = verifyClass;
}
