#include "authoring/ZipFile.h"

#include <zip.h>

#include <memory>

#include "authoring/AuthoringError.h"

namespace authoring {
namespace {

// The first day that a zip file can name. As a date of the format it has no time zone.
constexpr zip_uint16_t kFirstDay = (1 << 5) | 1;
constexpr zip_uint64_t kMostBytes = 64 << 20;  // no class and no manifest is as long

using Zip = std::unique_ptr<zip_t, decltype(&zip_discard)>;

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw AuthoringError(path + ": " + reason);
}

Zip openZip(const std::string& path, int flags) {
  int code = 0;
  Zip zip(zip_open(path.c_str(), flags, &code), &zip_discard);
  if (zip == nullptr) {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    const std::string reason = zip_error_strerror(&error);
    zip_error_fini(&error);
    fail(path, code == ZIP_ER_NOZIP ? "this is no jar; a jar is a zip file" : reason);
  }
  return zip;
}

}  // namespace

std::optional<std::string> readZipEntry(const std::string& path, const std::string& entry) {
  const Zip zip = openZip(path, ZIP_RDONLY);
  zip_stat_t status;
  if (zip_stat(zip.get(), entry.c_str(), 0, &status) != 0) {
    return std::nullopt;
  }
  const std::unique_ptr<zip_file_t, decltype(&zip_fclose)> file(
      zip_fopen_index(zip.get(), status.index, 0), &zip_fclose);
  std::string bytes(status.size <= kMostBytes ? static_cast<std::size_t>(status.size) : 0, '\0');
  if (file == nullptr || status.size > kMostBytes ||
      zip_fread(file.get(), bytes.data(), bytes.size()) != static_cast<zip_int64_t>(bytes.size())) {
    fail(path, "the entry " + entry + " cannot be read; make the jar again");
  }
  return bytes;
}

void writeZip(const std::string& path, const std::string& entry, const std::string& bytes) {
  Zip zip = openZip(path, ZIP_CREATE | ZIP_EXCL);
  zip_source_t* const source = zip_source_buffer(zip.get(), bytes.data(), bytes.size(), 0);
  const zip_int64_t index = zip_file_add(zip.get(), entry.c_str(), source, 0);
  if (index < 0) {
    zip_source_free(source);
    fail(path, zip_strerror(zip.get()));
  }
  const auto added = static_cast<zip_uint64_t>(index);
  if (zip_set_file_compression(zip.get(), added, ZIP_CM_STORE, 0) != 0 ||
      zip_file_set_dostime(zip.get(), added, 0, kFirstDay, 0) != 0 || zip_close(zip.get()) != 0) {
    fail(path, zip_strerror(zip.get()));
  }
  static_cast<void>(zip.release());  // closed
}

}  // namespace authoring
