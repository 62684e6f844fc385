// ProgramLook: whether a system could run a file, by its first bytes.
#ifndef CORVANE_AUTHORING_PROGRAMLOOK_H
#define CORVANE_AUTHORING_PROGRAMLOOK_H

#include <string>
#include <string_view>

namespace authoring {

enum class ProgramKind { kNone, kText, kScript, kElf, kMachO };

struct ProgramLook {
  ProgramKind kind = ProgramKind::kNone;
  std::string machine;             // of a program for one: "x86_64"; empty: any, or not known
  bool hasCarriageReturn = false;  // behind a script's first line, where no system looks for it
};

// The bytes that are looked at.
inline constexpr std::size_t kProgramBytes = 4096;

// kText: neither a program nor a script that names its interpreter, but a text.
ProgramLook lookAtProgram(std::string_view bytes);

}  // namespace authoring

#endif
