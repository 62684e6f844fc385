#include "support/LauncherFiles.h"

#include <cstdlib>
#include <memory>

namespace test {
namespace {

// What `write` writes to a stream, as a string.
template <class Write>
std::string collect(Write write) {
  char* bytes = nullptr;
  std::size_t size = 0;
  std::FILE* const stream = open_memstream(&bytes, &size);
  write(stream);
  std::fclose(stream);
  const std::unique_ptr<char, void (*)(void*)> owner(bytes, std::free);
  return {bytes, size};
}

}  // namespace

std::string launcherFileBytes(const std::vector<StoredFile>& files, std::int32_t purpose,
                              std::string_view stub, authoring::WriteObserver* observer) {
  return collect([&](std::FILE* stream) {
    authoring::LauncherFileWriter writer(stream, observer);
    writer.addStub(stub);
    for (const StoredFile& file : files) {
      writer.addFile({file.type, file.id, 0, 0, file.name, file.decompressed}, file.bytes);
    }
    writer.finish(purpose);
  });
}

std::string launcherFileBytes(std::string_view stored, std::string_view index) {
  std::string bytes(kStub);
  bytes += stored;
  const auto indexOffset = static_cast<std::int64_t>(bytes.size());
  bytes += index;
  bytes += '\0';
  return bytes + authoring::encodeTrailer(indexOffset);
}

}  // namespace test
