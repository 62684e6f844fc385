// DirectoryTree: the directories of a tree, entered one at a time by their names alone.
//
// Paths are not used below the root, so the tree may be deeper than the longest path, and no
// directory that somebody puts in the place of another is ever entered. One descriptor is open,
// another for moments: that of the directory in which the tree "stands". Used by DeleteFullDir.
//
// Directories have numbers: the root is 0, the others follow in the order in which they were
// added.
#ifndef CORVANE_PLATFORM_DIRECTORYTREE_H
#define CORVANE_PLATFORM_DIRECTORYTREE_H

#include <sys/types.h>

#include <vector>

#include "util/SString.h"

class DirectoryTree {
 public:
  explicit DirectoryTree(const SString& root);
  ~DirectoryTree() { leave(); }
  DirectoryTree(const DirectoryTree&) = delete;
  DirectoryTree& operator=(const DirectoryTree&) = delete;

  // Adds a directory that lies in another, which has been entered.
  long add(long parent, const SString& name);
  long size() const { return static_cast<long>(m_directories.size()); }
  const SString& name(long directory) const { return m_directories[index(directory)].name; }
  SString path(long directory) const;

  // Stands in the directory from now on; one that its owner closed to himself is opened. Return 0
  // or the system's error number: EBUSY for what is mounted there, ENOTDIR for a link, ESTALE when
  // another directory stands in its place meanwhile.
  int enter(long directory);
  // Stands in the directory that holds it.
  int enterParent(long directory);
  // Where the tree stands, for the system's calls that take an open directory.
  int descriptor() const { return m_descriptor; }

 private:
  static constexpr long kOutside = -1;  // the current directory, which the root's path is for

  struct Directory {
    long parent;
    long depth;
    SString name;
    bool isKnown = false;  // it was entered before, and this is what it is:
    dev_t device = 0;
    ino_t inode = 0;
  };

  static std::size_t index(long directory) { return static_cast<std::size_t>(directory); }
  long depth(long directory) const;
  int goTo(long directory);
  void goUp();
  int goDown(long directory);
  bool standAt(long directory, int descriptor);
  void leave();

  std::vector<Directory> m_directories;
  long m_standing = kOutside;
  int m_descriptor;
};

#endif
