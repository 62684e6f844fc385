#include "authoring/SetupCheck.h"

#include <algorithm>
#include <set>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "authoring/ScriptCheck.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

using Findings = std::vector<std::string>;

const SetupFile* findFirst(const Setup& setup, std::int32_t type) {
  const auto file = std::find_if(setup.files.begin(), setup.files.end(),
                                 [type](const SetupFile& f) { return f.type == type; });
  return file == setup.files.end() ? nullptr : &*file;
}

// --- Names and numbers ---

void checkNames(const Setup& setup, Findings& findings) {
  std::set<std::string> names;
  std::set<std::int32_t> ids;
  for (const SetupFile& file : setup.files) {
    const std::string fault = findNameFault(file.name);
    if (!fault.empty()) {
      findings.push_back(file.label + ": its name " + fault);
    }
    if (!names.insert(file.name).second) {
      findings.push_back(file.label +
                         ": another file has this name, too; copied out, one would "
                         "overwrite the other");
    }
    if (!ids.insert(file.id).second) {
      findings.push_back(file.label + ": another file has the number " + std::to_string(file.id) +
                         ", too; scripts reach only the first");
    }
  }
}

// --- The tags of one file ---

class TagCheck {
 public:
  TagCheck(const SetupFile& file, Findings& findings) : m_file(file), m_findings(findings) {}

  void run() {
    switch (m_file.type) {
      case FILE_TYPE_INSTRUCTIONS:
        need(tagname::kInstructions, "the launcher does nothing and ends with status 0");
        break;
      case FILE_TYPE_JVM:
        checkJVMFile();
        break;
      case FILE_TYPE_LAUNCH_SCRIPT:
        need(tagname::kCommand, "there is nothing to run");
        needAscii(tagname::kDesc);
        needNumber(tagname::kDisplayConsole);
        needNumber(tagname::kAutoSetWorkingDir);
        break;
      case FILE_TYPE_JVM_MESSAGE:
        checkMessage();
        break;
      default:
        break;
    }
  }

 private:
  void find(const std::string& text) { m_findings.push_back(m_file.label + ": " + text); }
  SString value(const char* tag) const { return m_file.tagFile->getTagValue(tag, 0); }

  void need(const char* tag, const char* consequence) {
    if (value(tag).empty()) {
      find(std::string(tag) + " is missing: " + consequence);
    }
  }

  void needAscii(const char* tag) {
    const SString text = value(tag);
    const auto isPlain = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    if (!std::all_of(text.view().begin(), text.view().end(), isPlain)) {
      find(std::string(tag) +
           " holds letters beyond ASCII, which are shown wrongly; write each as "
           "\\u and its four hexadecimal digits");
    }
  }

  void needNumber(const char* tag) {
    std::int16_t number;
    const SString text = value(tag);
    if (!text.empty() && !convertToShort(text, number)) {
      find(std::string(tag) + ": \"" + text.c_str() + "\" counts as not given; write 1 or 0");
    }
  }

  void checkJVMFile() {
    need(tagname::kJVMExe, "no JVM is ever accepted");
    need(tagname::kJVMProperties, "hints are not looked at and VERIFY accepts no JVM");
    for (long i = 0; i < m_file.tagFile->getTagValueCount(tagname::kJVMProperties); ++i) {
      const SString line =
          m_file.tagFile->getTagValue(tagname::kJVMProperties, static_cast<unsigned long>(i));
      if (line.find('=') == SString::npos) {
        find("JVM_PROPERTIES: \"" + std::string(line.view()) + "\" is ignored; write name = value");
      }
    }
    needAscii(tagname::kDesc);
    needNumber(tagname::kSearchAll);
  }

  void checkMessage() {
    need(tagname::kMessage, "an empty line is shown when no JVM is found");
    if (m_file.tagFile->getTagValueCount(tagname::kMessage) > 1) {
      find("MESSAGE has several lines, of which the first alone is shown; write one line");
    }
  }

  const SetupFile& m_file;
  Findings& m_findings;
};

// --- The setup as a whole ---

void checkSecondScripts(const Setup& setup, Findings& findings) {
  for (const SetupFile& file : setup.files) {
    const bool single = file.type == FILE_TYPE_INSTRUCTIONS || file.type == FILE_TYPE_LAUNCH_SCRIPT;
    const SetupFile* const first = findFirst(setup, file.type);
    if (single && first != &file) {
      findings.push_back(file.label + ": never used, since " + first->label + " stands before it");
    }
  }
}

struct NeedRow {
  Command command;    // of the script
  std::int32_t type;  // of a file without which it fails
  const char* text;
};

const NeedRow kNeeds[] = {
    {Command::kFindJVM, FILE_TYPE_JVM, "no jvm file: FIND_JVM finds nothing"},
    {Command::kFindJVM, FILE_TYPE_VERIFY_JAR, "no verify archive: FIND_JVM accepts no JVM"},
    {Command::kVerify, FILE_TYPE_VERIFY_JAR, "no verify archive: VERIFY accepts no JVM"},
    {Command::kLaunch, FILE_TYPE_LAUNCH_SCRIPT,
     "no launch script: LAUNCH does nothing, and the launcher ends with status -1"},
    {Command::kILaunch, FILE_TYPE_LAUNCH_SCRIPT,
     "no launch script: ILAUNCH does nothing, and the launcher ends with status -1"},
    {Command::kInstallJVM, FILE_TYPE_JVM_INSTALLER, "no JVM installer: INSTALL_JVM is an error"},
};

void checkNeeds(const Setup& setup, const std::set<Command>& commands, Findings& findings) {
  for (const NeedRow& row : kNeeds) {
    if (commands.count(row.command) != 0 && findFirst(setup, row.type) == nullptr) {
      findings.push_back(setup.label + ": " + row.text);
    }
  }
}

}  // namespace

std::vector<std::string> checkSetup(const Setup& setup) {
  Findings findings = setup.findings;
  checkNames(setup, findings);
  checkSecondScripts(setup, findings);
  const SetupFile* const script = findFirst(setup, FILE_TYPE_INSTRUCTIONS);
  if (script == nullptr) {
    findings.push_back(
        setup.label + ": no instruction script: the launcher says nothing and ends with status -1");
  }
  for (const SetupFile& file : setup.files) {
    if (file.tagFile != nullptr) {
      TagCheck(file, findings).run();
    }
  }
  if (script != nullptr && script->tagFile != nullptr) {
    checkNeeds(setup, checkScript(setup, *script, findings), findings);
  }
  return findings;
}

}  // namespace authoring
