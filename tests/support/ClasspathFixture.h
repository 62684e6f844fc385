// What the tests of class paths and side files share: a launcher in a folder of its own.
#ifndef CORVANE_TESTS_SUPPORT_CLASSPATHFIXTURE_H
#define CORVANE_TESTS_SUPPORT_CLASSPATHFIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "archive/LauncherInputFiles.h"
#include "jvm/JVMFile.h"
#include "launcher/Launcher.h"
#include "launchscript/LaunchScript.h"
#include "platform/PlatformImpl.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace test {

// A file beside the launcher "setup.bin": "setup" and the extension.
struct SideFile {
  std::string extension;
  std::string text;
};

class ClasspathTest : public testing::Test {
 protected:
  ClasspathTest() {
    LauncherTestAccess::setPurpose(1);
    LauncherTestAccess::resetInputFiles();
    PlatformImpl::setSystemTempDir(sstr(m_temp.path()));
    begin("", "", {});
  }

  // A new folder for each row.
  void begin(const std::string& prepend, const std::string& append,
             const std::vector<SideFile>& files) {
    m_dir = std::make_unique<TempDir>();
    LauncherTestAccess::setLauncherFileName(*m_dir / "setup.bin");
    LauncherTestAccess::setPrependClasspath(here(prepend));
    LauncherTestAccess::setAppendClasspath(here(append));
    for (const SideFile& file : files) {
      writeFile(*m_dir / ("setup" + file.extension), file.text);
    }
  }

  std::string here(const std::string& text) const { return replaced(text, "DIR", m_dir->path()); }
  std::string takeLog() { return replaced(m_log.take(), m_dir->path(), "DIR"); }

  std::string resolve(const std::string& command, const Tags& tags,
                      const std::string& archive = "") const {
    TagFile scriptFile;
    addTags(scriptFile, {{"COMMAND", {command}}, {"ARCHIVE", {archive}}});
    TagFile jvmFile;
    addTags(jvmFile, {{"CLASSPATH", {"-cp "}}, {"CLASSPATH_SEPARATOR", {":"}}});
    for (const auto& tag : tags) {
      jvmFile.removeValue(sstr(tag.first));
      addTags(jvmFile, {tag});
    }
    const JVMFile jvm(jvmFile);
    const FileIndex& embedded = Launcher::getInputFiles().getFileIndex();
    return outcome([&] { return LaunchScript(scriptFile, true, embedded).resolve(jvm); });
  }

  std::unique_ptr<TempDir> m_dir;
  TempDir m_temp;
  LogCapture m_log;
};

}  // namespace test

#endif
