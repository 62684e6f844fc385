// LaunchScript, its template language: "%" functions and "#" environment references.
#include "jvm/JVMFile.h"
#include "launcher/Launcher.h"
#include "launchscript/FunctionArguments.h"
#include "launchscript/LaunchScript.h"
#include "launchscript/LaunchScriptGrammar.h"
#include "platform/PlatformImpl.h"
#include "tagfile/Quotes.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

CommandText replaceAll(const CommandText& subject, const SString& from, const CommandText& to) {
  if (from.empty()) {
    return subject;
  }
  CommandText result;
  std::size_t begin = 0;
  for (std::size_t found = subject.bytes().find(from); found != SString::npos;
       found = subject.bytes().find(from, begin)) {
    result.append(subject.substr(begin, found - begin)).append(to);
    begin = found + from.size();
  }
  return result.append(subject.substr(begin));
}

CommandText strippedQuotes(CommandText text) {
  text.stripQuotes();
  return text;
}

}  // namespace

CommandText LaunchScript::processMacro(const MacroText& text, char delimiter, std::size_t start,
                                       std::size_t& end) const {
  const SString name = text.buffer().bytes().substr(start + 1, end - start - 1);
  if (delimiter == kEnvironmentMark) {
    return environmentVariable(name);
  }
  const FunctionGrammar* function = findFunction(name);
  if (function == nullptr) {
    throwException(text.whole(), ("Invalid function name (" + name + ").").c_str());
  }
  CommandTexts args;
  end = readCall(text, end + 1, args) - 1;
  const auto count = static_cast<long>(args.size());
  if (count < function->leastArguments || count > function->mostArguments) {
    throwException(text.whole(), function->wrongCount);
  }
  return call(function->function, args);
}

// What the function CP has put into the variable is no user's text.
CommandText LaunchScript::environmentVariable(const SString& name) const {
  const SString value = PlatformImpl::getEnvironmentVariable(name);
  const bool isClasspath = name == m_classpathVariable && value == m_classpathInVariable.bytes();
  return isClasspath ? m_classpathInVariable : value;
}

CommandText LaunchScript::call(Function function, const CommandTexts& args) const {
  switch (function) {
    case Function::kReplace:
      return callReplace(args);
    case Function::kRuntimeSystemProp:
      return buildRuntimeSystemProps(*m_currentJVMFile);
    case Function::kRuntimeJavaArgs:
      return buildRuntimeJavaArgs(*m_currentJVMFile);
    case Function::kSystemProp:
      return makeSystemProp(*m_currentJVMFile, args[0], args[1]);
    case Function::kCP:
      return callCP(args);
    case Function::kIfExists:
      return callIfExists(args);
    case Function::kLauncherFile:
      return CommandText::inserted(Launcher::getLauncherFileName());
    case Function::kLauncherDir:
      return CommandText::inserted(Launcher::getOriginalLauncherDir());
    case Function::kApplicationArchive:
      return CommandText::inserted(args.empty() ? Launcher::getApplicationArchive()
                                                : Launcher::getApplicationArchive(args[0].bytes()));
    case Function::kTempDir:
      return callTempDir();
  }
  return {};
}

// Reads the arguments of a call and returns the position after it.
std::size_t LaunchScript::readCall(const MacroText& text, std::size_t position,
                                   CommandTexts& args) const {
  FunctionArguments reader(text.buffer(), position);
  if (!reader.tryRead(args)) {
    // Once more in the whole text, whose positions are those that the error names.
    std::size_t positionInWhole = text.positionInWhole(position);
    getArguments(text.whole(), positionInWhole, args);
  }
  return reader.position();
}

void LaunchScript::getArguments(const CommandText& text, std::size_t& position,
                                CommandTexts& args) const {
  FunctionArguments reader(text, position);
  if (!reader.read(args)) {
    throwException(text, reader.errorText().c_str());
  }
  position = reader.position();
}

CommandText LaunchScript::callReplace(const CommandTexts& args) const {
  return replaceAll(args[2], m_currentJVMFile->resolve(args[0]).bytes(),
                    m_currentJVMFile->resolve(args[1]));
}

CommandText LaunchScript::callIfExists(const CommandTexts& args) const {
  return tagValue(args[0].bytes().c_str()).empty() ? CommandText()
                                                   : m_currentJVMFile->resolve(args[1]);
}

CommandText LaunchScript::callTempDir() const {
  SString directory = PlatformImpl::getSystemTempDirectory();
  // QUIRK(temp-dir-backslash): one backslash at the end is removed, a "/" is kept.
  if (directory.endsWith("\\")) {
    directory.erase(directory.size() - 1);
  }
  return CommandText::inserted(directory);
}

CommandText LaunchScript::callCP(const CommandTexts& args) const {
  // QUIRK(use-cp-env-var-exactly-1): any other value, also another number, means no.
  if (tagValue(tagname::kUseCPEnvVar) != "1") {
    const CommandText classpath = buildClasspath(args, false);
    return classpath.empty() ? classpath : tagValue(tagname::kClasspath) + classpath;
  }
  const CommandText classpath = buildClasspath(args, true);
  const SString variable = tagValue(tagname::kCPEnvVar);
  if (variable.empty()) {
    Launcher::logMessage(
        "If USE_CP_ENV_VAR is set to 1 in the jvm file, then the jvm file should also define "
        "CP_ENV_VAR.",
        LOG_ERROR);
  } else {
    m_classpathVariable = variable;
    m_classpathInVariable = classpath;
    PlatformImpl::setEnvironmentVariable(variable, classpath.bytes());
    Launcher::logMessage("Set env var " + variable + " to " + classpath.bytes() + "\n", LOG_INFO);
  }
  return {};
}

CommandText LaunchScript::buildClasspath(const CommandTexts& args, bool forEnvironment) const {
  const JVMFile& jvm = *m_currentJVMFile;
  const auto unquoted = [forEnvironment](const CommandText& entry) {
    return forEnvironment ? strippedQuotes(entry) : entry;
  };
  CommandText classpath;
  addOptionToClasspath(classpath, Launcher::getPrependClasspath());
  addToClasspath(jvm, classpath, buildRuntimeClasspath(jvm, ".cp1"));
  addToClasspath(jvm, classpath, buildJVMClasspath());
  addToClasspath(jvm, classpath, buildRuntimeClasspath(jvm, ".cp"));
  for (const CommandText& entry : args) {
    addToClasspath(jvm, classpath, unquoted(entry));
  }
  addToClasspath(jvm, classpath, unquoted(resolveArchive()));
  addToClasspath(jvm, classpath, buildJARClasspath(!forEnvironment));
  addToClasspath(jvm, classpath, buildRuntimeClasspath(jvm, ".cp2"));
  addOptionToClasspath(classpath, Launcher::getAppendClasspath());
  return classpath;
}

// A class path given as an option: "@" and the name of a file of entries, or one entry.
void LaunchScript::addOptionToClasspath(CommandText& classpath, const SString& option) const {
  if (option.startsWith("@")) {
    appendClasspathArg(*m_currentJVMFile, classpath, option);
  } else if (!option.empty()) {
    // QUIRK(option-keeps-its-quotes): the quotes stand also in the environment variable.
    addToClasspath(*m_currentJVMFile, classpath, inQuotes(option));
  }
}

CommandText LaunchScript::resolveArchive() const {
  if (m_isResolvingArchive) {
    throwException(m_archive, "ARCHIVE must not call the CP function.");
  }
  m_isResolvingArchive = true;
  const CommandText archive = MacroHandler::resolve(m_archive, kFunctionMark);
  m_isResolvingArchive = false;
  return archive;
}
