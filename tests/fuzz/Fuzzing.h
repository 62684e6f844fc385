// What the fuzz targets share.
#ifndef CORVANE_TESTS_FUZZ_FUZZING_H
#define CORVANE_TESTS_FUZZ_FUZZING_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "tagfile/StreamUtils.h"

namespace fuzz {

inline void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

inline std::string_view toText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// A stream of these bytes, which must outlive it.
inline FilePtr openBytes(std::string_view bytes) {
  // A stream of no bytes does not open everywhere; one that was read to its end is the same.
  static char none = '\n';
  if (bytes.empty()) {
    FilePtr file(fmemopen(&none, 1, "r"));
    std::fgetc(file.get());
    return file;
  }
  return FilePtr(fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "r"));
}

}  // namespace fuzz

#endif
