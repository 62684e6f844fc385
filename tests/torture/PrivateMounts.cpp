#include "torture/PrivateMounts.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace torture {
namespace {

bool writeText(const char* path, const std::string& text) {
  const int fd = open(path, O_WRONLY | O_CLOEXEC);
  const bool written =
      fd != -1 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  close(fd);
  return written;
}

bool becomeRootOfOwn() {
  const std::string user = "0 " + std::to_string(geteuid()) + " 1\n";
  const std::string group = "0 " + std::to_string(getegid()) + " 1\n";
  return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && writeText("/proc/self/setgroups", "deny") &&
         writeText("/proc/self/uid_map", user) && writeText("/proc/self/gid_map", group);
}

bool tryToEnter() {
  const bool isAlone = geteuid() == 0 ? unshare(CLONE_NEWNS) == 0 : becomeRootOfOwn();
  return isAlone && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// In a namespace of its own, where it can do no harm.
bool worksInChild(void (*attempt)()) {
  const pid_t child = fork();
  if (child == 0) {
    try {
      if (tryToEnter()) {
        attempt();
        _exit(0);
      }
    } catch (const std::exception&) {
    }
    _exit(1);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace

std::string whyNoPrivateMounts() {
  const bool works = worksInChild([] { Mount::tmpfs("/tmp", "size=4096", 0); });
  return works ? "" : "a mount namespace of one's own is not permitted here";
}

std::string whyNoDeadMount() {
  return worksInChild([] { Mount::dead("/tmp"); }) ? "" : "no FUSE mount is permitted here";
}

void enterPrivateMounts() {
  if (!tryToEnter()) {
    throw std::runtime_error("no mount namespace of one's own");
  }
}

void Mount::attach(const std::string& source, const char* type, unsigned long flags,
                   const std::string& options) {
  std::filesystem::create_directories(m_folder);
  if (mount(source.c_str(), m_folder.c_str(), type, flags, options.c_str()) != 0) {
    const int error = errno;
    const std::string folder = std::exchange(m_folder, std::string());
    throw std::runtime_error("cannot mount " + folder + ": " + std::strerror(error));
  }
}

Mount Mount::tmpfs(const std::string& folder, const std::string& options, unsigned long flags) {
  Mount made(folder);
  made.attach("torture", "tmpfs", flags, options);
  return made;
}

Mount Mount::bind(const std::string& source, const std::string& folder) {
  Mount made(folder);
  made.attach(source, nullptr, MS_BIND | MS_REC, "");
  return made;
}

// Nobody reads what the system asks of this file system.
Mount Mount::dead(const std::string& folder) {
  Mount made(folder);
  made.m_device = open("/dev/fuse", O_RDWR | O_CLOEXEC);
  if (made.m_device == -1) {
    throw std::runtime_error("no /dev/fuse");
  }
  made.attach("torture", "fuse", MS_NOSUID | MS_NODEV,
              "fd=" + std::to_string(made.m_device) + ",rootmode=40000,user_id=0,group_id=0");
  return made;
}

Mount::Mount(Mount&& other) noexcept
    : m_folder(std::exchange(other.m_folder, std::string())),
      m_device(std::exchange(other.m_device, -1)) {}

Mount::~Mount() {
  if (m_device != -1) {
    close(m_device);  // ends those that wait for it
  }
  if (!m_folder.empty()) {
    umount2(m_folder.c_str(), MNT_DETACH);
  }
}

}  // namespace torture
