// The cast of stand-in JVMs: each is a folder with a file bin/java that behaves, or misbehaves, in
// one way. Those that run are shell scripts; they write their arguments down, one call a line.
#ifndef CORVANE_TESTS_FAKES_FAKEJVM_H
#define CORVANE_TESTS_FAKES_FAKEJVM_H

#include <string>
#include <vector>

namespace test {

enum class FakeJVM {
  RightValues,         // the magic line, "17.0.2", "Fake Vendor"
  WrongValues,         // another version
  BannerFirst,         // other lines before the magic line
  NoMagicLine,         // the values alone
  MagicTrailingBlank,  // a blank behind the magic number
  MagicLeadingBlank,
  MagicOnly,        // the magic line alone
  OneValueOnly,     // the magic line and the version
  CarriageReturns,  // lines end with carriage return and newline
  NoFinalNewline,
  MoreLines,        // further lines behind the right values
  ExitOneAfterAll,  // right, but ends with status 1
  OnStandardError,  // right, but on standard error
  NoOutput,
  KilledBySignal,     // prints the banner, then dies
  KilledAfterAll,     // right, then dies
  MuchOutput,         // a megabyte before the magic line
  NotExecutable,      // bin/java lacks the execute bits
  Directory,          // bin/java is a folder
  DanglingLink,       // bin/java points to nothing
  WrongArchitecture,  // bin/java is a program for no known processor
  Missing             // an empty home
};

// Makes a JVM in `home` (made too) and returns `home`.
std::string makeFakeJVM(const std::string& home, FakeJVM kind);
// The same with a script of the caller's own as the executable `exe`.
std::string makeFakeJVM(const std::string& home, const std::string& script,
                        const std::string& exe = "bin/java");
// One line for each call so far of the JVM in `home`: its arguments in brackets, "[a][b c]".
std::vector<std::string> callsOfFakeJVM(const std::string& home);

}  // namespace test

#endif
