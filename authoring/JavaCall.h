// JavaCall: how the command of a launch script starts Java.
#ifndef CORVANE_AUTHORING_JAVACALL_H
#define CORVANE_AUTHORING_JAVACALL_H

#include <optional>
#include <string>

#include "util/SString.h"

namespace authoring {

struct JavaCall {
  bool isCertain = true;  // false: another program, such as test, may be what gets Java's name
  bool isLast = true;     // false: the command goes on, by a sign such as ; or |
  std::string optionWithBadSize;  // the first one that Java refuses, as -Xmx512MB
  // What follows is known only when isReadable is true: no word can be anything.
  bool isReadable = true;
  bool needsClass = true;           // false: -jar, a module, -version, or Java alone
  std::string className;            // as it is written; empty: none
  bool hasJars = false;             // %CP%() stands in front of the class
  bool hasJarsBehindClass = false;  // %CP%() stands behind it
  std::string optionBehindClass;    // one such as -Xmx1g, which only Java knows
  bool hasOwnClasspath = false;     // -cp or another name of it stands in front of the class
  std::string optionApart;          // an option whose value stands behind a blank, as "-Xmx 1g"
};

// Nothing when the command starts no Java or cannot be read.
[[nodiscard]] std::optional<JavaCall> findJavaCall(const SString& command);

// The class that the command starts, with dots, when it must be in one of the setup's jars: Java
// runs with the class path of %CP%() and with nothing else on it. Nothing when that cannot be known
// before the run.
[[nodiscard]] std::optional<std::string> findMainClass(const SString& command);

}  // namespace authoring

#endif
