#include "authoring/HintCheck.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "authoring/FileTypes.h"
#include "authoring/NearestName.h"
#include "authoring/TagFileCheck.h"
#include "authoring/TextPatterns.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr const char* kNeverFound = "no folder is called so";
constexpr const char* kNotExpanded = "it is taken as it stands";
constexpr const char* kNoFile = "no Java has such a file, so that none is accepted";

// The variables that name Javas.
struct VariableRow {
  std::string_view name;
};
constexpr VariableRow kHomeVariables[] = {{"JAVA_HOME"}, {"JDK_HOME"}, {"JRE_HOME"}};
// Folders of Javas that are none themselves.
constexpr std::string_view kFoldersOfHomes[] = {"/usr/lib/jvm", "/usr/lib64/jvm", "/usr/java",
                                                "/Library/Java/JavaVirtualMachines"};
// What absolute folders begin with, behind their slash.
constexpr std::string_view kRootFolders[] = {"usr/", "opt/", "Library/", "home/", "etc/", "var/"};

bool holds(std::string_view text, std::string_view bytes) {
  return text.find_first_of(bytes) != std::string_view::npos;
}

bool isWindowsPath(std::string_view text) {
  return holds(text, "\\") || (text.size() > 1 && text[1] == ':');
}

class HintCheck {
 public:
  HintCheck(const SetupFile& file, Findings& findings) : m_file(file), m_findings(findings) {}

  void run() {
    m_exe = std::string(m_file.tagFile->getTagValue(tagname::kJVMExe, 0).view());
    checkExe(m_exe);
    each(tagname::kPathHint, &HintCheck::checkPath);
    each(tagname::kPlatformHint, &HintCheck::checkVariable);
  }

 private:
  void each(const char* tag, void (HintCheck::*check)(const std::string&)) {
    m_tag = tag;
    const long count = countOwnValues(m_file, kJVMFileTags, tag);
    for (m_line = 0; m_line < count; ++m_line) {
      (this->*check)(
          std::string(m_file.tagFile->getTagValue(tag, static_cast<unsigned long>(m_line)).view()));
    }
  }

  void warn(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.warning(m_file.at(m_tag, m_line), std::string(m_tag) + ": " + what, why, advice);
  }

  // --- JVM_EXE ---

  void errorInExe(const std::string& what, const std::string& advice) {
    m_findings.error(m_file.at(tagname::kJVMExe, 0), std::string(tagname::kJVMExe) + ": " + what,
                     kNoFile, advice);
  }

  void checkExe(const std::string& exe) {
    if (exe.empty()) {
      return;
    }
    const std::string quoted = quotedText(exe);
    if (exe[0] == '/') {
      errorInExe(quoted + " is absolute, and the home of each Java is put in front of it",
                 "write the path below the home, such as bin/java");
    } else if (findTrailingComment(exe) != std::string::npos) {
      errorInExe(quoted + " holds a comment; values have none", "delete it");
    } else if (holds(exe, "~$*?#%@`\"'")) {
      errorInExe(quoted + " holds signs that nothing expands",
                 "write the path below the home, such as bin/java");
    } else if (isWindowsPath(exe)) {
      errorInExe(quoted + " is no path of Unix", "write slashes, such as bin/java");
    } else if (exe.back() == '/') {
      errorInExe(quoted + " is a folder", "write the program in it, such as bin/java");
    } else if (exe.find(" -") != std::string::npos) {
      errorInExe(quoted + " is more than the path of a program",
                 "write the path alone, and arguments as REQ_JAVA_ARGS");
    } else {
      checkExeName(exe);
    }
  }

  void checkExeName(const std::string& exe) {
    m_tag = tagname::kJVMExe;
    m_line = 0;
    if (exe.starts_with("./")) {
      warn(quotedText(exe) + " begins with ./", "folders of PATH and of a scan do not end with it",
           "write " + exe.substr(2));
    } else if (exe.find("//") != std::string::npos) {
      warn(quotedText(exe) + " holds two slashes together",
           "folders of PATH and of a scan do not end with it", "write one slash");
    } else if (exe.starts_with("JAVA_HOME/") || exe.starts_with("JVM_HOME/")) {
      warn(quotedText(exe) + " begins with the name of a variable",
           "the path is put behind the home of each Java",
           "write " + exe.substr(exe.find('/') + 1));
    } else if (isMisspeltJava(exe.substr(exe.rfind('/') + 1))) {
      warn(quotedText(exe) + " is not the java of a Java", "the verify class is not run by it",
           "write " + exe.substr(0, exe.rfind('/') + 1) + "java");
    } else if (exe.ends_with(".exe") || exe.ends_with("javaw")) {
      warn(quotedText(exe) + " is a program of Windows", "no Java on Unix has it",
           "write bin/java");
    }
  }

  static bool isMisspeltJava(const std::string& name) {
    static constexpr std::string_view kOthers[] = {"Java", "JAVA", "javac", "jar", "jre", "jdk"};
    return std::find(std::begin(kOthers), std::end(kOthers), name) != std::end(kOthers);
  }

  // --- PATH_HINT ---

  // "/opt/{jdk,jre}"
  static bool isInBraces(const std::string& hint) {
    const std::size_t open = hint.find('{');
    const std::size_t comma = hint.find(',', std::min(open, hint.size()));
    return comma != std::string::npos && hint.find('}', comma) != std::string::npos;
  }

  void checkPath(const std::string& hint) {
    const std::string quoted = quotedText(hint);
    const bool isComment = looksLikeAComment(hint) && !hint.starts_with("/");
    if (isComment) {
      return;  // TagFileCheck tells
    }
    if (hint.starts_with('~')) {
      warn(quoted + " begins with ~", std::string(kNotExpanded) + ": " + kNeverFound,
           "write the whole path, or name a variable in PLATFORM_HINT");
    } else if (holds(hint, "$`") || hint.find('%') != hint.rfind('%') ||
               hint.find('#') != hint.rfind('#') || hint.find('@') != hint.rfind('@')) {
      warn(quoted + " holds the name of a variable", std::string(kNotExpanded) + ": " + kNeverFound,
           "name the variable in PLATFORM_HINT");
    } else if (holds(hint, "*?") || isInBraces(hint)) {
      warn(quoted + " is a pattern", std::string(kNotExpanded) + ": " + kNeverFound,
           "write a line for each folder");
    } else if (isWindowsPath(hint)) {
      warn(quoted + " is no path of Unix", kNeverFound, "write slashes");
    } else {
      checkFolder(hint);
    }
  }

  void checkFolder(const std::string& hint) {
    const std::string quoted = quotedText(hint);
    const std::string exe = "/" + m_exe;
    const std::string folder = exe.substr(0, exe.rfind('/'));
    const std::string plain = hint.ends_with('/') ? hint.substr(0, hint.size() - 1) : hint;
    if (findTrailingComment(hint) != std::string::npos) {
      warn(quoted + " holds a comment", "it belongs to the name of the folder", "delete it");
    } else if (hint.size() > 1 && holds(hint.substr(0, 1), "'") && hint.back() == '\'') {
      warn(quoted + " has single quotes", "they belong to the name of the folder",
           "leave them out");
    } else if (hint.find(':') != std::string::npos || hint.find(";/") != std::string::npos) {
      warn(quoted + (holds(hint, ":") ? " holds a colon" : " holds a semicolon"),
           "it is one name and not a list", "write a line for each folder");
    } else if (!m_exe.empty() && plain.ends_with(exe)) {
      warn(quoted + " names the program", "JVM_EXE is put behind it once more",
           "write the home, " + plain.substr(0, plain.size() - exe.size()) + "/");
    } else if (!folder.empty() && plain.ends_with(folder)) {
      warn(quoted + " ends with the folder of JVM_EXE", "JVM_EXE is put behind it once more",
           "write the home, " + plain.substr(0, plain.size() - folder.size()) + "/");
    } else if (std::find(std::begin(kFoldersOfHomes), std::end(kFoldersOfHomes), plain) !=
               std::end(kFoldersOfHomes)) {
      warn(quoted + " is a folder of Javas and no home of one", "folders in it are not looked at",
           "write a line for each Java in it");
    } else {
      checkRelative(hint);
    }
  }

  void checkRelative(const std::string& hint) {
    for (const std::string_view root : kRootFolders) {
      if (hint.starts_with(root)) {
        warn(quotedText(hint) + " does not begin with a slash",
             "it is looked for in the folder of the launcher", "write /" + hint);
      }
    }
  }

  // --- PLATFORM_HINT ---

  void checkVariable(const std::string& name) {
    if (looksLikeAComment(name)) {
      return;  // TagFileCheck tells
    }
    if (name.find('/') != std::string::npos) {
      warn(quotedText(name) + " is a path", "names of environment variables are looked up here",
           "write it as PATH_HINT");
    } else if (!isVariableName(name)) {
      warn(quotedText(name) + " is no name of an environment variable", "nothing is found by it",
           "write one name in each line, such as JAVA_HOME, without signs around it");
    } else if (name == "PATH" && m_exe.find('/') != std::string::npos) {
      warn("PATH holds folders of programs and no homes", "they are looked at anyway, as such",
           "leave it out");
    } else {
      checkSpelling(name);
    }
  }

  void checkSpelling(const std::string& name) {
    const bool isKnown = std::any_of(std::begin(kHomeVariables), std::end(kHomeVariables),
                                     [&name](const VariableRow& row) { return row.name == name; });
    const bool namesAVersion = holds(name, "0123456789");  // such as JAVA17_HOME
    const std::string hint = didYouMean(name, kHomeVariables);
    if (!isKnown && !namesAVersion && !hint.empty()) {
      warn("hardly anybody sets " + quotedText(name), "nothing is found by it", hint);
    }
  }

  const SetupFile& m_file;
  Findings& m_findings;
  std::string m_exe;
  const char* m_tag = "";
  long m_line = 0;
};

}  // namespace

void checkHints(const SetupFile& file, Findings& findings) {
  HintCheck(file, findings).run();
}

}  // namespace authoring
