// LaunchScript, its builders: class path, and the side files beside the launcher with which a user
// adds class-path entries, system properties and Java arguments.
#include "archive/FileIndex.h"
#include "archive/LauncherFileFormat.h"
#include "jvm/JVMFile.h"
#include "launcher/LauncherFacts.h"
#include "launcher/Log.h"
#include "launchscript/LaunchScript.h"
#include "platform/PlatformImpl.h"
#include "tagfile/Paths.h"
#include "tagfile/StreamUtils.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace {

SString firstValue(const JVMFile& jvm, const char* key) {
  return jvm.getTagFile().getTagValue(key, 0);
}

// The original launcher's path with `extension` in the place of its own.
SString sideFileName(const char* extension) {
  SString name = LauncherFacts::getOriginalLauncherFileName();
  const SString base = baseNameOf(name, kEitherSeparator);
  const std::size_t dot = base.rfind('.');
  if (dot != SString::npos) {
    name.erase(name.size() - base.size() + dot);
  }
  return name + extension;
}

// Calls `useLine` with each line of the file, trimmed.
template <class UseLine>
void forEachLine(std::FILE* file, UseLine useLine) {
  while (!isAtEnd(file)) {
    SString line;
    readLineFromStream(file, line);
    useLine(line);
  }
}

void appendWord(CommandText& text, const CommandText& word) {
  if (!text.empty()) {
    text += " ";
  }
  text += word;
}

}  // namespace

CommandText LaunchScript::buildJVMClasspath() const {
  return tagValue(tagname::kJVMClasspath);
}

void LaunchScript::addToClasspath(const JVMFile& jvm, CommandText& classpath,
                                  const CommandText& entry) const {
  if (entry.empty()) {
    return;
  }
  if (!classpath.empty()) {
    classpath += firstValue(jvm, tagname::kClasspathSeparator);
  }
  classpath += entry;
}

void LaunchScript::appendClasspathArg(const JVMFile& jvm, CommandText& classpath,
                                      const SString& arg) const {
  const SString entry = trimmed(arg);
  const bool isFileName = entry.startsWith("@");
  addToClasspath(jvm, classpath,
                 isFileName ? buildClasspathFromFile(jvm, entry.substr(1), true) : entry);
}

CommandText LaunchScript::buildClasspathFromFile(const JVMFile& jvm, const SString& fileName,
                                                 bool reportMissing) const {
  CommandText classpath;
  const FilePtr file = openFile(fileName, "r");
  if (file != nullptr) {
    forEachLine(file.get(), [&](const SString& line) { addToClasspath(jvm, classpath, line); });
  } else if (reportMissing) {
    logMessage("Could not find the file " + fileName + " while building the classpath.",
               LOG_WARNING);
  }
  return classpath;
}

CommandText LaunchScript::buildRuntimeClasspath(const JVMFile& jvm, const char* extension) const {
  return buildClasspathFromFile(jvm, sideFileName(extension), false);
}

CommandText LaunchScript::buildRuntimeSystemProps(const JVMFile& jvm) const {
  CommandText properties;
  if (const FilePtr file = openFile(sideFileName(".sp"), "r")) {
    forEachLine(file.get(), [&](const SString& line) {
      const std::size_t equalSign = line.find('=');
      if (equalSign != SString::npos) {
        appendWord(properties,
                   makeSystemProp(jvm, line.substr(0, equalSign), line.substr(equalSign + 1)));
      }
    });
  }
  return properties;
}

CommandText LaunchScript::buildRuntimeJavaArgs(const JVMFile& jvm) const {
  CommandText args;
  if (const FilePtr file = openFile(sideFileName(".ja"), "r")) {
    forEachLine(file.get(), [&](const SString& line) {
      const CommandText arg = jvm.resolve(line);
      if (!arg.empty()) {
        appendWord(args, arg);
      }
    });
  }
  const SString required = firstValue(jvm, tagname::kReqJavaArgs);
  if (!required.empty()) {
    // QUIRK(required-args-after-blank): the blank is there even when nothing precedes it.
    args += " ";
    args += required;
  }
  return args;
}

CommandText LaunchScript::makeSystemProp(const JVMFile& jvm, const CommandText& name,
                                         const CommandText& value) const {
  return CommandText(firstValue(jvm, tagname::kSystem)) + name +
         firstValue(jvm, tagname::kSystemSeparator) + jvm.resolve(value);
}

CommandText LaunchScript::buildJARClasspath(bool quote) const {
  CommandText classpath;
  if (m_embeddedFiles == nullptr) {
    return classpath;
  }
  const SString directory = PlatformImpl::createTempSubDirectory();
  m_embeddedFiles->forEachOfType(FILE_TYPE_JAR, [&](const FileIndexEntry& jar) {
    const SString path = jar.extract(directory);
    addToClasspath(*m_currentJVMFile, classpath,
                   quote ? CommandText::insertedInQuotes(path) : CommandText::inserted(path));
  });
  return classpath;
}
