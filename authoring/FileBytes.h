// FileBytes: a stretch of an open file as a string.
#ifndef CORVANE_AUTHORING_FILEBYTES_H
#define CORVANE_AUTHORING_FILEBYTES_H

#include <cstdint>
#include <cstdio>
#include <string>

namespace authoring {

// As many of the bytes as are there: none in front of the file's beginning and behind its end.
inline std::string bytesAt(std::FILE* file, std::int64_t offset, std::int64_t count) {
  if (offset < 0 || count <= 0 || fseeko(file, offset, SEEK_SET) != 0) {
    return {};
  }
  std::string bytes(static_cast<std::size_t>(count), '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
  return bytes;
}

}  // namespace authoring

#endif
