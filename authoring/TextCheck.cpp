#include "authoring/TextCheck.h"

#include "archive/LauncherFileFormat.h"
#include "authoring/CommandCheck.h"
#include "authoring/EncodingCheck.h"
#include "authoring/HintCheck.h"
#include "authoring/JVMFileCheck.h"
#include "authoring/MacroCircle.h"
#include "authoring/PropertyCheck.h"
#include "authoring/RequiredArguments.h"
#include "authoring/ScriptFlowCheck.h"
#include "authoring/TagFileCheck.h"
#include "tagfile/TagNames.h"

namespace authoring {
namespace {

const SetupFile* findTagFile(const Setup& setup, std::int32_t type) {
  const SetupFile* const file = setup.findType(type);
  return file == nullptr || file->tagFile == nullptr ? nullptr : file;
}

void checkWriting(const Setup& setup, Findings& findings) {
  for (const SetupFile& file : setup.files) {
    const TagTable table = tagsOf(file.type);
    if (!table.empty()) {
      checkEncoding(file, table, findings);
      checkTagFile(file, table, findings);
    }
  }
}

void checkJVMFiles(const Setup& setup, const CommandModel& command, Findings& findings) {
  const StatusFiles statusFiles(setup);
  for (const SetupFile& file : setup.files) {
    if (file.type != FILE_TYPE_JVM || file.tagFile == nullptr) {
      continue;
    }
    checkMacroCircles(file, command, findings);
    if (!statusFiles.contain(file)) {
      checkProperties(file, findings);
      checkHints(file, findings);
      checkJVMFile(setup, file, command, findings);
      checkRequiredArguments(file, command, findings);
    }
  }
  checkSearchAll(setup, statusFiles, findings);
}

}  // namespace

TagTable tagsOf(std::int32_t type) {
  switch (type) {
    case FILE_TYPE_INSTRUCTIONS:
      return kInstructionTags;
    case FILE_TYPE_JVM:
      return kJVMFileTags;
    case FILE_TYPE_LAUNCH_SCRIPT:
      return kLaunchScriptTags;
    case FILE_TYPE_JVM_MESSAGE:
      return kJVMMessageTags;
    default:
      return {};
  }
}

void checkTexts(const Setup& setup, Findings& findings) {
  checkWriting(setup, findings);
  CommandModel command;
  if (const SetupFile* const script = findTagFile(setup, FILE_TYPE_LAUNCH_SCRIPT)) {
    command = readCommand(script->tagFile->getTagValue(tagname::kCommand, 0));
    checkCommand(setup, *script, command, findings);
  }
  checkJVMFiles(setup, command, findings);
  if (const SetupFile* const script = findTagFile(setup, FILE_TYPE_INSTRUCTIONS)) {
    checkScriptFlow(*script, findings);
  }
}

}  // namespace authoring
