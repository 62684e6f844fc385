// LaunchScript, its template language: "%" functions and "#" environment references.
#include "jvm/JVMFile.h"
#include "launcher/Launcher.h"
#include "launchscript/LaunchScript.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

struct LaunchScript::FunctionRow {
  const char* name;
  SString (LaunchScript::*call)(const StringDeque& args) const;
  long minArgs;
  long maxArgs;
  const char* wrongCount;
};

namespace {

constexpr long kAnyNumber = 0x7FFFFFFF;

// Reads the argument list of a function: a small state machine over the tokens of the text.
class ArgumentReader {
 public:
  ArgumentReader(const SString& text, std::size_t position) : m_text(text), m_position(position) {}

  // False when a token is not the expected one. LauncherException of a quoted string without its
  // closing quote passes through.
  bool read(StringDeque& args) {
    while (m_state != kDone) {
      const std::size_t token = m_text.find_first_not_of(kBlanks, m_position);
      const Step* step = token == SString::npos ? nullptr : findStep(m_text[token]);
      if (step == nullptr) {
        return false;
      }
      m_position = token + 1;
      if (step->token == '"') {
        args.push_back(parseStringArgument(m_text, m_position, true));
      }
      m_state = step->next;
    }
    return true;
  }

  // The same, with any error as false.
  bool tryRead(StringDeque& args) {
    try {
      return read(args);
    } catch (const LauncherException&) {
      return false;
    }
  }

  // One past the last token read; npos behind a string that ends the text.
  std::size_t position() const { return m_position; }

  SString errorText() const {
    return SString(kErrors[m_state]) + " (near character " + positionToString(m_position) + ")";
  }

 private:
  enum State { kExpectOpening, kExpectArgument, kExpectSeparator, kDone };
  struct Step {
    State state;
    char token;
    State next;
  };
  static constexpr Step kSteps[] = {
      {kExpectOpening, '(', kExpectArgument}, {kExpectArgument, '"', kExpectSeparator},
      {kExpectArgument, ')', kDone},          {kExpectSeparator, ',', kExpectArgument},
      {kExpectSeparator, ')', kDone},
  };
  static constexpr const char* kErrors[] = {"Expected left parenthesis.", "Expected string arg.",
                                            "Expected right parenthesis."};

  const Step* findStep(char token) const {
    for (const Step& step : kSteps) {
      if (step.state == m_state && step.token == token) {
        return &step;
      }
    }
    return nullptr;
  }

  const SString& m_text;
  std::size_t m_position;
  State m_state = kExpectOpening;
};

SString replaceAll(const SString& subject, const SString& from, const SString& to) {
  if (from.empty()) {
    return subject;
  }
  SString result;
  std::size_t begin = 0;
  for (std::size_t found = subject.find(from); found != SString::npos;
       found = subject.find(from, begin)) {
    result.append(subject.view().substr(begin, found - begin)).append(to);
    begin = found + from.size();
  }
  return result.append(subject.view().substr(begin));
}

SString strippedQuotes(SString text) {
  stripQuotes(text);
  return text;
}

}  // namespace

const LaunchScript::FunctionRow LaunchScript::kFunctions[] = {
    {"REPLACE", &LaunchScript::callReplace, 3, 3, "REPLACE function requires 3 arguments."},
    {"RUNTIME_SYSTEMPROP", &LaunchScript::callRuntimeSystemProp, 0, 0,
     "RUNTIME_SYSTEMPROP function takes no arguments."},
    {"RUNTIME_JAVAARGS", &LaunchScript::callRuntimeJavaArgs, 0, 0,
     "RUNTIME_JAVAARGS function takes no arguments."},
    {"SYSTEMPROP", &LaunchScript::callSystemProp, 2, 2,
     "SYSTEMPROP function requires 2 arguments."},
    {"CP", &LaunchScript::callCP, 0, kAnyNumber, ""},
    {"IF_EXISTS", &LaunchScript::callIfExists, 2, 2, "IF_EXISTS function requires 2 arguments."},
    {"LAUNCHER_FILE", &LaunchScript::callLauncherFile, 0, 0,
     "LAUNCHER_FILE function takes 0 arguments."},
    {"LAUNCHER_DIR", &LaunchScript::callLauncherDir, 0, 0,
     "LAUNCHER_DIR function takes 0 arguments."},
    // QUIRK(application-archive-message): the text says 0 although one argument is accepted.
    {"APPLICATION_ARCHIVE", &LaunchScript::callApplicationArchive, 0, 1,
     "APPLICATION_ARCHIVE function takes 0 arguments."},
    {"TEMP_DIR", &LaunchScript::callTempDir, 0, 0, "TEMP_DIR function takes 0 arguments."},
};

SString LaunchScript::processMacro(const MacroText& text, char delimiter, std::size_t start,
                                   std::size_t& end) const {
  const SString name = text.rest().substr(start + 1, end - start - 1);
  if (delimiter == '#') {
    return PlatformImpl::getEnvironmentVariable(name);
  }
  const FunctionRow* function = findFunction(name);
  if (function == nullptr) {
    throwException(text.whole(), ("Invalid function name (" + name + ").").c_str());
  }
  StringDeque args;
  end = readCall(text, end + 1, args) - 1;
  if (args.size() < function->minArgs || args.size() > function->maxArgs) {
    throwException(text.whole(), function->wrongCount);
  }
  return (this->*function->call)(args);
}

const LaunchScript::FunctionRow* LaunchScript::findFunction(const SString& name) {
  for (const FunctionRow& row : kFunctions) {
    if (name == row.name) {
      return &row;
    }
  }
  return nullptr;
}

// Reads the arguments of a call and returns the position behind it.
std::size_t LaunchScript::readCall(const MacroText& text, std::size_t position,
                                   StringDeque& args) const {
  ArgumentReader reader(text.rest(), position);
  if (!reader.tryRead(args)) {
    // Once more in the whole text, whose positions are those that the error names.
    std::size_t positionInWhole = text.positionInWhole(position);
    getArguments(text.whole(), positionInWhole, args);
  }
  return reader.position();
}

void LaunchScript::getArguments(const SString& text, std::size_t& position,
                                StringDeque& args) const {
  ArgumentReader reader(text, position);
  if (!reader.read(args)) {
    throwException(text, reader.errorText().c_str());
  }
  position = reader.position();
}

SString LaunchScript::callReplace(const StringDeque& args) const {
  return replaceAll(args[2], m_currentJVMFile->resolve(args[0]),
                    m_currentJVMFile->resolve(args[1]));
}

SString LaunchScript::callRuntimeSystemProp(const StringDeque& /*args*/) const {
  return buildRuntimeSystemProps(*m_currentJVMFile);
}

SString LaunchScript::callRuntimeJavaArgs(const StringDeque& /*args*/) const {
  return buildRuntimeJavaArgs(*m_currentJVMFile);
}

SString LaunchScript::callSystemProp(const StringDeque& args) const {
  return makeSystemProp(*m_currentJVMFile, args[0], args[1]);
}

SString LaunchScript::callIfExists(const StringDeque& args) const {
  return tagValue(args[0].c_str()).empty() ? SString() : m_currentJVMFile->resolve(args[1]);
}

SString LaunchScript::callLauncherFile(const StringDeque& /*args*/) const {
  return Launcher::getLauncherFileName();
}

SString LaunchScript::callLauncherDir(const StringDeque& /*args*/) const {
  return Launcher::getOriginalLauncherDir();
}

SString LaunchScript::callApplicationArchive(const StringDeque& args) const {
  return args.empty() ? Launcher::getApplicationArchive()
                      : Launcher::getApplicationArchive(args[0]);
}

SString LaunchScript::callTempDir(const StringDeque& /*args*/) const {
  SString directory = PlatformImpl::getSystemTempDirectory();
  // QUIRK(temp-dir-backslash): one backslash at the end is removed, a "/" is kept.
  if (directory.endsWith("\\")) {
    directory.erase(directory.size() - 1);
  }
  return directory;
}

SString LaunchScript::callCP(const StringDeque& args) const {
  // QUIRK(use-cp-env-var-exactly-1): any other value, also another number, means no.
  if (tagValue(tagname::kUseCPEnvVar) != "1") {
    const SString classpath = buildClasspath(args, false);
    return classpath.empty() ? classpath : tagValue(tagname::kClasspath) + classpath;
  }
  const SString classpath = buildClasspath(args, true);
  const SString variable = tagValue(tagname::kCPEnvVar);
  if (variable.empty()) {
    Launcher::logMessage(
        "If USE_CP_ENV_VAR is set to 1 in the jvm file, then the jvm file should also define "
        "CP_ENV_VAR.",
        LOG_ERROR);
  } else {
    PlatformImpl::setEnvironmentVariable(variable, classpath);
    Launcher::logMessage("Set env var " + variable + " to " + classpath + "\n", LOG_INFO);
  }
  return {};
}

SString LaunchScript::buildClasspath(const StringDeque& args, bool forEnvironment) const {
  const JVMFile& jvm = *m_currentJVMFile;
  const auto unquoted = [forEnvironment](const SString& entry) {
    return forEnvironment ? strippedQuotes(entry) : entry;
  };
  SString classpath;
  addOptionToClasspath(classpath, Launcher::getPrependClasspath());
  addToClasspath(jvm, classpath, buildRuntimeClasspath(jvm, ".cp1"));
  addToClasspath(jvm, classpath, buildJVMClasspath());
  addToClasspath(jvm, classpath, buildRuntimeClasspath(jvm, ".cp"));
  for (long i = 0; i < args.size(); ++i) {
    addToClasspath(jvm, classpath, unquoted(args[i]));
  }
  addToClasspath(jvm, classpath, unquoted(resolveArchive()));
  addToClasspath(jvm, classpath, buildJARClasspath(!forEnvironment));
  addToClasspath(jvm, classpath, buildRuntimeClasspath(jvm, ".cp2"));
  addOptionToClasspath(classpath, Launcher::getAppendClasspath());
  return classpath;
}

// A class path given as an option: the name of a file of entries behind "@", or one entry.
void LaunchScript::addOptionToClasspath(SString& classpath, const SString& option) const {
  if (option.startsWith("@")) {
    appendClasspathArg(*m_currentJVMFile, classpath, option);
  } else if (!option.empty()) {
    // QUIRK(option-keeps-its-quotes): the quotes stand also in the environment variable.
    addToClasspath(*m_currentJVMFile, classpath, "\"" + option + "\"");
  }
}

SString LaunchScript::resolveArchive() const {
  if (m_isResolvingArchive) {
    throwException(m_archive, "ARCHIVE must not call the CP function.");
  }
  m_isResolvingArchive = true;
  const SString archive = MacroHandler::resolve(m_archive, '%');
  m_isResolvingArchive = false;
  return archive;
}
