#include "authoring/JavaPlaces.h"

#include <algorithm>

namespace authoring {
namespace {

constexpr int kNewestKnown = 26;
constexpr const char* kVersionMark = "{}";

// Version managers set JAVA_HOME in the user's shell: sdkman, mise, jenv and asdf (the last two by
// a plug-in of theirs).
constexpr const char* kVariables[] = {"JAVA_HOME", "JDK_HOME", "JRE_HOME", "GRAALVM_HOME"};

constexpr const char* kHomes[] = {
    "jre",
    "/usr/lib/jvm/default-java",
    "/usr/lib/jvm/default-runtime",
    "/usr/lib/jvm/default",
    "/usr/lib/jvm/default-jvm",
    "/usr/lib/jvm/jre",
    "/etc/java-config-2/current-system-vm",
    "/usr/local/openjdk",
    "/opt/java/openjdk",
    "/opt/jdk",
    "/opt/java",
    "/usr/local/sdkman/candidates/java/current",
    "/opt/sdkman/candidates/java/current",
    "/usr/local/share/mise/installs/java/latest",
    "/snap/openjdk/current/jdk",
    "/opt/idea/jbr",
    "/opt/intellij-idea/jbr",
    "/snap/intellij-idea-community/current/jbr",
    "/opt/android-studio/jbr",
    "/home/linuxbrew/.linuxbrew/opt/openjdk/libexec",
    "/opt/homebrew/opt/openjdk/libexec/openjdk.jdk/Contents/Home",
    "/usr/local/opt/openjdk/libexec/openjdk.jdk/Contents/Home",
    "/Library/Internet Plug-Ins/JavaAppletPlugin.plugin/Contents/Home",
    "/Applications/IntelliJ IDEA.app/Contents/jbr/Contents/Home",
    "/Applications/Android Studio.app/Contents/jbr/Contents/Home",
};

constexpr const char* kHomesOfVersion[] = {
    "/usr/lib/jvm/java-{}-openjdk-amd64",
    "/usr/lib/jvm/java-{}-openjdk-arm64",
    "/usr/lib/jvm/java-{}-openjdk",
    "/usr/lib/jvm/jre-{}-openjdk",
    "/usr/lib/jvm/temurin-{}-jre-amd64",
    "/usr/lib/jvm/temurin-{}-jdk-amd64",
    "/usr/lib/jvm/temurin-{}-jre-arm64",
    "/usr/lib/jvm/temurin-{}-jdk-arm64",
    "/usr/lib/jvm/temurin-{}-jdk",
    "/usr/lib/jvm/zulu{}",
    "/usr/lib/jvm/zulu-{}",
    "/usr/lib/jvm/java-{}-amazon-corretto",
    "/usr/lib/jvm/bellsoft-java{}-amd64",
    "/usr/lib/jvm/msopenjdk-{}-amd64",
    "/usr/lib/jvm/jdk-{}-oracle-x64",
    "/usr/lib64/jvm/java-{}-openjdk",
    "/opt/openjdk-bin-{}",
    "/usr/lib/jvm/openjdk{}",
    "/usr/local/openjdk{}",
    "/usr/local/share/mise/installs/java/{}",
    "/home/linuxbrew/.linuxbrew/opt/openjdk@{}/libexec",
    "/opt/homebrew/opt/openjdk@{}/libexec/openjdk.jdk/Contents/Home",
    "/usr/local/opt/openjdk@{}/libexec/openjdk.jdk/Contents/Home",
    "/Library/Java/JavaVirtualMachines/temurin-{}.jre/Contents/Home",
    "/Library/Java/JavaVirtualMachines/temurin-{}.jdk/Contents/Home",
    "/Library/Java/JavaVirtualMachines/zulu-{}.jdk/Contents/Home",
    "/Library/Java/JavaVirtualMachines/amazon-corretto-{}.jdk/Contents/Home",
    "/Library/Java/JavaVirtualMachines/microsoft-{}.jdk/Contents/Home",
    "/Library/Java/JavaVirtualMachines/jdk-{}.jdk/Contents/Home",
};

// Java 8 has a second name in some places.
constexpr const char* kHomesOf8[] = {
    "/usr/lib/jvm/java-1.8.0-openjdk",
    "/usr/lib/jvm/jre-1.8.0-openjdk",
    "/usr/lib64/jvm/jre-1.8.0-openjdk",
    "/usr/lib/jvm/java-1.8.0-amazon-corretto",
};

std::string withVersion(std::string place, int version) {
  return place.replace(place.find(kVersionMark), 2, std::to_string(version));
}

}  // namespace

std::vector<std::string> javaVariables() {
  return {std::begin(kVariables), std::end(kVariables)};
}

std::vector<std::string> javaHomes(const JavaRange& range) {
  std::vector<std::string> homes(std::begin(kHomes), std::end(kHomes));
  const JavaRange known = {range.first,
                           range.isOpen() ? std::max(kNewestKnown, range.first) : range.last};
  for (const int version : known.versions()) {
    for (const char* const place : kHomesOfVersion) {
      homes.push_back(withVersion(place, version));
    }
    if (version == 8) {
      homes.insert(homes.end(), std::begin(kHomesOf8), std::end(kHomesOf8));
    }
  }
  return homes;
}

}  // namespace authoring
