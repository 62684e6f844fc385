// ScriptVariables: how many variables a script has, and in which of them the operations of
// Launcher leave their results. Both are promised to scripts (docs/instructions.md).
#ifndef CORVANE_LAUNCHER_SCRIPTVARIABLES_H
#define CORVANE_LAUNCHER_SCRIPTVARIABLES_H

#include <cstdint>

inline constexpr std::int32_t kNumericVariables = 5;  // N1..N5
inline constexpr std::int32_t kStringVariables = 10;  // S1..S10

namespace resultvariable {

inline constexpr std::int32_t kFlag = 1;     // N1: 1 when found, valid or installed, else 0
inline constexpr std::int32_t kHome = 1;     // S1: the home of the JVM found or verified
inline constexpr std::int32_t kJVMFile = 2;  // S2: the jvm file written for the JVM found
// QUIRK(install-leaves-file): after an installation S1 holds the path of the jvm file, after a find
// the home.
inline constexpr std::int32_t kInstalledJVMFile = 1;

}  // namespace resultvariable

#endif
