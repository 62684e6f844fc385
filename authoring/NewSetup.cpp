#include "authoring/NewSetup.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <set>

#include "authoring/AuthoringError.h"
#include "authoring/FileTypes.h"
#include "authoring/JavaClass.h"
#include "authoring/JavaRange.h"
#include "authoring/OutputFolder.h"
#include "authoring/SetupTexts.h"
#include "tagfile/StreamUtils.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

void fillMainClass(NewSetupOptions& options) {
  if (options.mainClass.empty()) {
    options.mainClass = mainClassOf(options.jars.front());
  }
  if (options.mainClass.empty()) {
    throw AuthoringError(options.jars.front() +
                         " does not say which class it starts; name it with --main CLASS");
  }
  if (!isClassName(options.mainClass)) {
    throw AuthoringError("\"" + options.mainClass +
                         "\" is no name of a class; write it as in com.example.Setup");
  }
}

int mainClassVersion(const NewSetupOptions& options) {
  for (const std::string& jar : options.jars) {
    if (const std::optional<int> version = compiledFor(jar, options.mainClass)) {
      return *version;
    }
  }
  throw AuthoringError("none of the jars holds the class " + options.mainClass +
                       "; name the right class with --main, or its jar with --jar");
}

void fillJava(NewSetupOptions& options) {
  const int compiled = mainClassVersion(options);
  if (options.java.empty()) {
    options.java = std::to_string(std::max(compiled, JavaRange::kOldest)) + "+";
  }
  const JavaRange range = parseJavaRange(options.java);
  if (range.first < compiled) {
    throw AuthoringError(options.mainClass + " was compiled for Java " + std::to_string(compiled) +
                         " and does not run in Java " + std::to_string(range.first) +
                         "; ask for a later Java with --java, or compile it with --release " +
                         std::to_string(range.first));
  }
}

void fillTitle(NewSetupOptions& options) {
  if (options.title.empty()) {
    fs::path folder = fs::absolute(options.folder).lexically_normal();
    folder = folder.has_filename() ? folder : folder.parent_path();
    options.title = folder.filename().string();
  }
  checkTitle(options.title);
}

// A manifest's paths are relative to it, so that the folder can move together with the jars.
std::string pathFrom(const std::string& folder, const std::string& jar) {
  const fs::path relative =
      fs::weakly_canonical(jar).lexically_relative(fs::weakly_canonical(fs::absolute(folder)));
  return relative.empty() ? fs::absolute(jar).string() : relative.string();
}

void writeText(const std::string& path, const std::string& text) {
  const FilePtr file(std::fopen(path.c_str(), "wbe"));
  if (file == nullptr || std::fwrite(text.data(), 1, text.size(), file.get()) != text.size() ||
      std::fflush(file.get()) != 0) {
    throw AuthoringError(path + " cannot be written: " + std::strerror(errno));
  }
}

SetupPlan planOf(const NewSetupOptions& options) {
  SetupPlan plan = {
      options.mainClass, {}, options.title, parseJavaRange(options.java), options.needs64Bit};
  for (const std::string& jar : options.jars) {
    plan.jars.push_back(pathFrom(options.folder, jar));
  }
  return plan;
}

// A launcher stores all files by their plain names.
void checkNamesOfJars(const NewSetupOptions& options, const std::vector<NamedText>& texts) {
  std::set<std::string> taken = {kVerifyName};
  for (const NamedText& text : texts) {
    taken.insert(text.name);
  }
  for (const std::string& jar : options.jars) {
    const std::string name = fs::path(jar).filename().string();
    if (taken.count(name) != 0) {
      throw AuthoringError("a file of the setup is called " + name +
                           ", too; give the jar another name");
    }
  }
}

}  // namespace

void checkJars(const NewSetupOptions& options) {
  if (options.jars.empty()) {
    throw AuthoringError("no jar is named; name your program's jars with --jar FILE");
  }
  std::set<std::string> names;
  for (const std::string& jar : options.jars) {
    std::error_code error;
    if (!fs::is_regular_file(jar, error)) {
      throw AuthoringError("there is no file " + jar + "; build it first, or correct --jar");
    }
    const std::string name = fs::path(jar).filename().string();
    const std::string fault = findNameFault(name);
    if (!fault.empty()) {
      throw AuthoringError(quotedText(name) + " " + fault + "; give the jar another name");
    }
    if (!names.insert(name).second) {
      throw AuthoringError("two jars are called " + name + "; give each a name of its own");
    }
  }
}

std::string proposedMainClass(const NewSetupOptions& options) {
  return mainClassOf(options.jars.front());
}

NewSetupOptions completeOptions(NewSetupOptions options) {
  checkJars(options);
  fillMainClass(options);
  fillJava(options);
  fillTitle(options);
  return options;
}

std::vector<std::string> makeSetup(const NewSetupOptions& options) {
  const SetupPlan plan = planOf(options);
  const std::vector<NamedText> texts = setupTexts(plan);
  checkNamesOfJars(options, texts);
  OutputFolder folder(options.folder);
  std::vector<std::string> names;
  for (const NamedText& file : texts) {
    writeText(folder.staging() + "/" + file.name, file.text);
    names.push_back(file.name);
  }
  writeVerifyArchive(folder.staging() + "/" + kVerifyName, plan.java.first);
  names.emplace_back(kVerifyName);
  folder.commit();
  return names;
}

}  // namespace authoring
