// Launcher files of any bytes. Loading ends; it finds no more entries than the bytes can hold; and
// an entry that was read is, once written, read back equal.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "archive/LauncherInputFiles.h"
#include "authoring/LauncherFileWriter.h"
#include "platform/PlatformImpl.h"
#include "support/TestAccess.h"
#include "tagfile/StreamUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr std::size_t kSmallestEntry = 16;

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

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
  std::string bytes = encode(entry);
  const FilePtr file(fmemopen(bytes.data(), bytes.size(), "rb"));
  FileIndexEntry again;
  again.load(file.get());
  require(encode(again) == bytes && std::fgetc(file.get()) == EOF);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const int file = memfd_create("launcher", MFD_CLOEXEC);
  require(ftruncate(file, 0) == 0);
  require(pwrite(file, data, size, 0) == static_cast<ssize_t>(size));
  LauncherTestAccess::setLauncherFileName("/proc/self/fd/" + std::to_string(file));
  PlatformImpl::setSilent(true);
  LauncherInputFiles inputs;
  try {
    inputs.load(true);
  } catch (const LauncherException&) {
    require(!inputs.areInternalFilesLoaded());
  }
  require(inputs.getEmbeddedFileCount() <= static_cast<long>(size / kSmallestEntry + 1));
  for (std::int32_t i = 0; i < inputs.getEmbeddedFileCount(); ++i) {
    checkRoundTrip(*inputs.getFileAt(i));
  }
  return 0;
}
