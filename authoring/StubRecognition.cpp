#include "authoring/StubRecognition.h"

#include <algorithm>
#include <cstdint>

#include "archive/StubMark.h"
#include "authoring/AuthoringError.h"
#include "authoring/FileLook.h"
#include "authoring/SeekableInput.h"

namespace authoring {
namespace {

// Far larger than any stub. A file without our trailer may have any size.
constexpr std::int64_t kLargestStub = std::int64_t{64} << 20;

std::int64_t sizeToSearch(const LauncherFile& launcher) {
  std::int64_t size = std::min(launcher.size, kLargestStub);
  for (long i = 0; i < launcher.index.size(); ++i) {
    const std::int64_t offset = launcher.index.at(i)->getOffsetToBytes();
    size = offset < 0 ? size : std::min(size, offset);
  }
  return size;
}

std::string firstBytes(std::FILE* file, std::int64_t size) {
  std::string bytes(static_cast<std::size_t>(size), '\0');
  if (fseeko(file, 0, SEEK_SET) != 0) {
    return {};
  }
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
  return bytes;
}

bool isValueByte(char byte) {
  return byte > ' ' && byte < '\x7F';
}

// Reads " NAME=VALUE" at `place` and moves `place` past it. False when something else is there.
bool readField(const std::string& bytes, std::size_t& place, const std::string& name,
               std::string& value) {
  const std::string begin = " " + name + "=";
  if (bytes.compare(place, begin.size(), begin) != 0) {
    return false;
  }
  place += begin.size();
  const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(place);
  const auto end = std::find_if_not(start, bytes.end(), isValueByte);
  value.assign(start, end);
  place += value.size();
  return !value.empty();
}

std::optional<Stub> readMark(const std::string& bytes, std::size_t place) {
  Stub stub;
  std::string* const values[] = {&stub.kind, &stub.version, &stub.encoding, &stub.machine};
  static_assert(std::size(values) == std::size(kStubMarkFields));
  for (std::size_t i = 0; i < std::size(values); ++i) {
    if (!readField(bytes, place, kStubMarkFields[i], *values[i])) {
      return std::nullopt;
    }
  }
  const bool isWhole =
      place < bytes.size() && (bytes[place] == kStubMarkEnd || bytes[place] == ' ');
  return isWhole ? std::optional(stub) : std::nullopt;
}

}  // namespace

std::optional<Stub> recognizeStub(const LauncherFile& launcher) {
  return findStubMark(firstBytes(launcher.file.get(), sizeToSearch(launcher)));
}

void requireLauncher(const LauncherFile& launcher, const std::string& path) {
  if (!launcher.hasTrailer && !recognizeStub(launcher)) {
    throw AuthoringError(inputLabel(path) + " is no launcher file; it looks like " +
                         lookOf(launcher.file.get()));
  }
}

std::optional<Stub> findStubMark(const std::string& bytes) {
  const std::string begin = kStubMarkBegin;
  for (std::size_t at = bytes.find(begin); at != std::string::npos;
       at = bytes.find(begin, at + 1)) {
    if (auto stub = readMark(bytes, at + begin.size())) {
      return stub;
    }
  }
  return std::nullopt;
}

std::string describeStub(const Stub& stub) {
  return stub.kind + " " + stub.version + " (" + stub.machine + ")";
}

}  // namespace authoring
