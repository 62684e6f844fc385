// Any text as a command string; and arguments in quotes come out as they went in.
#include <algorithm>
#include <vector>

#include "fuzz/Fuzzing.h"
#include "launcher/CmdLine.h"

namespace {

void checkAnyLine(std::string_view text) {
  CmdLine line;
  line.parse(SString(text));
  std::size_t total = 0;
  for (int i = 0; i < line.getOptionCount(); ++i) {
    total += std::string_view(line.getOption(i)).size();
  }
  fuzz::require(total <= text.size());
  fuzz::require(line.getOption(line.getOptionCount()) == nullptr);
}

// Backslashes are left out: those in front of a quote cannot be kept.
std::string quoted(std::string_view argument) {
  std::string result = "\"";
  for (const char byte : argument) {
    result += byte == '"' ? "\\\"" : std::string(byte == '\\' ? 0 : 1, byte);
  }
  return result + '"';
}

void checkArguments(const std::vector<std::string>& arguments) {
  std::string text = "program";
  for (const std::string& argument : arguments) {
    text += ' ' + quoted(argument);
  }
  CmdLine line;
  line.parse(SString(std::string_view(text)));
  int index = 1;
  for (std::string argument : arguments) {
    std::erase(argument, '\\');
    fuzz::require(argument.empty() || argument == line.getOption(index++));
  }
  fuzz::require(index == line.getOptionCount());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::toText(data, size);
  checkAnyLine(text);
  std::vector<std::string> arguments(1);
  for (const char byte : text) {
    if (byte == '\0') {
      arguments.emplace_back();
    } else {
      arguments.back() += byte;
    }
  }
  checkArguments(arguments);
  return 0;
}
