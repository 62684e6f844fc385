#include "authoring/PropertyCheck.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "authoring/FileTypes.h"
#include "authoring/NearestName.h"
#include "authoring/TagFileCheck.h"
#include "authoring/TextPatterns.h"
#include "instructions/ScriptSyntax.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr const char* kNoJava = "no Java is accepted";
constexpr std::string_view kAnyEnd = "...";
constexpr std::string_view kSpecification = "java.specification.version";
constexpr std::string_view kVersion = "java.version";
constexpr std::string_view kArchitecture = "os.arch";
constexpr std::string_view kSystem = "os.name";
constexpr std::string_view kBits = "sun.arch.data.model";

// What every Java tells of itself.
struct PropertyRow {
  std::string_view name;
};
constexpr PropertyRow kKnownProperties[] = {
    {kSpecification},
    {kVersion},
    {kArchitecture},
    {"java.vendor"},
    {"java.vendor.version"},
    {"java.version.date"},
    {"java.home"},
    {"java.class.version"},
    {"java.runtime.name"},
    {"java.runtime.version"},
    {"java.specification.name"},
    {"java.specification.vendor"},
    {"java.vm.name"},
    {"java.vm.info"},
    {"java.vm.vendor"},
    {"java.vm.version"},
    {"java.vm.specification.name"},
    {"java.vm.specification.vendor"},
    {"java.vm.specification.version"},
    {kSystem},
    {"os.version"},
    {kBits},
    {"sun.boot.library.path"},
    {"sun.cpu.endian"},
    {"sun.management.compiler"},
};

bool isKnownProperty(std::string_view name) {
  return std::any_of(std::begin(kKnownProperties), std::end(kKnownProperties),
                     [name](const PropertyRow& row) { return row.name == name; });
}

// Texts that no Java on Unix uses. Capitals do not count in `written`.
struct WrongTextRow {
  std::string_view property;
  std::string_view written;
  const char* meant;
};
constexpr WrongTextRow kWrongTexts[] = {
    {kArchitecture, "x64", "amd64"},
    {kArchitecture, "x86-64", "amd64"},
    {kArchitecture, "arm64", "aarch64"},
    {kArchitecture, "armv8", "aarch64"},
    {kArchitecture, "64", "amd64"},
    {kArchitecture, "x86_32", "i386"},
    {kArchitecture, "x32", "i386"},
    {kArchitecture, "i686", "i386"},
    {kArchitecture, "amd64", "amd64"},
    {kArchitecture, "aarch64", "aarch64"},
    {kArchitecture, "x86_64", "x86_64"},
    {kSystem, "linux", "Linux"},
    {kSystem, "gnu/linux", "Linux"},
    {kSystem, "mac os x", "Mac OS X"},
    {kSystem, "macos", "Mac OS X"},
    {kSystem, "darwin", "Mac OS X"},
    {kSystem, "freebsd", "FreeBSD"},
    {kBits, "64bit", "64"},
    {kBits, "64-bit", "64"},
    {kBits, "amd64", "64"},
    {kBits, "32bit", "32"},
    {kBits, "32-bit", "32"},
};

bool isNamed(std::string_view text, std::string_view bytes) {
  return text.find_first_of(bytes) != std::string_view::npos;
}

bool isSameButCapitals(std::string_view text, std::string_view small) {
  const auto isSame = [](unsigned char a, unsigned char b) { return std::tolower(a) == b; };
  return std::equal(text.begin(), text.end(), small.begin(), small.end(), isSame);
}

// True when `text`, or a longer one if `isPrefix`, is numbered as the lines of Java are:
// 1.0 to 1.8, then 9 and on.
bool isSpecificationVersion(std::string_view text, bool isPrefix) {
  if (text.starts_with("1.")) {
    const std::string_view minor = text.substr(2);
    return minor.empty() ? isPrefix : minor.size() == 1 && minor[0] >= '0' && minor[0] <= '8';
  }
  if (text.empty()) {
    return isPrefix;
  }
  // "8..." is surely meant for Java 8; "2..." stands for 20 and on.
  const bool isNumber = isDigits(text) && text[0] != '0' && text.size() <= 3 && text != "8";
  return isNumber && (isPrefix || text.size() > 1 || text == "9");
}

// True when one text fulfils both; each may end with the three full stops.
bool canBothHold(std::string_view one, std::string_view other) {
  const bool isOneOpen = one.ends_with(kAnyEnd);
  const bool isOtherOpen = other.ends_with(kAnyEnd);
  one.remove_suffix(isOneOpen ? kAnyEnd.size() : 0);
  other.remove_suffix(isOtherOpen ? kAnyEnd.size() : 0);
  return one == other || (isOneOpen && other.starts_with(one)) ||
         (isOtherOpen && one.starts_with(other));
}

class PropertyCheck {
 public:
  PropertyCheck(const SetupFile& file, Findings& findings) : m_file(file), m_findings(findings) {}

  void run() {
    const long count = countOwnValues(m_file, kJVMFileTags, tagname::kJVMProperties);
    for (m_line = 0; m_line < count; ++m_line) {
      const SString text =
          m_file.tagFile->getTagValue(tagname::kJVMProperties, static_cast<unsigned long>(m_line));
      const auto property = splitAssignment(text.view());
      if (property && property->value.empty() && isKnownProperty(property->name.view())) {
        error("nothing is expected of " + std::string(property->name.view()),
              "Java says something there, and none is accepted", "write what it is to say, or ...");
      } else if (property) {
        checkLine(std::string(property->name.view()), std::string(property->value.view()));
      } else {
        warn(quotedText(text) + " has no equals sign", "it is ignored", "write name = value");
      }
    }
  }

 private:
  void error(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.error(m_file.at(tagname::kJVMProperties, m_line),
                     std::string(tagname::kJVMProperties) + ": " + what, why, advice);
  }
  void warn(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.warning(m_file.at(tagname::kJVMProperties, m_line),
                       std::string(tagname::kJVMProperties) + ": " + what, why, advice);
  }

  void checkLine(const std::string& name, const std::string& expected) {
    checkTwice(name, expected);
    if (checkName(name) && checkOperator(name, expected) && checkText(expected)) {
      checkKnown(name, expected);
    }
  }

  // Both lines must hold: they are no alternatives.
  void checkTwice(const std::string& name, const std::string& expected) {
    const auto [first, isNew] = m_seen.try_emplace(name, expected);
    if (!isNew && !canBothHold(first->second, expected)) {
      error(name + " is to be " + quotedText(first->second) + " and " + quotedText(expected),
            std::string("all lines must hold at once, so that ") + kNoJava,
            "write a jvm file for each");
    }
  }

  // False when the rest of the line need not be looked at.
  bool checkName(const std::string& name) {
    const bool isComparison = name.ends_with('>') || name.ends_with('<') || name.ends_with('!') ||
                              name.ends_with('~') || name.ends_with('^');
    if (isComparison) {
      reportComparison(quotedText(name.substr(name.size() - 1) + "="), name);
      return false;
    }
    if (looksLikeAComment(name)) {
      error(quotedText(name) + " is no comment; blocks have none",
            "its words go to the shell that runs the candidates", "delete the line");
      return false;
    }
    if (name.empty() || isNamed(name, " \t\"'`$&;|<>()*?[]{}#%@\\~!")) {
      error(quotedText(name) + " is no name of a property",
            "its bytes go to the shell that runs the candidates, and the answers no longer belong "
            "to the lines",
            "write one word such as " + std::string(kSpecification));
      return false;
    }
    return true;
  }

  void reportComparison(const std::string& sign, const std::string& name) {
    error("there is no comparison such as " + sign,
          name.find_first_of("<>") == std::string::npos
              ? std::string("the text is compared byte for byte, and ") + kNoJava
              : "the shell that runs the candidates takes the sign for a redirection",
          adviceForVersions());
  }

  static std::string adviceForVersions() {
    return "write the beginning and three full stops, such as 17..., or a jvm file for each "
           "version";
  }

  bool checkOperator(const std::string& name, const std::string& expected) {
    static constexpr std::string_view kSigns[] = {">=", "<=", ">", "<", "=", "~", "^", "!"};
    for (const std::string_view sign : kSigns) {
      if (expected.starts_with(sign)) {
        const std::string shown = sign[0] == '=' ? "==" : std::string(sign);
        error("there is no comparison such as " + quotedText(shown),
              std::string("the text is compared byte for byte, and ") + kNoJava,
              sign[0] == '=' ? "write a single = between " + name + " and the text"
                             : adviceForVersions());
        return false;
      }
    }
    return true;
  }

  // What is wrong in any text that is compared byte for byte.
  bool checkText(const std::string& expected) {
    const std::size_t comment = findTrailingComment(expected);
    if (comment != std::string::npos) {
      error(quotedText(std::string(withoutBlanks(expected.substr(comment)))) + " is no comment",
            std::string("it belongs to the text that is compared, and ") + kNoJava, "delete it");
      return false;
    }
    if (expected.size() > 1 && isNamed(expected.substr(0, 1), "\"'") &&
        expected.back() == expected[0]) {
      error("the quotes belong to the text that is compared", kNoJava, "leave them out");
      return false;
    }
    if (holdsName(expected)) {
      error("nothing is filled in here: " + quotedText(expected),
            std::string("the text is compared byte for byte, and ") + kNoJava,
            "write the text itself");
      return false;
    }
    if (isNamed(expected, "*|")) {
      error("there are no patterns such as " + quotedText(expected),
            std::string("the text is compared byte for byte, and ") + kNoJava,
            "write the beginning and three full stops, or a jvm file for each");
      return false;
    }
    return true;
  }

  // "$NAME", "@NAME@" or "#NAME#".
  static bool holdsName(const std::string& text) {
    const std::size_t dollar = text.find('$');
    const bool isVariable = dollar != std::string::npos && dollar + 1 < text.size() &&
                            (text[dollar + 1] == '{' || isVariableName(text.substr(dollar + 1, 1)));
    const std::string_view inner = text.size() > 2 ? std::string_view(text).substr(1) : "";
    const bool isMacro = isNamed(text.substr(0, 1), "@#%") &&
                         isVariableName(inner.substr(0, inner.find(text[0]))) &&
                         inner.find(text[0]) != inner.npos;
    return isVariable || isMacro;
  }

  void checkKnown(const std::string& name, const std::string& expected) {
    const bool isOpen = expected.ends_with(kAnyEnd);
    const std::string text =
        isOpen ? expected.substr(0, expected.size() - kAnyEnd.size()) : expected;
    if (name == kSpecification || name == "java.vm.specification.version") {
      checkSpecification(name, text, isOpen);
    } else if (name == kVersion) {
      checkVersion(text, isOpen);
    } else {
      checkSpelling(name);
      checkWrongText(name, text);
    }
  }

  void checkSpelling(const std::string& name) {
    const std::string hint = didYouMean(name, kKnownProperties);
    if (!isKnownProperty(name) && !hint.empty()) {
      warn("Java has no property " + quotedText(name) + " of its own",
           "the answer is empty, and no Java is accepted that expects something else", hint);
    }
  }

  // "17+", "8..17" and the like; false for what may be a version.
  bool isRange(std::string_view text) const {
    const auto fits = [](char byte) {
      return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
             (byte >= 'A' && byte <= 'Z') || byte == '.' || byte == '_' || byte == '-';
    };
    return !std::all_of(text.begin(), text.end(), fits) || text.find("..") != text.npos ||
           text.ends_with('.') || text.ends_with(".x");
  }

  bool checkRange(const std::string& text, bool isOpen) {
    const bool endsWithStop = isOpen && text.ends_with('.') && text.find("..") == text.npos;
    if (!isRange(endsWithStop ? text.substr(0, text.size() - 1) : text)) {
      return true;
    }
    error("there are no ranges such as " + quotedText(text + std::string(isOpen ? kAnyEnd : "")),
          std::string("the text is compared byte for byte, and ") + kNoJava, adviceForVersions());
    return false;
  }

  void checkSpecification(const std::string& name, const std::string& text, bool isOpen) {
    if (!checkRange(text, isOpen) || isSpecificationVersion(text, isOpen)) {
      return;
    }
    const bool isOld = text.size() == 1 && text[0] >= '1' && text[0] <= '8';
    error("no Java says " + quotedText(text) + " for " + name,
          "it is 1.8 and less up to Java 8, and a whole number from Java 9 on",
          isOld ? "write 1." + text : "write 17, 21 and the like");
  }

  void checkVersion(const std::string& text, bool isOpen) {
    if (!checkRange(text, isOpen) || text.empty()) {
      return;
    }
    const bool isOld = isDigits(text) && text.size() == 1 && text[0] <= '8' &&
                       !isSpecificationVersion(text, isOpen);
    if (isOld || text.starts_with("8u")) {
      error("no Java says " + quotedText(text) + " for " + std::string(kVersion),
            "it begins with 1. up to Java 8", "write 1." + text.substr(0, 1) + kAnyEnd.data());
    } else if (!isOpen && (isDigits(text) || (text.starts_with("1.") && text.size() == 3))) {
      warn(std::string(kVersion) + " is to be " + quotedText(text) + " and nothing more",
           "a Java with updates, such as " + text + (isDigits(text) ? ".0.2" : ".0_442") +
               ", is not accepted",
           "write " + text + kAnyEnd.data() + ", or ask for " + std::string(kSpecification));
    }
  }

  void checkWrongText(const std::string& name, const std::string& text) {
    for (const WrongTextRow& row : kWrongTexts) {
      if (row.property == name && isSameButCapitals(text, row.written) && text != row.meant) {
        error("no Java on Unix says " + quotedText(text) + " for " + name, kNoJava,
              std::string("write ") + row.meant);
        return;
      }
    }
  }

  const SetupFile& m_file;
  Findings& m_findings;
  long m_line = 0;
  std::map<std::string, std::string> m_seen;  // what is expected of each name
};

}  // namespace

void checkProperties(const SetupFile& file, Findings& findings) {
  PropertyCheck(file, findings).run();
}

}  // namespace authoring
