#include "authoring/ZipArchive.h"

#include <zip.h>

#include <algorithm>
#include <limits>
#include <string_view>

namespace authoring {
namespace {

constexpr std::string_view kVersions = "META-INF/versions/";
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

// Class names of the language, with dots.
std::string entryOf(std::string className) {
  std::replace(className.begin(), className.end(), '.', '/');
  return className + ".class";
}

// "META-INF/versions/N/ENTRY".
bool isVersionOf(std::string_view name, std::string_view entry) {
  return name.starts_with(kVersions) && name.ends_with(entry) &&
         name.find('/', kVersions.size()) + 1 == name.size() - entry.size();
}

// The numbers come from a file and may be anything.
std::int64_t saturatedSum(std::int64_t a, std::uint64_t b) {
  return b > static_cast<std::uint64_t>(kMost - a) ? kMost : a + static_cast<std::int64_t>(b);
}

}  // namespace

void ZipArchive::Closer::operator()(zip* archive) const {
  zip_discard(archive);
}

std::optional<ZipArchive> ZipArchive::open(const Payload& payload) {
  FilePtr file = payload.open();
  if (file == nullptr || payload.length == 0) {
    return std::nullopt;
  }
  zip_source_t* const source =
      zip_source_filep_create(file.get(), static_cast<zip_uint64_t>(payload.offset),
                              static_cast<zip_int64_t>(payload.length), nullptr);
  if (source == nullptr) {
    return std::nullopt;
  }
  (void)file.release();  // it is the source's now
  zip_t* const archive = zip_open_from_source(source, ZIP_RDONLY, nullptr);
  if (archive == nullptr) {
    zip_source_free(source);
    return std::nullopt;
  }
  return ZipArchive(archive);
}

std::int64_t ZipArchive::size() const {
  return static_cast<std::int64_t>(zip_get_num_entries(m_archive.get(), 0));
}

bool ZipArchive::holdsClass(const std::string& name) const {
  const std::string entry = entryOf(name);
  if (zip_name_locate(m_archive.get(), entry.c_str(), ZIP_FL_ENC_RAW) >= 0) {
    return true;
  }
  for (std::int64_t i = 0; i < size(); ++i) {
    const char* const found =
        zip_get_name(m_archive.get(), static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
    if (found != nullptr && isVersionOf(found, entry)) {
      return true;
    }
  }
  return false;
}

UnpackedSize ZipArchive::unpackedSize() const {
  UnpackedSize sum;
  for (std::int64_t i = 0; i < size(); ++i) {
    zip_stat_t entry;
    const bool isKnown =
        zip_stat_index(m_archive.get(), static_cast<zip_uint64_t>(i), 0, &entry) == 0 &&
        (entry.valid & ZIP_STAT_NAME) != 0 && (entry.valid & ZIP_STAT_SIZE) != 0;
    if (isKnown && !std::string_view(entry.name).ends_with('/')) {
      ++sum.files;
      sum.bytes = saturatedSum(sum.bytes, entry.size);
    }
  }
  return sum;
}

}  // namespace authoring
