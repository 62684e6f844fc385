#include "authoring/SetupCheck.h"

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_set>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "authoring/JVMFileCheck.h"
#include "authoring/ManifestCheck.h"
#include "authoring/NearestName.h"
#include "authoring/PayloadCheck.h"
#include "authoring/ScriptCheck.h"
#include "authoring/TagFileCheck.h"
#include "authoring/TemplateCheck.h"
#include "authoring/TextCheck.h"
#include "authoring/TextPatterns.h"
#include "launchscript/LaunchScriptGrammar.h"
#include "tagfile/Quotes.h"
#include "tagfile/TagNames.h"
#include "tagfile/TagTables.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

using Names = std::vector<SString>;

// --- The tags of one file ---

// What stands between two signs of a kind somewhere in the texts of a setup: names of tags of the
// author's own, among other things.
class ReferredNames {
 public:
  explicit ReferredNames(const Setup& setup) {
    for (const SetupFile& file : setup.files) {
      for (const SString& tag : file.tagFile == nullptr ? Names() : file.tagFile->getNames()) {
        for (long i = 0; i < file.tagFile->getTagValueCount(tag.c_str()); ++i) {
          const SString text =
              file.tagFile->getTagValue(tag.c_str(), static_cast<unsigned long>(i));
          add(text.view(), kTagMark);
          add(text.view(), kQuote);
        }
      }
    }
  }
  bool contain(const std::string& name) const { return m_names.count(name) != 0; }

 private:
  void add(std::string_view text, char sign) {
    std::size_t begin = text.find(sign);
    while (begin != text.npos) {
      const std::size_t end = text.find(sign, begin + 1);
      if (end != text.npos) {
        m_names.emplace(text.substr(begin + 1, end - begin - 1));
      }
      begin = end;
    }
  }

  std::unordered_set<std::string> m_names;
};

// What the checks of single tags ask about the whole setup.
struct Surroundings {
  explicit Surroundings(const Setup& setup) : referredNames(setup), statusFiles(setup) {}

  const ReferredNames referredNames;
  const StatusFiles statusFiles;
};

class TagCheck {
 public:
  TagCheck(const Surroundings& surroundings, const SetupFile& file, Findings& findings)
      : m_surroundings(surroundings), m_file(file), m_findings(findings) {}

  void run() {
    switch (m_file.type) {
      case FILE_TYPE_INSTRUCTIONS:
        needOrFail(tagname::kInstructions, "the launcher does nothing and ends with status 0");
        break;
      case FILE_TYPE_JVM:
        if (!m_surroundings.statusFiles.contain(m_file)) {
          needOrFail(tagname::kJVMExe, "no JVM is ever accepted");
          need(tagname::kJVMProperties, "hints are not looked at and VERIFY accepts no JVM");
        }
        break;
      case FILE_TYPE_LAUNCH_SCRIPT:
        needOrFail(tagname::kCommand, "there is nothing to run");
        break;
      case FILE_TYPE_JVM_MESSAGE:
        need(tagname::kMessage, "an empty line is shown when no JVM is found");
        break;
      default:
        break;
    }
    checkTags(tagsOf(m_file.type));
  }

 private:
  void warn(const char* tag, long index, const std::string& what, const std::string& why,
            const std::string& advice) {
    m_findings.warning(m_file.at(tag, index), tag + (": " + what), why, advice);
  }
  SString value(const char* tag) const { return m_file.tagFile->getTagValue(tag, 0); }

  void needOrFail(const char* tag, const char* consequence) {
    if (value(tag).empty()) {
      m_findings.error(m_file.at(), std::string(tag) + " is missing", consequence, "");
    }
  }

  void need(const char* tag, const char* consequence) {
    if (value(tag).empty()) {
      m_findings.warning(m_file.at(), std::string(tag) + " is missing", consequence, "");
    }
  }

  void checkTags(TagTable table) {
    for (const TagRow& row : table) {
      checkCount(row);
      checkValue(row);
    }
    for (const SString& name : m_file.tagFile->getNames()) {
      if (findTag(table, name) == nullptr) {
        checkUnknown(std::string(name.view()), table);
      }
    }
  }

  void checkCount(const TagRow& row) {
    const bool isList = row.values != TagValues::kFirst;
    if (!isList && countOwnValues(m_file, tagsOf(m_file.type), row.name) > 1) {
      m_findings.warning(m_file.at(row.name, 1), std::string(row.name) + " has several lines",
                         "the first alone counts", "write one line");
    }
  }

  void checkValue(const TagRow& row) {
    switch (row.kind) {
      case TagKind::kShownText:
        return needAscii(row.name);
      case TagKind::kFlag:
        return needNumber(row.name);
      case TagKind::kOne:
        return needOne(row.name);
      case TagKind::kTemplate:
        return checkTemplate(m_file, row.name, m_findings);
      default:
        return;
    }
  }

  // Authors may add tags to jvm files, for commands and for programs that read the written copy;
  // so only those are reported there that look like a misspelt or misplaced one.
  void checkUnknown(const std::string& name, TagTable table) {
    if (m_surroundings.referredNames.contain(name)) {
      return;
    }
    std::string hint = didYouMean(name, table);
    if (hint.empty()) {
      hint = ownerOf(name);
    }
    const bool isOwn = m_file.type == FILE_TYPE_JVM || !looksLikeATag(name) || isRemark(name);
    if (!hint.empty() || !isOwn) {
      m_findings.warning(m_file.at(name), name + " is no tag that the launcher knows here",
                         "nothing reads it", hint);
    }
  }

  // "it belongs into ...", for a tag of another type of file.
  static std::string ownerOf(const std::string& name) {
    for (const std::int32_t type :
         {FILE_TYPE_INSTRUCTIONS, FILE_TYPE_LAUNCH_SCRIPT, FILE_TYPE_JVM, FILE_TYPE_JVM_MESSAGE}) {
      if (findTag(tagsOf(type), name) != nullptr) {
        return "it belongs into a file of the type " + std::string(fileTypeName(type));
      }
    }
    return "";
  }

  // Since tag files have no comments.
  static bool isRemark(const std::string& name) {
    const std::string_view beginnings[] = {"COMMENT", "NOTE", "REMARK"};
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [&name](std::string_view text) { return name.starts_with(text); });
  }

  void needAscii(const char* tag) {
    const SString text = value(tag);
    const auto isPlain = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    if (!std::all_of(text.view().begin(), text.view().end(), isPlain)) {
      m_findings.warning(m_file.at(tag, 0), std::string(tag) + " holds letters beyond ASCII",
                         "they are shown wrongly",
                         "write each as \\u and its four hexadecimal digits");
    }
  }

  void needNumber(const char* tag) {
    std::int16_t number;
    const SString text = value(tag);
    if (!text.empty() && !convertToShort(text, number)) {
      warn(tag, 0, quotedText(text.c_str()) + " is no number", "it counts as not given",
           "write 1 or 0");
    }
  }

  void needOne(const char* tag) {
    const SString text = value(tag);
    if (!text.empty() && text != "1" && text != "0") {
      warn(tag, 0, quotedText(text.c_str()) + " is neither 1 nor 0", "it counts as 0",
           "write 1 or 0");
    }
  }

  const Surroundings& m_surroundings;
  const SetupFile& m_file;
  Findings& m_findings;
};

// --- The setup as a whole ---

struct NeedRow {
  Command command;    // of the script
  std::int32_t type;  // of a file without which it fails
  const char* what;
  const char* why;
};

const NeedRow kNeeds[] = {
    {Command::kFindJVM, FILE_TYPE_JVM, "no jvm file", "FIND_JVM finds nothing"},
    {Command::kFindJVM, FILE_TYPE_VERIFY_JAR, "no verify archive", "FIND_JVM accepts no JVM"},
    {Command::kVerify, FILE_TYPE_VERIFY_JAR, "no verify archive", "VERIFY accepts no JVM"},
    {Command::kLaunch, FILE_TYPE_LAUNCH_SCRIPT, "no launch script",
     "LAUNCH does nothing, and the launcher ends with status -1"},
    {Command::kILaunch, FILE_TYPE_LAUNCH_SCRIPT, "no launch script",
     "ILAUNCH does nothing, and the launcher ends with status -1"},
    {Command::kInstallJVM, FILE_TYPE_JVM_INSTALLER, "no JVM installer", "INSTALL_JVM is an error"},
};

// A file whose type is misspelt may be the one.
bool lacksType(const Setup& setup, std::int32_t type) {
  return setup.findType(type) == nullptr && setup.findType(kUnknownType) == nullptr;
}

void checkNeeds(const Setup& setup, const std::set<Command>& commands, Findings& findings) {
  for (const NeedRow& row : kNeeds) {
    if (commands.count(row.command) != 0 && lacksType(setup, row.type)) {
      findings.error({setup.label, 0}, row.what, row.why,
                     "add a file of the type " + std::string(fileTypeName(row.type)));
    }
  }
}

// The commands of the instruction script; nothing when it has errors, since one may be a command.
std::optional<std::set<Command>> checkInstructions(const Setup& setup, Findings& findings) {
  const SetupFile* const script = setup.findType(FILE_TYPE_INSTRUCTIONS);
  if (lacksType(setup, FILE_TYPE_INSTRUCTIONS)) {
    findings.error({setup.label, 0}, "no instruction script",
                   "the launcher says nothing and ends with status -1",
                   "add a file of the type instructions");
  }
  if (script == nullptr || script->tagFile == nullptr) {
    return std::nullopt;
  }
  Findings ofScript;
  const std::set<Command> commands = checkScript(setup, *script, ofScript);
  findings.add(ofScript);
  checkNeeds(setup, commands, findings);
  return ofScript.hasErrors() ? std::nullopt : std::optional(commands);
}

std::vector<std::string> labelsOf(const Setup& setup) {
  std::vector<std::string> labels = {setup.label};
  for (const SetupFile& file : setup.files) {
    labels.push_back(file.label);
  }
  return labels;
}

}  // namespace

Findings checkSetup(const Setup& setup) {
  Findings findings = setup.findings;
  if (!setup.isRead) {
    return findings;
  }
  checkManifest(setup, checkInstructions(setup, findings), findings);
  checkPayloads(setup, findings);
  const Surroundings surroundings(setup);
  for (const SetupFile& file : setup.files) {
    if (file.tagFile != nullptr) {
      TagCheck(surroundings, file, findings).run();
    }
  }
  checkTexts(setup, findings);
  findings.sort(labelsOf(setup));
  return findings;
}

}  // namespace authoring
