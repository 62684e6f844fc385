#include "platform/MountTable.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <map>
#include <utility>

#if defined(__linux__)
#include <sys/sysmacros.h>
#elif defined(__APPLE__) || defined(__FreeBSD__) || defined(__DragonFly__) || defined(__OpenBSD__)
#include <sys/param.h>
// Needs what sys/param.h defines.
#include <sys/mount.h>
#endif

namespace {

// Stands for every mount outside the table: above the root, or above that of a chroot.
constexpr std::int64_t kOutside = -1;

// --- Which mounts can be seen ---

// Follows paths as the system does: from mount to mount.
class MountTree {
 public:
  explicit MountTree(const std::vector<Mount>& mounts) : m_count(mounts.size()) {
    std::unordered_map<std::int64_t, std::size_t> rows;
    for (std::size_t i = 0; i < mounts.size(); ++i) {
      rows[mounts[i].id] = i;
    }
    for (const Mount& mount : mounts) {
      const bool isInside = mount.parent != mount.id && rows.contains(mount.parent);
      m_children[{isInside ? mount.parent : kOutside, mount.point.view()}] = mount.id;
    }
  }

  // The mount that one sees at `path`.
  std::int64_t mountAt(std::string_view path) const {
    std::int64_t mount = onTop(kOutside, "/");
    for (std::size_t end = 1; end < path.size();) {
      end = std::min(path.find('/', end + 1), path.size());
      mount = onTop(mount, path.substr(0, end));
    }
    return mount;
  }

 private:
  // Several mounts may lie on one mount point, each on the one before.
  std::int64_t onTop(std::int64_t mount, std::string_view path) const {
    for (std::size_t i = 0; i < m_count; ++i) {
      const auto child = m_children.find({mount, path});
      if (child == m_children.end()) {
        break;
      }
      mount = child->second;
    }
    return mount;
  }

  std::map<std::pair<std::int64_t, std::string_view>, std::int64_t> m_children;
  std::size_t m_count;  // so that rows that name each other as parents come to an end
};

// --- The text of the table ---

std::string_view takeField(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  const std::string_view field = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return field;
}

bool isOctal(char byte) {
  return byte >= '0' && byte <= '7';
}

// Blanks, newlines and backslashes are written as a backslash and three octal digits.
SString unescaped(std::string_view field) {
  SString text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) &&
        isOctal(field[i + 2]) && isOctal(field[i + 3])) {
      text += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                (field[i + 3] - '0'));
      i += 3;
    } else {
      text += field[i];
    }
  }
  return text;
}

bool readNumber(std::string_view field, std::int64_t& number) {
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
  return error == std::errc() && end == field.data() + field.size();
}

// 36 35 98:0 /part/shown /mount/point rw,noatime master:1 - ext3 /dev/root rw,errors=continue
bool parseLine(std::string_view line, Mount& mount) {
  if (!readNumber(takeField(line), mount.id) || !readNumber(takeField(line), mount.parent)) {
    return false;
  }
  mount.device = SString(takeField(line));
  takeField(line);
  mount.point = unescaped(takeField(line));
  takeField(line);
  while (!line.empty() && takeField(line) != "-") {
  }
  mount.type = unescaped(takeField(line));
  mount.kind = fileSystemKindOf(mount.type);
  return mount.point.startsWith("/") && !mount.type.empty();
}

// --- The system's table ---

#if defined(__linux__)

// False when it cannot be read to its end.
bool readWhole(const char* path, SString& text) {
  const int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd == -1) {
    return false;
  }
  char chunk[16 * 1024];
  ssize_t count = 0;
  do {
    count = read(fd, chunk, sizeof chunk);
    text += std::string_view(chunk, count > 0 ? static_cast<std::size_t>(count) : 0);
  } while (count > 0 || (count == -1 && errno == EINTR));
  close(fd);
  return count == 0;
}

std::vector<Mount> readMounts() {
  SString text;
  return readWhole("/proc/self/mountinfo", text) ? parseMountInfo(text) : std::vector<Mount>();
}

// We are in it already: it answers.
SString deviceOfRoot() {
  struct stat root = {};
  if (stat("/", &root) != 0) {
    return "";
  }
  char device[32];
  std::snprintf(device, sizeof device, "%u:%u", major(root.st_dev), minor(root.st_dev));
  return device;
}

#elif defined(MNT_NOWAIT)

// The latest of the `mounts` in front of row `index` that covers its mount point.
std::int64_t parentOf(const std::vector<Mount>& mounts, std::size_t index) {
  const std::string_view point = mounts[index].point;
  std::int64_t parent = kOutside;
  std::size_t longest = 0;
  for (std::size_t i = 0; i < index; ++i) {
    const std::string_view above = mounts[i].point;
    const bool covers =
        above == "/" || point == above || (point.starts_with(above) && point[above.size()] == '/');
    if (covers && above.size() >= longest) {
      longest = above.size();
      parent = mounts[i].id;
    }
  }
  return parent;
}

// Asks no file system how it fares.
std::vector<Mount> readMounts() {
  std::vector<struct statfs> table;
  int count = getfsstat(nullptr, 0, MNT_NOWAIT);
  if (count > 0) {
    table.resize(static_cast<std::size_t>(count));
    count = getfsstat(table.data(), static_cast<int>(table.size() * sizeof table[0]), MNT_NOWAIT);
  }
  std::vector<Mount> mounts;
  for (int i = 0; i < count; ++i) {
    const struct statfs& row = table[static_cast<std::size_t>(i)];
    const FileSystemKind kind = fileSystemKindOf(row.f_fstypename);
    const bool isRemote = kind == FileSystemKind::Storage && (row.f_flags & MNT_LOCAL) == 0;
    mounts.push_back({i, kOutside, "", row.f_mntonname, row.f_fstypename,
                      isRemote ? FileSystemKind::Network : kind});
    mounts.back().parent = parentOf(mounts, static_cast<std::size_t>(i));
  }
  return mounts;
}

SString deviceOfRoot() {
  return "none";
}

#else

std::vector<Mount> readMounts() {
  return {};
}

SString deviceOfRoot() {
  return "";
}

#endif

}  // namespace

MountTable::MountTable(const std::vector<Mount>& mounts, const SString& rootDevice) {
  const MountTree tree(mounts);
  for (const Mount& mount : mounts) {
    if (mount.kind != FileSystemKind::Storage && mount.device != rootDevice && mount.point != "/" &&
        tree.mountAt(mount.point) == mount.id) {
      m_passedOver.emplace(mount.point.view(), mount);
    }
  }
}

MountTable MountTable::ofSystem() {
  return {readMounts(), deviceOfRoot()};
}

const Mount* MountTable::passedOverAt(std::string_view path) const {
  const auto mount = m_passedOver.find(path);
  return mount == m_passedOver.end() ? nullptr : &mount->second;
}

std::vector<Mount> parseMountInfo(std::string_view text) {
  std::vector<Mount> mounts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    Mount mount = {};
    if (parseLine(text.substr(0, end), mount)) {
      mounts.push_back(std::move(mount));
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return mounts;
}
