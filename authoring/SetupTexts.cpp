#include "authoring/SetupTexts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "authoring/AuthoringError.h"
#include "authoring/JavaPlaces.h"
#include "authoring/SafeText.h"
#include "tagfile/TagNames.h"

namespace authoring {
namespace {

// The status of a setup that found no Java: "a service is unavailable" in sysexits.h.
constexpr int kStatusNoJava = 69;

constexpr const char* kInstructions = R"(INSTRUCTIONS:
  // A label cannot stand on the first line, and a label's line holds nothing but the label.
  INITIALIZE_UI
  // Show the search, and show the text of jvm-message.tag when it finds nothing.
  FIND_JVM 1 1
  // N1 is now 1 or 0, S2 the description of the Java that was found.
  JMP0 @N1@ no-java
  LAUNCH @S2@ 1
  GOTO end
:no-java
  // Run the launch script with the jvm file of the number 69, no-java.tag: it ends with status 69.
  ILAUNCH 69 0
:end
/:
)";

// A function that takes the whole command as its arguments, so that it sees the user's -silent. A
// user at a terminal has read jvm-message.tag there.
constexpr const char* kNoJavaBegin =
    "DESC: no Java\n\nNO_JAVA: \"no_java() { case \"\" $* \"\" in *\"\" -silent \"\"*) exit 69;; "
    "esac; (: </dev/tty) 2>/dev/null && exit 69; [ -n \"\"$DISPLAY$WAYLAND_DISPLAY\"\" ] || exit "
    "69; text='";
constexpr const char* kNoJavaEnd =
    "'; if command -v zenity; then zenity --error --timeout=600 --text=\"\"$text\"\"; elif command "
    "-v kdialog; then timeout 600 kdialog --error \"\"$text\"\"; elif command -v xmessage; then "
    "xmessage -center -timeout 600 \"\"$text\"\"; fi >/dev/null 2>&1; exit 69; }; no_java \"\n";

std::string needOf(const SetupPlan& plan) {
  return (plan.needs64Bit ? "a 64-bit " : "") + plan.java.inWords();
}

std::string adviceOf() {
  return "Install one (on Debian and Ubuntu: apt install default-jre), or run the setup again with "
         "-cv:javahome and the folder of the Java that it is to use.";
}

std::string inTagQuotes(const std::string& value) {
  std::string quoted = "\"";
  for (const char c : value) {
    quoted += c == '"' ? "\"\"" : std::string(1, c);
  }
  return quoted + "\"";
}

// As it must stand behind a tag's colon.
std::string asTagValue(const std::string& value) {
  const bool isPlain = value.front() != '"' && value.front() != ' ' && value.back() != ' ';
  return isPlain ? value : inTagQuotes(value);
}

// Titles are ASCII, with \uXXXX for all else, and for a backslash. `title` is UTF-8.
std::string escapedTitle(const std::string& title) {
  std::string escaped;
  for (std::string_view rest = title; !rest.empty();) {
    const Letter letter = readLetter(rest);
    if (letter.code < 0x80 && letter.code != '\\') {
      escaped += rest.substr(0, letter.bytes);
    } else {
      std::array<char, 16> code{};
      std::snprintf(code.data(), code.size(), "\\u%04x", letter.code);
      escaped += code.data();
    }
    rest.remove_prefix(std::max<std::size_t>(letter.bytes, 1));
  }
  return escaped;
}

std::string launchScript(const SetupPlan& plan) {
  // A nested class has a $ in its name, which the shell must not read.
  const bool isNested = plan.mainClass.find('$') != std::string::npos;
  const std::string mainClass = isNested ? "'" + plan.mainClass + "'" : plan.mainClass;
  return "DESC: " + asTagValue(escapedTitle(plan.title)) +
         "\n\nAUTO_SET_WORKING_DIR: 0\n\n"
         "COMMAND: @NO_JAVA@exec \"@JVM_HOME@/@JVM_EXE@\" "
         "%IF_EXISTS%(\"VERIFY_ARGS\",\"@\")%CP%() %RUNTIME_SYSTEMPROP%() %RUNTIME_JAVAARGS%() " +
         mainClass + "\n";
}

std::string block(const char* name, const std::vector<std::string>& lines) {
  std::string text = std::string(name) + ":\n";
  for (const std::string& line : lines) {
    text += "  " + line + "\n";
  }
  return text + "/:\n\n";
}

// `version` is what java.specification.version must be.
std::string jvmFile(const SetupPlan& plan, const JavaRange& range, const std::string& version) {
  std::vector<std::string> properties = {"java.specification.version = " + version};
  if (plan.needs64Bit) {
    properties.emplace_back("sun.arch.data.model = 64");
  }
  return "DESC: " + range.inWords() + "\n\nJVM_EXE: bin/java\n\n" +
         block(tagname::kJVMProperties, properties) +
         block(tagname::kPlatformHint, javaVariables()) +
         block(tagname::kPathHint, javaHomes(range)) +
         "VERIFY_ARGS: \"-Xint \"\n"
         "CLASSPATH: \"@VERIFY_ARGS@-cp \"\n"
         "CLASSPATH_SEPARATOR: \":\"\n"
         "SYSTEM: -D\n"
         "SYSTEM_SEPARATOR: \"=\"\n";
}

// The verify class alone refuses what is older than an open range.
std::vector<NamedText> jvmFiles(const SetupPlan& plan) {
  if (plan.java.isOpen()) {
    return {{"java.tag", jvmFile(plan, plan.java, "...")}};
  }
  std::vector<NamedText> files;
  for (const int version : plan.java.versions()) {
    files.push_back({"java" + std::to_string(version) + ".tag",
                     jvmFile(plan, {version, version}, specificationVersion(version))});
  }
  return files;
}

std::string manifestLine(const char* type, const std::string& path, const std::string& more = "") {
  return "\n    { \"type\": \"" + std::string(type) + "\", " + more +
         "\"path\": " + nlohmann::json(path).dump() + " }";
}

std::string manifest(const SetupPlan& plan, const std::vector<NamedText>& jvms) {
  std::string text = "{\n  \"purpose\": 0,\n  \"files\": [" +
                     manifestLine("instructions", "instructions.tag") + "," +
                     manifestLine("launchscript", "launch-script.tag") + "," +
                     manifestLine("jvm-message", "jvm-message.tag");
  for (const NamedText& jvm : jvms) {
    text += "," + manifestLine("jvm", jvm.name);
  }
  text += "," +
          manifestLine("jvm", "no-java.tag", "\"id\": " + std::to_string(kStatusNoJava) + ", ") +
          "," + manifestLine("verify", kVerifyName);
  for (const std::string& jar : plan.jars) {
    text += "," + manifestLine("jar", jar);
  }
  return text + "\n  ]\n}\n";
}

}  // namespace

void checkTitle(const std::string& title) {
  for (std::string_view rest = title; !rest.empty();) {
    const auto [character, bytes] = readLetter(rest);
    if (bytes == 0 || character > 0xFFFF) {
      throw AuthoringError("the title holds letters that a launcher cannot show; write others");
    }
    if (character < ' ' || (character >= 0x7F && character < 0xA0)) {
      throw AuthoringError("the title holds a control character; write it on one line");
    }
    rest.remove_prefix(bytes);
  }
  if (title.find_first_not_of(' ') == std::string::npos) {
    throw AuthoringError("the title is empty; write what users are to read");
  }
}

std::vector<NamedText> setupTexts(const SetupPlan& plan) {
  const std::vector<NamedText> jvms = jvmFiles(plan);
  const std::string advice = adviceOf();
  std::vector<NamedText> texts = {
      {"manifest.json", manifest(plan, jvms)},
      {"instructions.tag", kInstructions},
      {"launch-script.tag", launchScript(plan)},
      {"jvm-message.tag",
       "MESSAGE: " +
           asTagValue(plan.title + " needs " + needOf(plan) + ", and found none. " + advice) +
           "\n"},
      {"no-java.tag", kNoJavaBegin + ("This setup needs " + needOf(plan) + ", and found none. ") +
                          advice + kNoJavaEnd}};
  texts.insert(texts.end(), jvms.begin(), jvms.end());
  return texts;
}

}  // namespace authoring
