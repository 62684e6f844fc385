#include "tagfile/Paths.h"

SString directoryOf(const SString& path, const char* separators) {
  const std::size_t separator = path.find_last_of(separators);
  return separator == SString::npos ? SString() : path.substr(0, separator);
}

SString baseNameOf(const SString& path, const char* separators) {
  const std::size_t separator = path.find_last_of(separators);
  return separator == SString::npos ? path : path.substr(separator + 1);
}
