// KeptFile: a file that is read again and again, and must be the same each time.
//
// It is opened once and stays open (close-on-exec), so that its bytes can be had also when another
// file has been put in its place. Used for the launcher's own file.
#ifndef CORVANE_TAGFILE_KEPTFILE_H
#define CORVANE_TAGFILE_KEPTFILE_H

#include <sys/stat.h>

#include <utility>

#include "tagfile/StreamUtils.h"
#include "util/SString.h"

class KeptFile {
 public:
  constexpr KeptFile() = default;
  KeptFile(KeptFile&& other) noexcept { *this = std::move(other); }
  KeptFile& operator=(KeptFile&& other) noexcept;
  ~KeptFile() { forget(); }

  // Opens the file and keeps it. Does nothing when it is kept already, or does not open.
  void keep(const SString& path);
  // A stream with the bytes of the file that was at `path` when it was kept, which happens now at
  // the latest. Null, with errno set, when nothing opens there any more, and when the size of the
  // file has changed (ESTALE).
  FilePtr open(const SString& path);

 private:
  void forget();
  FilePtr openKept() const;
  bool isKept(const struct stat& status) const;

  int m_descriptor = -1;  // -1: nothing is kept
  dev_t m_device = 0;
  ino_t m_inode = 0;
  off_t m_size = 0;
};

#endif
