#include "platform/Trust.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "launcher/Log.h"
#include "platform/MountTable.h"
#include "tagfile/TextUtils.h"

#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace {

constexpr uid_t kRoot = 0;
constexpr int kMostLinks = 40;  // as the system follows

bool isTrusted(uid_t user, const std::vector<uid_t>& trusted) {
  return user == kRoot || std::find(trusted.begin(), trusted.end(), user) != trusted.end();
}

SString number(unsigned long value) {
  char text[24];
  return SString(
      text, static_cast<std::size_t>(std::to_chars(text, text + sizeof text, value).ptr - text));
}

// Who else can write there; empty: nobody.
SString otherWriters(const EntryStatus& entry) {
  if ((entry.mode & S_IWOTH) != 0) {
    return "everybody can write there";
  }
  if ((entry.mode & S_IWGRP) == 0) {
    return "";
  }
  if (entry.group != 0) {
    return "group " + number(entry.group) + " can write there";
  }
  return entry.hasAccessList ? "its access list may let others write there" : "";
}

bool hasAccessList(const SString& path) {
#ifdef __linux__
  return lgetxattr(path.c_str(), "system.posix_acl_access", nullptr, 0) > 0;
#else
  static_cast<void>(path);
  return false;
#endif
}

EntryStatus statusOf(const SString& path, const struct stat& entry) {
  return {entry.st_mode, entry.st_uid, entry.st_gid,
          (entry.st_mode & S_IWGRP) != 0 && hasAccessList(path)};
}

// The way from the root to a program, component by component and link by link.
class Way {
 public:
  Way(const SString& program, bool isRoot)
      : m_program(program), m_isRoot(isRoot), m_ahead(program) {
    if (m_isRoot) {
      m_trusted = usersWhoBecameRoot();
    }
  }

  // False, and logged, at the first thing that speaks against it.
  bool isClear() {
    bool isClear = !m_isRoot || isTrustedFolder("/");
    while (isClear && !m_ahead.empty() && !m_isAtEnd) {
      isClear = step(takeComponent());
    }
    return isClear;
  }

 private:
  SString takeComponent() {
    const std::size_t end = std::min(m_ahead.find('/'), m_ahead.size());
    const SString component = m_ahead.substr(0, end);
    m_ahead.erase(0, end + 1);
    return component;
  }

  bool step(const SString& component) {
    if (component.empty() || component == ".") {
      return true;
    }
    if (component == "..") {
      m_here.erase(std::min(m_here.rfind('/'), m_here.size()));
      return true;
    }
    const SString path = m_here + "/" + component;
    return !isInMountToPassOver(path) && look(path);
  }

  bool look(const SString& path) {
    struct stat entry = {};
    if (lstat(path.c_str(), &entry) != 0) {
      m_isAtEnd = true;
      return isSafeFromReplacement();
    }
    if (S_ISLNK(entry.st_mode)) {
      return (isTrusted(entry.st_uid, m_trusted) || isSafeFromReplacement()) && follow(path);
    }
    m_here = path;
    return !m_isRoot || isTrustedEntry(path, entry);
  }

  bool follow(const SString& link) {
    char target[PATH_MAX];
    const ssize_t size = readlink(link.c_str(), target, sizeof target);
    m_isAtEnd = size <= 0 || ++m_linkCount > kMostLinks;  // leads nowhere
    if (!m_isAtEnd) {
      m_here = target[0] == '/' ? SString() : m_here;
      m_ahead.insert(0, "/");
      m_ahead.insert(0, std::string_view(target, static_cast<std::size_t>(size)));
    }
    return true;
  }

  // Of what is missing, and of a link. In a sticky folder everybody can put something into the
  // place of what is missing, and each user into that of his own link.
  bool isSafeFromReplacement() const {
    struct stat folder = {};
    const SString name = m_here.empty() ? SString("/") : m_here;
    if (!m_isRoot || lstat(name.c_str(), &folder) != 0) {
      return true;
    }
    return isTrustedUnless(name, otherWriters(statusOf(name, folder)));
  }

  bool isTrustedFolder(const char* path) {
    struct stat entry = {};
    return lstat(path, &entry) == 0 && isTrustedEntry(path, entry);
  }

  bool isTrustedEntry(const SString& path, const struct stat& entry) {
    return isTrustedUnless(path, objectionTo(statusOf(path, entry), m_trusted));
  }

  // True when there is no objection.
  bool isTrustedUnless(const SString& path, const SString& objection) const {
    if (!objection.empty()) {
      logMessage("Not trusted and not tried as root: " + onOneLine(m_program) + " because of " +
                     onOneLine(path) + ": " + objection,
                 LOG_WARNING);
    }
    return objection.empty();
  }

  // Asked before anything of `path` is touched.
  bool isInMountToPassOver(const SString& path) const {
    const Mount* mount = m_mounts.passedOverAt(path);
    if (mount == nullptr || mount->kind == FileSystemKind::Pseudo) {
      return false;
    }
    logMessage("Not tried: " + onOneLine(m_program) + " because it lies in the mount " +
                   onOneLine(mount->point) + " of type " + onOneLine(mount->type),
               LOG_INFO);
    return true;
  }

  SString m_program;
  bool m_isRoot;
  std::vector<uid_t> m_trusted;
  MountTable m_mounts = MountTable::ofSystem();
  SString m_here;   // the way behind us, without links; empty: the root
  SString m_ahead;  // the way ahead
  int m_linkCount = 0;
  bool m_isAtEnd = false;
};

}  // namespace

std::vector<uid_t> usersWhoBecameRoot() {
  std::vector<uid_t> users;
  for (const char* name : {"SUDO_UID", "PKEXEC_UID"}) {
    const char* text = std::getenv(name);
    const char* const end = text == nullptr ? nullptr : text + std::strlen(text);
    uid_t user = kRoot;
    const auto [last, error] = std::from_chars(text, end, user);
    if (text != end && last == end && error == std::errc()) {
      users.push_back(user);
    }
  }
  return users;
}

SString objectionTo(const EntryStatus& entry, const std::vector<uid_t>& trusted) {
  if (!isTrusted(entry.owner, trusted)) {
    return "it belongs to user " + number(entry.owner);
  }
  const bool isStickyFolder = S_ISDIR(entry.mode) && (entry.mode & S_ISVTX) != 0;
  return isStickyFolder ? SString() : otherWriters(entry);
}

bool mayTryFind(const SString& path) {
  return Way(path, geteuid() == kRoot).isClear();
}
