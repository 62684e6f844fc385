// DigestBlock: the SHA-256 digests that `pack` stores in a launcher file, by which `verify` finds
// what was damaged. The launcher looks at none of them.
//
// The block stands between the file index and the purpose byte:
//
//   16  "corvane-sha256-1"; the last byte is the version
//   32  digest of the stub: of all bytes in front of the first file
//   32  digest of a file's stored bytes; for each file, in the order of the index
//   32  digest of the file index
//    4  offset of this block, big-endian
//   16  "corvane-sha256-1" again, so that it is found from the end
//   32  the seal: digest of the block up to here, the purpose byte and the trailer
//
// What stands between two files (the newline that the writer puts behind a file without one) is
// told by the files themselves. So every byte of a setup is covered.
#ifndef CORVANE_AUTHORING_DIGESTBLOCK_H
#define CORVANE_AUTHORING_DIGESTBLOCK_H

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace authoring {

enum class DigestState {
  kNone,     // packed by an older version, or by another program
  kIntact,   // the seal fits: block, purpose byte and trailer are as they were written
  kDamaged,  // there is a block, or a part of one
  kNewer     // of a version that this program does not know
};

struct DigestBlock {
  DigestState state = DigestState::kNone;
  std::int64_t offset = 0;   // where it is
  std::int64_t missing = 0;  // bytes in front of it that are gone; below 0: that were put in
  // Digests of stub, files and index, in this order: two more than there are files. Empty unless
  // intact.
  std::vector<std::string> pieces;
};

// The bytes of a block that stands at `offset`; `end` is what follows it in the file.
std::string encodeDigests(std::int64_t offset, const std::vector<std::string>& pieces,
                          std::string_view end);

// Looks for the block from the end of a file on, whatever the rest of it is.
DigestBlock findDigests(std::FILE* file, std::int64_t size);

// True when a block begins at `offset`, also one whose end is damaged.
[[nodiscard]] bool isBlockBegin(std::FILE* file, std::int64_t offset);

}  // namespace authoring

#endif
