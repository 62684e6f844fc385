#include "authoring/ExplainCommand.h"

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/Explanation.h"
#include "authoring/SeekableInput.h"
#include "authoring/SetupContents.h"
#include "authoring/ShownText.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

std::string firstValue(const TagFile& tags, const char* name) {
  return tags.getTagValue(name, 0).c_str();
}

// As the launcher reads the lines: those without "=" are left out.
WantedJava readWanted(const SetupFile& file) {
  const TagFile& tags = *file.tagFile;
  WantedJava wanted{
      file.name, firstValue(tags, tagname::kDesc), firstValue(tags, tagname::kJVMExe), {}};
  for (long i = 0; i < tags.getTagValueCount(tagname::kJVMProperties); ++i) {
    const SString line = tags.getTagValue(tagname::kJVMProperties, static_cast<unsigned long>(i));
    const std::size_t equalSign = line.find('=');
    if (equalSign != SString::npos) {
      wanted.properties.emplace_back(trimmed(line.substr(0, equalSign)).c_str(),
                                     trimmed(line.substr(equalSign + 1)).c_str());
    }
  }
  return wanted;
}

std::vector<WantedJava> readAllWanted(const std::string& setup) {
  std::vector<WantedJava> wanted;
  const Setup contents = loadSetup(setup, {});
  for (const SetupFile& file : contents.files) {
    if (file.type == FILE_TYPE_JVM && file.tagFile != nullptr) {
      wanted.push_back(readWanted(file));
    }
  }
  if (wanted.empty()) {
    throw AuthoringError(shownText(inputLabel(setup)) +
                         " carries no jvm file; name the setup that has written the log");
  }
  return wanted;
}

}  // namespace

std::string explainLog(const ExplainOptions& options) {
  ExplainedLog log;
  log.label = inputLabel(options.log);
  if (!options.setup.empty()) {
    log.wanted = readAllWanted(options.setup);
  }
  log.runs = readSetupLog(openSeekable(options.log).file.get());
  if (log.runs.empty()) {
    throw AuthoringError(shownText(log.label) +
                         " is no log of a setup; start the setup with -cv:log FILE and name that "
                         "file");
  }
  log.firstShown = options.allRuns ? 0 : log.runs.size() - 1;
  return options.json ? explainAsJson(log) : explainAsText(log);
}

}  // namespace authoring
