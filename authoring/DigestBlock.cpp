#include "authoring/DigestBlock.h"

#include <algorithm>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileBytes.h"
#include "authoring/LauncherFileWriter.h"
#include "authoring/Sha256.h"
#include "tagfile/StreamUtils.h"

namespace authoring {
namespace {

constexpr std::string_view kMagic = "corvane-sha256-1";
constexpr std::string_view kAnyVersion = kMagic.substr(0, kMagic.size() - 1);
constexpr std::int64_t kMagicSize = kMagic.size();
constexpr std::int64_t kOffsetSize = 4;
constexpr std::int64_t kDigest = kSha256Size;
constexpr std::int64_t kBlockEnd = kOffsetSize + kMagicSize + kDigest;  // behind the last digest
constexpr std::int64_t kSearched = std::int64_t{1} << 20;

// In front of `end`, when the block's own offset leads nowhere.
std::int64_t searchBegin(std::FILE* file, std::int64_t end) {
  const std::int64_t begin = std::max<std::int64_t>(0, end - kSearched);
  const std::size_t found = bytesAt(file, begin, end - begin).rfind(kMagic);
  return found == std::string::npos ? -1 : begin + static_cast<std::int64_t>(found);
}

std::vector<std::string> digestsIn(const std::string& block) {
  std::vector<std::string> digests;
  const std::size_t end = block.size() - static_cast<std::size_t>(kBlockEnd);
  for (std::size_t at = kMagic.size(); at < end; at += kSha256Size) {
    digests.push_back(block.substr(at, kSha256Size));
  }
  return digests;
}

bool isWhole(const std::string& block, const std::string& end) {
  const auto digests = static_cast<std::int64_t>(block.size()) - kMagicSize - kBlockEnd;
  const std::size_t seal = block.size() - kSha256Size;
  return digests >= 2 * kDigest && digests % kDigest == 0 &&
         sha256Of(block.substr(0, seal) + end) == block.substr(seal);
}

std::int32_t numberIn(const std::string& bytes) {
  return convertToLong(reinterpret_cast<const unsigned char*>(bytes.data()));
}

// The block that says it stands at `offset`, and ends at `end`.
DigestBlock readBlock(std::FILE* file, std::int64_t offset, std::int64_t end) {
  DigestBlock block{DigestState::kDamaged, offset, 0, {}};
  if (!isBlockBegin(file, offset)) {
    block.offset = searchBegin(file, end - kBlockEnd);
  }
  const std::string bytes = bytesAt(file, block.offset, end - block.offset);
  if (isWhole(bytes, bytesAt(file, end, kPurposeOffsetFromEnd))) {
    block.state = DigestState::kIntact;
    block.missing = offset - block.offset;
    block.pieces = digestsIn(bytes);
  }
  return block;
}

}  // namespace

std::string encodeDigests(std::int64_t offset, const std::vector<std::string>& pieces,
                          std::string_view end) {
  std::string block(kMagic);
  for (const std::string& digest : pieces) {
    block += digest;
  }
  block += encodeNumber32(offset);
  block += kMagic;
  return block + sha256Of(block + std::string(end));
}

DigestBlock findDigests(std::FILE* file, std::int64_t size) {
  const std::int64_t end = size - kPurposeOffsetFromEnd;
  const std::string last = bytesAt(file, end - kBlockEnd, kBlockEnd);
  if (last.size() != kBlockEnd || last.compare(kOffsetSize, kAnyVersion.size(), kAnyVersion) != 0) {
    return {};
  }
  const std::int64_t offset = numberIn(last);
  const std::string magic = last.substr(kOffsetSize, kMagic.size());
  if (magic != kMagic) {
    const bool isNewer = bytesAt(file, offset, kMagicSize) == magic;
    return {isNewer ? DigestState::kNewer : DigestState::kDamaged, offset, 0, {}};
  }
  return readBlock(file, offset, end);
}

bool isBlockBegin(std::FILE* file, std::int64_t offset) {
  return bytesAt(file, offset, kMagicSize).starts_with(kAnyVersion);
}

}  // namespace authoring
