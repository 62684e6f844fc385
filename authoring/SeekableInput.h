// SeekableInput: opens what a user names as an input, so that it can be read at any place.
#ifndef CORVANE_AUTHORING_SEEKABLEINPUT_H
#define CORVANE_AUTHORING_SEEKABLEINPUT_H

#include <string>

#include "tagfile/StreamUtils.h"

namespace authoring {

inline constexpr const char* kStandardStream = "-";

// How messages call the input `path`: "standard input" for "-".
inline std::string inputLabel(const std::string& path) {
  return path == kStandardStream ? "standard input" : path;
}

struct SeekableInput {
  FilePtr file;
  bool isStream = false;  // standard input, or a pipe (copied into a file without a name)
};

// Opens a file, a pipe or standard input ("-") for reading, from its beginning. A pipe gives its
// bytes once: its copy is kept and opened when the same path is asked for again. Throws
// AuthoringError when it cannot be read, or a pipe gives more than a launcher file can hold.
SeekableInput openSeekable(const std::string& path);

}  // namespace authoring

#endif
