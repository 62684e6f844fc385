// Payload: the bytes of one stored file, wherever they are: a file of the author's, or a stretch of
// a launcher file.
#ifndef CORVANE_AUTHORING_PAYLOAD_H
#define CORVANE_AUTHORING_PAYLOAD_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "tagfile/StreamUtils.h"

namespace authoring {

struct Payload {
  std::string path;                     // of the author's file; empty for a stretch
  std::shared_ptr<std::FILE> launcher;  // the launcher file that the stretch lies in
  std::int64_t offset = 0;
  std::int64_t length = 0;  // 0, too, when the bytes cannot be read

  // A stream of its own, somewhere in the file. Only one of a launcher file may be in use at a
  // time. Null when it does not open.
  FilePtr open() const;
  // Up to `count` bytes from `position` within the payload; fewer where it ends.
  std::string read(std::int64_t position, std::size_t count) const;
};

// The whole file; empty when there is none.
Payload payloadOf(const std::string& path);

}  // namespace authoring

#endif
