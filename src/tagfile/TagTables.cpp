#include "tagfile/TagTables.h"

#include <algorithm>

#include "tagfile/TagNames.h"

namespace {

using enum TagKind;
constexpr TagValues kFirst = TagValues::kFirst;
constexpr TagValues kEach = TagValues::kEach;

constexpr TagRow kInstructionRows[] = {
    {tagname::kInstructions, kEach, kStatement},
};

constexpr TagRow kLaunchScriptRows[] = {
    {tagname::kCommand, kFirst, kTemplate},       {tagname::kDesc, kFirst, kShownText},
    {tagname::kArchive, kFirst, kTemplate},       {tagname::kDisplayConsole, kFirst, kFlag},
    {tagname::kAutoSetWorkingDir, kFirst, kFlag},
};

constexpr TagRow kJVMFileRows[] = {
    {tagname::kDesc, kFirst, kShownText},        {tagname::kJVMExe, kFirst, kPath},
    {tagname::kJVMProperties, kEach, kProperty}, {tagname::kPlatformHint, kEach, kVariable},
    {tagname::kPathHint, kEach, kPath},          {tagname::kSearchAll, kFirst, kFlag},
    {tagname::kJVMHome, kFirst, kPath},          {tagname::kJVMFile, kFirst, kRecorded},
    {tagname::kJVMTemp, kFirst, kRecorded},      {tagname::kReqJavaArgs, kFirst, kText},
    {tagname::kClasspath, kFirst, kText},        {tagname::kClasspathSeparator, kFirst, kText},
    {tagname::kJVMClasspath, kFirst, kText},     {tagname::kUseCPEnvVar, kFirst, kOne},
    {tagname::kCPEnvVar, kFirst, kVariable},     {tagname::kSystem, kFirst, kText},
    {tagname::kSystemSeparator, kFirst, kText},  {tagname::kSetEnvForWizard, kEach, kAssignment},
};

constexpr TagRow kJVMMessageRows[] = {
    {tagname::kMessage, kFirst, kText},
};

constexpr TagRow kInputFileRows[] = {
    {tagname::kAction, kFirst, kText},
    {tagname::kLogFile, kFirst, kPath},
    {tagname::kShowProgress, kFirst, kFlag},
    {tagname::kShowFailMsg, kFirst, kFlag},
    {tagname::kInstructions, kFirst, kPath},
    {tagname::kLaunchScript, kFirst, kPath},
    {tagname::kJVM, kEach, kPath},
    {tagname::kJVMMessage, kFirst, kRecorded},
    {tagname::kUITitle, kFirst, kShownText},
    {tagname::kVerifyClasspath, kFirst, kText},
    {tagname::kVerifyClassName, kFirst, kText},
    {tagname::kVerifyJVMFile, kFirst, kPath},
    {tagname::kVerifyJVMHome, kFirst, kPath},
    {tagname::kInstallJVMExe, kFirst, kText},
    {tagname::kInstallJVMDest, kFirst, kPath},
};

}  // namespace

constinit const TagTable kInstructionTags = kInstructionRows;
constinit const TagTable kLaunchScriptTags = kLaunchScriptRows;
constinit const TagTable kJVMFileTags = kJVMFileRows;
constinit const TagTable kJVMMessageTags = kJVMMessageRows;
constinit const TagTable kInputFileTags = kInputFileRows;

const TagRow* findTag(TagTable table, std::string_view name) {
  const auto row =
      std::find_if(table.begin(), table.end(), [name](const TagRow& r) { return name == r.name; });
  return row == table.end() ? nullptr : &*row;
}
