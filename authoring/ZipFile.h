// ZipFile: single entries of jars.
#ifndef CORVANE_AUTHORING_ZIPFILE_H
#define CORVANE_AUTHORING_ZIPFILE_H

#include <optional>
#include <string>

namespace authoring {

// The entry's bytes; nothing when there is no such entry. Throws AuthoringError when the file is no
// zip file, cannot be read, or the entry is damaged.
std::optional<std::string> readZipEntry(const std::string& path, const std::string& entry);

// A zip file with one entry, not compressed; the same bytes give the same file. Throws
// AuthoringError.
void writeZip(const std::string& path, const std::string& entry, const std::string& bytes);

}  // namespace authoring

#endif
