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

}  // namespace

bool takesAWord(std::string_view option) {
  return contains(kWithWord, option);
}

bool needsItsValue(std::string_view option) {
  return contains(kWithValue, option);
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
