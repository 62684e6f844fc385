// ZipArchive: the list of what a zip archive holds (a jar is one), read from its end.
#ifndef CORVANE_AUTHORING_ZIPARCHIVE_H
#define CORVANE_AUTHORING_ZIPARCHIVE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "authoring/Payload.h"

struct zip;

namespace authoring {

struct UnpackedSize {
  std::int64_t files = 0;  // without folders
  std::int64_t bytes = 0;
};

class ZipArchive {
 public:
  // Nothing when the bytes are no zip archive, or its end with the list is missing. A launcher
  // file's bytes are read until the archive goes.
  [[nodiscard]] static std::optional<ZipArchive> open(const Payload& payload);

  std::int64_t size() const;  // entries, folders included
  // True when it has an entry of that name, also one for newer versions of Java.
  [[nodiscard]] bool holdsClass(const std::string& name) const;
  UnpackedSize unpackedSize() const;

 private:
  struct Closer {
    void operator()(zip* archive) const;
  };
  explicit ZipArchive(zip* archive) : m_archive(archive) {}

  std::unique_ptr<zip, Closer> m_archive;
};

}  // namespace authoring

#endif
