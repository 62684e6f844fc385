// FileNavigator: a depth-first walk through a directory tree with an explicit stack.
//
// Base of FindFiles. Symbolic links are never followed: a link, also one to a directory, is handed
// to `processFile`. Entries come in the order of readdir; the directories of one directory are
// visited in the reverse of that order. A directory that cannot be opened is skipped. One buffer
// holds the current path; memory holds the pending directories only.
#ifndef CORVANE_PLATFORM_FILENAVIGATOR_H
#define CORVANE_PLATFORM_FILENAVIGATOR_H

#include "util/SString.h"
#include "util/StringDeque.h"

class FileNavigator {
 public:
  static constexpr unsigned long kFilesPerProgress = 1000;

  virtual ~FileNavigator() = default;

  // Walks the tree below `root`. True when a `processFile` ended the walk. The console's progress
  // advances by 1 after every 1000th file.
  virtual bool process(const SString& root);
  // Called for every entry that is no directory. `path` is valid for the call only, unless copied.
  // True ends the walk.
  virtual bool processFile(const SString& path) = 0;
  // Asked of each directory when its turn comes, the root included. True: it is neither listed nor
  // descended into.
  virtual bool skipDirectory(const SString& path);
  // True: `path` is a directory, and the system must not be asked whether it is one.
  virtual bool isKnownDirectory(const SString& path) const;

  // True when `path` itself (no link is followed) is a directory.
  static bool isDirectory(const char* path);

 protected:
  // A cancellable walk also ends when the user has canceled.
  explicit FileNavigator(bool cancellable) : m_cancellable(cancellable) {}

  bool isCanceled() const;

 private:
  [[nodiscard]] bool listDirectory(const SString& directory, bool isRoot);
  [[nodiscard]] bool visitFile(const SString& path);

  StringDeque m_pending;  // used as a stack
  bool m_cancellable;
  unsigned long m_fileCount = 0;
};

#endif
