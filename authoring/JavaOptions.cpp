#include "authoring/JavaOptions.h"

#include <algorithm>
#include <iterator>

namespace authoring {
namespace {

constexpr std::string_view kWithWord[] = {
    "--add-modules",
    "--add-opens",
    "--add-exports",
    "--add-reads",
    "--limit-modules",
    "--enable-native-access",
    "--upgrade-module-path",
    "--patch-module",
    "--source",
    "-p",
    "--module-path",
};
constexpr std::string_view kWithValue[] = {"-D", "-Xmx", "-Xms", "-Xss"};
constexpr std::string_view kWithSize[] = {"-Xmx", "-Xms", "-Xss", "-Xmn"};
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
constexpr std::string_view kUnits = "kKmMgGtT";
constexpr std::string_view kForTheMachine[] = {"-Xmx", "-Xms", "-Xss", "-XX:"};
constexpr std::string_view kForClasspath[] = {"-cp", "-classpath", "--class-path"};
constexpr std::string_view kForJarOrModule[] = {"-jar", "-m", "--module"};
constexpr std::string_view kForNothing[] = {
    "-version",
    "--version",
    "-fullversion",
    "--full-version",
    "-help",
    "--help",
    "-h",
    "-?",
    "-X",
    "--help-extra",
    "--list-modules",
    "-d",
    "--describe-module",
    "--validate-modules",
    "--dry-run",
};

template <class Options>
bool contains(const Options& options, std::string_view option) {
  return std::find(std::begin(options), std::end(options), option) != std::end(options);
}

// No macro, variable or pattern is in it.
bool isFixed(std::string_view option) {
  return std::all_of(option.begin(), option.end(), [](char byte) {
    return byte > ' ' && std::string_view("@#$`*?%\\\"'").find(byte) == std::string_view::npos;
  });
}

// A number, also in hexadecimal digits behind 0x, and a unit.
bool isSize(std::string_view text) {
  if (kUnits.find(text.back()) != std::string_view::npos) {
    text.remove_suffix(1);
  }
  const bool isHex = text.starts_with("0x") || text.starts_with("0X");
  text.remove_prefix(isHex ? 2 : 0);
  return !text.empty() &&
         text.find_first_not_of(isHex ? kHexDigits : kDigits) == std::string_view::npos;
}

}  // namespace

bool takesAWord(std::string_view option) {
  return contains(kWithWord, option);
}

bool needsItsValue(std::string_view option) {
  return contains(kWithValue, option);
}

bool hasBadSize(std::string_view option) {
  const bool hasSize =
      option.size() > 4 && contains(kWithSize, option.substr(0, 4));  // all are of 4 letters
  return hasSize && isFixed(option) && !isSize(option.substr(4));
}

bool isClasspathOption(std::string_view option) {
  return contains(kForClasspath, option);
}

bool startsAJarOrModule(std::string_view option) {
  return contains(kForJarOrModule, option) || option.starts_with("--module=");
}

bool isForTheMachine(std::string_view option) {
  const auto begins = [option](std::string_view text) { return option.starts_with(text); };
  return std::any_of(std::begin(kForTheMachine), std::end(kForTheMachine), begins);
}

bool startsNothing(std::string_view option) {
  return contains(kForNothing, option);
}

}  // namespace authoring
