// Launcher files of any bytes. Loading ends; it finds no more entries than the bytes can hold; and
// an entry that was read is, once written, read back equal.
#include <unistd.h>

#include <cstdint>
#include <string>

#include "archive/LauncherInputFiles.h"
#include "authoring/LauncherFileWriter.h"
#include "fuzz/Fuzzing.h"
#include "platform/PlatformImpl.h"
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const FilePtr launcher(std::tmpfile());
  const int file = fileno(launcher.get());
  fuzz::require(pwrite(file, data, size, 0) == static_cast<ssize_t>(size));
  fuzz::require(ftruncate(file, static_cast<off_t>(size)) == 0);  // not to 0 first: that is slow
  LauncherTestAccess::setLauncherFileName("/dev/fd/" + std::to_string(file));
  PlatformImpl::setSilent(true);
  LauncherInputFiles inputs;
  try {
    inputs.load(true);
  } catch (const LauncherException&) {
    fuzz::require(!inputs.areInternalFilesLoaded());
  }
  fuzz::require(inputs.getEmbeddedFileCount() <= static_cast<long>(size / kSmallestEntry + 1));
  for (std::int32_t i = 0; i < inputs.getEmbeddedFileCount(); ++i) {
    checkRoundTrip(*inputs.getFileAt(i));
  }
  return 0;
}
