// Launcher files of any bytes. Loading ends; it finds no more entries than the bytes can hold; an
// entry that was read is, once written, read back equal; its tag file is parsed or refused.
#include <unistd.h>

#include <cstdint>
#include <string>

#include "archive/FileIndex.h"
#include "authoring/LauncherFileWriter.h"
#include "fuzz/Fuzzing.h"
#include "support/TestAccess.h"
#include "util/LauncherException.h"

namespace {

constexpr std::size_t kSmallestEntry = 16;

std::string encode(const FileIndexEntry& entry) {
  authoring::IndexRecord record = {entry.getFileType(),         entry.getFileId(),
                                   entry.getFileLength(),       entry.getOffsetToBytes(),
                                   entry.getFileName().c_str(), {}};
  if (entry.isCompressed()) {
    record.decompressed = {entry.getDecompressedFileCount(), entry.getDecompressedSize()};
  }
  return authoring::encodeEntry(record);
}

// A newline ends a name and stays in it; only as its last byte does it come back.
void checkRoundTrip(const FileIndexEntry& entry) {
  const std::string bytes = encode(entry);
  const FilePtr file = fuzz::openBytes(bytes);
  FileIndexEntry again;
  again.load(file.get());
  fuzz::require(encode(again) == bytes && std::fgetc(file.get()) == EOF);
}

// What is not refused is there: a tag file for each type that is one, and for no other.
void checkTagFile(TagFileLoader& loader, FileIndexEntry& entry) {
  bool isRefused = false;
  try {
    loader.load(entry);
  } catch (const LauncherException&) {
    isRefused = true;
  }
  fuzz::require(isRefused || entry.isTagFile() == (entry.getTagFile() != nullptr));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const FilePtr launcher(std::tmpfile());
  const int file = fileno(launcher.get());
  fuzz::require(pwrite(file, data, size, 0) == static_cast<ssize_t>(size));
  fuzz::require(ftruncate(file, static_cast<off_t>(size)) == 0);  // not to 0 first: that is slow
  LauncherTestAccess::setLauncherFileName("/dev/fd/" + std::to_string(file));
  const FilePtr input = FileIndex::openLauncherFile();
  FileIndex index;
  try {
    (void)index.load(input.get());
  } catch (const LauncherException&) {
    // What was read until then is looked at, too.
  }
  fuzz::require(index.size() <= static_cast<long>(size / kSmallestEntry + 1));
  TagFileLoader loader(input.get());
  for (long i = 0; i < index.size(); ++i) {
    checkRoundTrip(*index.at(i));
    checkTagFile(loader, *index.at(i));
  }
  return 0;
}
