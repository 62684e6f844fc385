#include "authoring/DamageLook.h"

#include <algorithm>
#include <string_view>

#include "archive/FileIndex.h"
#include "archive/LauncherFileFormat.h"
#include "authoring/FileBytes.h"
#include "authoring/FileLook.h"
#include "authoring/LauncherFileWriter.h"
#include "authoring/Listing.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

constexpr std::int64_t kSearchedAtEnd = std::int64_t{1} << 20;
// A file of this size holds some pairs of carriage return and newline by chance.
constexpr std::int64_t kHoldsPairs = std::int64_t{1} << 20;

std::uint64_t numberAt(std::string_view bytes, std::size_t place, std::size_t size, bool isBig) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const char byte = bytes[isBig ? place + i : place + size - 1 - i];
    number = number << 8 | static_cast<unsigned char>(byte);
  }
  return number;
}

// True when an index with entries lies at `offset`, and ends in front of `end`.
bool isIndex(std::FILE* file, std::int64_t offset, std::int64_t end) {
  try {
    FileIndex index;
    const std::int32_t count = FileIndex::readCount(file, static_cast<std::int32_t>(offset));
    index.appendEntries(file, count);
    return count > 0 && ftello(file) < end;
  } catch (const LauncherException&) {
    return false;
  }
}

// How many bytes stand behind the last trailer; 0 when there is none near the end.
std::int64_t bytesBehindTrailer(std::FILE* file, std::int64_t size) {
  const std::int64_t begin = std::max<std::int64_t>(0, size - kSearchedAtEnd);
  const std::string end = bytesAt(file, begin, size - begin);
  const std::string mark = encodeNumber32(kLauncherIdentification);
  const std::size_t at = end.rfind(mark);
  if (at == end.npos || at < 4) {
    return 0;
  }
  const auto index = static_cast<std::int64_t>(numberAt(end, at - 4, 4, true));
  const std::int64_t place = begin + static_cast<std::int64_t>(at);
  const bool isOurs = index > 0 && index < place && isIndex(file, index, place);
  return isOurs ? size - place - static_cast<std::int64_t>(mark.size()) : 0;
}

// How many bytes at the end are zero, of those that are looked at.
std::int64_t zerosAtEnd(std::FILE* file, std::int64_t size) {
  const std::int64_t begin = std::max<std::int64_t>(0, size - kSearchedAtEnd);
  const std::string end = bytesAt(file, begin, size - begin);
  const std::size_t last = end.find_last_not_of('\0');
  return static_cast<std::int64_t>(end.size() - (last == end.npos ? 0 : last + 1));
}

}  // namespace

std::string findTextTransfer(std::FILE* file) {
  const bool isText = lookOf(file).find("transfer as text") != std::string::npos;
  return isText ? "was changed by a transfer as text (carriage returns were put into it); transfer "
                  "it as binary"
                : "";
}

std::string describeShift(std::FILE* file, std::int64_t size, std::int64_t missing) {
  if (missing < 0) {
    return countOf(-missing, "byte") + (missing == -1 ? " was" : " were") +
           " put into it, somewhere in front of its end";
  }
  const bool hasNoPair = firstBytes(file).find("\r\n") == std::string::npos;
  return countOf(missing, "byte") + (missing == 1 ? " is" : " are") +
         " missing, somewhere in front of its end" +
         (hasNoPair && size >= kHoldsPairs
              ? ", as after a transfer as text that takes carriage returns out"
              : "");
}

std::string findLostEnd(std::FILE* file, std::int64_t size) {
  if (const std::int64_t behind = bytesBehindTrailer(file, size); behind > 0) {
    return "has " + countOf(behind, "byte") +
           " behind its end, so that its files are not found; the setup is its first " +
           countOf(size - behind, "byte");
  }
  const std::optional<std::int64_t> end = endOfProgram(file);
  if (end && size < *end) {
    return "was cut off inside the launcher program: it has " + countOf(size, "byte") +
           " of more than " + std::to_string(*end);
  }
  const bool isBare = end && size == *end;  // which may end with zeros, too
  if (!isBare && zerosAtEnd(file, size) >= kTrailerSize) {
    return "ends with zeros, as a download leaves them that was not finished";
  }
  if (end && !isBare) {
    return "was cut off: files follow the launcher program, but their index, which is the end of a "
           "setup, is missing";
  }
  return "carries no files: it is a bare launcher, or strip or a tool like it has removed them";
}

std::optional<std::int64_t> endOfProgram(std::FILE* file) {
  const std::string header = bytesAt(file, 0, 64);
  if (header.size() < 64 || !header.starts_with("\x7F"
                                                "ELF")) {
    return std::nullopt;
  }
  const bool is64 = header[4] == 2;
  const bool isBig = header[5] == 2;
  const std::uint64_t table =
      is64 ? numberAt(header, 0x28, 8, isBig) : numberAt(header, 0x20, 4, isBig);
  const std::uint64_t width = numberAt(header, is64 ? 0x3A : 0x2E, 2, isBig);
  const std::uint64_t count = numberAt(header, is64 ? 0x3C : 0x30, 2, isBig);
  if (table == 0 || table > static_cast<std::uint64_t>(kMaxLauncherFileSize)) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(table + width * count);
}

}  // namespace authoring
