#include "authoring/Payload.h"

#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace authoring {

FilePtr Payload::open() const {
  if (launcher == nullptr) {
    return openFile(path.c_str(), "rb");
  }
  const int descriptor = dup(fileno(launcher.get()));
  FilePtr file(descriptor == -1 ? nullptr : fdopen(descriptor, "rb"));
  if (file == nullptr && descriptor != -1) {
    close(descriptor);
  }
  return file;
}

std::string Payload::read(std::int64_t position, std::size_t count) const {
  const FilePtr file = open();
  const std::int64_t left = std::max<std::int64_t>(length - position, 0);
  std::string bytes(std::min(count, static_cast<std::size_t>(left)), '\0');
  if (file == nullptr || fseeko(file.get(), offset + position, SEEK_SET) != 0) {
    return {};
  }
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
  return bytes;
}

Payload payloadOf(const std::string& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  return {path, nullptr, 0, error ? 0 : static_cast<std::int64_t>(size)};
}

}  // namespace authoring
