#include "authoring/JavaOptions.h"

#include <algorithm>
#include <iterator>

#include "authoring/TextPatterns.h"

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
// A size belongs into the same word. Other Javas have longer options that begin so: -Xmso256k.
constexpr std::string_view kWithSize[] = {"-Xmx", "-Xms", "-Xss", "-Xmn"};
constexpr std::string_view kUnits = "kKmMgGtT";
// What a word holds that is filled in later, or that a shell has still to read; a zero byte ends a
// value, which has a finding of its own.
constexpr std::string_view kOpen("@#$`*?%\\\"'\0", 11);
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

// A number, in hexadecimal digits behind 0x, and a unit.
bool isSize(std::string_view text) {
  const bool hasUnit = !text.empty() && kUnits.find(text.back()) != std::string_view::npos;
  text.remove_suffix(hasUnit ? 1 : 0);
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  return isHexadecimal ? isHex(text.substr(2)) : isDigits(text);
}

// What stands behind the option's name; empty for another option.
std::string_view sizeIn(std::string_view option) {
  for (const std::string_view name : kWithSize) {
    if (option.starts_with(name)) {
      return option.substr(name.size());
    }
  }
  return {};
}

}  // namespace

bool takesAWord(std::string_view option) {
  return contains(kWithWord, option);
}

bool needsItsValue(std::string_view option) {
  return option == "-D" || contains(kWithSize, option);
}

bool hasBadSize(std::string_view option) {
  const std::string_view size = sizeIn(option);
  const bool isMeant = isDigits(size.substr(0, 1)) && size.find_first_of(kOpen) == size.npos;
  return isMeant && !isSize(size);
}

bool isClasspathOption(std::string_view option) {
  return contains(kForClasspath, option);
}

bool startsAJarOrModule(std::string_view option) {
  return contains(kForJarOrModule, option) || option.starts_with("--module=");
}

bool isForTheMachine(std::string_view option) {
  const auto begins = [option](std::string_view text) { return option.starts_with(text); };
  return begins("-XX:") || std::any_of(std::begin(kWithSize), std::end(kWithSize), begins);
}

bool startsNothing(std::string_view option) {
  return contains(kForNothing, option);
}

}  // namespace authoring
