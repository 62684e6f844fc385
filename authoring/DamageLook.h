// DamageLook: what has happened to a launcher file, by its look alone.
#ifndef CORVANE_AUTHORING_DAMAGELOOK_H
#define CORVANE_AUTHORING_DAMAGELOOK_H

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace authoring {

// Each gives words that follow the file's name, or nothing.

// A transfer as text that put carriage returns in.
[[nodiscard]] std::string findTextTransfer(std::FILE* file);
// `missing` bytes (below 0: too many) in front of an end that is whole.
[[nodiscard]] std::string describeShift(std::FILE* file, std::int64_t size, std::int64_t missing);
// Why a file that does not end with our trailer has lost it.
[[nodiscard]] std::string findLostEnd(std::FILE* file, std::int64_t size);

// Where a program in ELF ends: behind its table of sections, which linkers and strip write last.
// Nothing for another program, or one without that table.
[[nodiscard]] std::optional<std::int64_t> endOfProgram(std::FILE* file);

}  // namespace authoring

#endif
