// The file types by the names that manifests and listings use, and the rules for stored names.
#ifndef CORVANE_AUTHORING_FILETYPES_H
#define CORVANE_AUTHORING_FILETYPES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace authoring {

// "unknown" for a number that is no type.
const char* fileTypeName(std::int32_t type);
[[nodiscard]] std::optional<std::int32_t> fileTypeFromName(std::string_view name);
// The name that a misspelt one may mean; empty when none is near.
std::string nearestFileType(std::string_view name);
// All names, joined by commas.
std::string allFileTypeNames();

// Why `name` cannot be stored, as words that follow the name; empty when it can.
// A launcher writes stored files under their names into a folder, so a name must stay in it.
std::string findNameFault(std::string_view name);

// For showing names: safeText, with backslashes as \x5C, so that what is shown tells one name from
// another.
std::string printable(std::string_view text);
// For showing: the text between double quotes, its bytes as they are.
std::string quotedText(std::string_view text);

}  // namespace authoring

#endif
