#include "authoring/FileLook.h"

#include <algorithm>

#include "archive/StubMark.h"

namespace authoring {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kLookedAt = std::size_t{16} << 20;  // the mark of a stub lies anywhere
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r\n";

struct LookRow {
  std::string_view begin;
  const char* look;
};

const LookRow kLooks[] = {
    {"\x7F"
     "ELF"sv,
     "a program that is none of ours"},
    {"\xCF\xFA\xED\xFE"sv, "a program of another system"},
    {"\xCA\xFE\xBA\xBE"sv, "a Java class, or a program of another system"},
    {"MZ"sv, "a program of another system"},
    {"PK\3\4"sv, "a zip archive (a jar is one)"},
    {"PK\5\6"sv, "an empty zip archive"},
    {"\x1F\x8B"sv, "a gzip file"},
    {"\xFD"
     "7zXZ"sv,
     "an xz file"},
    {"BZh"sv, "a bzip2 file"},
    {"\x28\xB5\x2F\xFD"sv, "a zstd file"},
    {"!<arch>"sv, "a library or a Debian package"},
    {"#!"sv, "a script"},
    {"\xFF\xFE"sv, "a text in UTF-16"},
    {"\xFE\xFF"sv, "a text in UTF-16"},
};

// Transfers as text write a carriage return before each newline.
bool isTextModeCopy(std::string_view bytes) {
  const std::size_t mark = bytes.find(std::string(kStubMarkBegin) + " " + kStubMarkFields[0] + "=");
  const std::size_t end = mark == bytes.npos ? bytes.npos : bytes.find(kStubMarkEnd, mark);
  return end != bytes.npos && bytes[end - 1] == '\r';
}

bool isTextByte(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= ' ' || kBlanks.find(byte) != std::string_view::npos || byte == '\f';
}

}  // namespace

std::string firstBytes(std::FILE* file) {
  std::string bytes(kLookedAt, '\0');
  bytes.resize(fseeko(file, 0, SEEK_SET) == 0 ? std::fread(bytes.data(), 1, bytes.size(), file)
                                              : 0);
  return bytes;
}

bool looksLikeManifest(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark)) {
    bytes.remove_prefix(kByteOrderMark.size());
  }
  const std::size_t begin = bytes.find_first_not_of(kBlanks);
  const std::string_view rest = begin == bytes.npos ? "" : bytes.substr(begin);
  return rest.starts_with("{") || rest.starts_with("//") || rest.starts_with("/*");
}

bool isText(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), isTextByte);
}

std::string formatOf(std::string_view bytes) {
  const auto row = std::find_if(std::begin(kLooks), std::end(kLooks),
                                [bytes](const LookRow& r) { return bytes.starts_with(r.begin); });
  return row == std::end(kLooks) ? "" : row->look;
}

std::string lookOf(std::string_view bytes) {
  if (bytes.empty()) {
    return "an empty file";
  }
  if (isTextModeCopy(bytes)) {
    return "a launcher that was damaged by a transfer as text; transfer it as binary";
  }
  if (const std::string format = formatOf(bytes); !format.empty()) {
    return format;
  }
  if (looksLikeManifest(bytes)) {
    return "a manifest";
  }
  return isText(bytes) ? "a text" : "other data";
}

std::string lookOf(std::FILE* file) {
  return lookOf(firstBytes(file));
}

}  // namespace authoring
