#include "authoring/ArchiveUnpacker.h"

#include <archive.h>
#include <archive_entry.h>
#include <locale.h>

#include <filesystem>
#include <memory>

#include "authoring/AuthoringError.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlockSize = 65536;
// Never through a link that an earlier entry made.
constexpr int kHow =
    ARCHIVE_EXTRACT_PERM | ARCHIVE_EXTRACT_SECURE_SYMLINKS | ARCHIVE_EXTRACT_SECURE_NODOTDOT;

// libarchive turns the names of a zip, which are UTF-8, into the charset of the locale, and loses
// those that this charset lacks. In a UTF-8 locale they are files' names as they stand.
class Utf8Names {
 public:
  Utf8Names()
      : m_locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)), m_before(uselocale(m_locale)) {}
  ~Utf8Names() {
    uselocale(m_before);
    if (m_locale != nullptr) {
      freelocale(m_locale);
    }
  }
  Utf8Names(const Utf8Names&) = delete;
  Utf8Names& operator=(const Utf8Names&) = delete;

 private:
  locale_t m_locale;  // null where the system has none of that name
  locale_t m_before;
};

bool leaves(const fs::path& name) {
  const fs::path normal = name.lexically_normal();
  return name.empty() || name.is_absolute() || *normal.begin() == "..";
}

void checkEntry(const std::string& archive, archive_entry* entry) {
  const char* const text = archive_entry_pathname(entry);
  if (text == nullptr) {
    throw AuthoringError(archive + " has an entry whose name cannot be read; take a .tar.gz");
  }
  const fs::path name = text;
  const std::string label = archive + ": the entry \"" + name.string() + "\" ";
  const char* const link = archive_entry_symlink(entry);
  const char* const hardLink = archive_entry_hardlink(entry);
  if (leaves(name) || (link != nullptr && leaves(name.parent_path() / link)) ||
      (hardLink != nullptr && leaves(hardLink))) {
    throw AuthoringError(label + "would leave the folder; take an archive that you trust");
  }
  const auto type = archive_entry_filetype(entry);
  if (hardLink == nullptr && type != AE_IFREG && type != AE_IFDIR && type != AE_IFLNK) {
    throw AuthoringError(label + "is neither a file, a folder nor a link; take another archive");
  }
}

void placeIn(const std::string& folder, archive_entry* entry) {
  archive_entry_set_pathname(entry, (folder + "/" + archive_entry_pathname(entry)).c_str());
  if (const char* const link = archive_entry_hardlink(entry)) {
    archive_entry_set_hardlink(entry, (folder + "/" + link).c_str());
  }
  if (archive_entry_filetype(entry) == AE_IFDIR) {
    archive_entry_set_perm(entry, archive_entry_perm(entry) | 0700);  // it is written into
  }
}

}  // namespace

void unpackArchive(const std::string& path, const std::string& folder) {
  const Utf8Names whileReading;
  const std::unique_ptr<archive, decltype(&archive_read_free)> reader(archive_read_new(),
                                                                      &archive_read_free);
  archive_read_support_filter_all(reader.get());
  archive_read_support_format_tar(reader.get());
  archive_read_support_format_zip(reader.get());
  int result = archive_read_open_filename(reader.get(), path.c_str(), kBlockSize);
  archive_entry* entry = nullptr;
  while (result == ARCHIVE_OK || result == ARCHIVE_WARN) {
    result = archive_read_next_header(reader.get(), &entry);
    if (result == ARCHIVE_OK || result == ARCHIVE_WARN) {
      checkEntry(path, entry);
      placeIn(folder, entry);
      result = archive_read_extract(reader.get(), entry, kHow);
    }
  }
  if (result != ARCHIVE_EOF) {
    throw AuthoringError(path + " cannot be unpacked: " + archive_error_string(reader.get()));
  }
}

}  // namespace authoring
