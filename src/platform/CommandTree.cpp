#include "platform/CommandTree.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/DirectoryReader.h"

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace {

// How often the tree is looked through, a millisecond apart, for what is still alive.
constexpr int kRounds = 500;

// The beginning of the shell's arguments, see ChildProcess.
constexpr std::string_view kOurShell("sh\0-c\0--\0", 9);

// The first bytes of a file; all of it where `limit` is large enough. Empty when there is none.
std::string readFile(const std::string& path, std::size_t limit = std::string::npos) {
  std::string bytes;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  char chunk[1024];
  ssize_t count = 0;
  while (fd != -1 && bytes.size() < limit && (count = read(fd, chunk, sizeof chunk)) > 0) {
    bytes.append(chunk, static_cast<std::size_t>(count));
  }
  if (fd != -1) {
    close(fd);
  }
  return bytes;
}

std::string directoryOf(pid_t process) {
  return "/proc/" + std::to_string(process);
}

bool contains(const std::vector<pid_t>& processes, pid_t process) {
  return std::find(processes.begin(), processes.end(), process) != processes.end();
}

// `list`: process numbers with blanks between them.
void appendNumbers(const std::string& list, std::vector<pid_t>& processes) {
  const char* next = list.c_str();
  char* end = nullptr;
  for (long number = std::strtol(next, &end, 10); end != next;
       number = std::strtol(next, &end, 10)) {
    processes.push_back(static_cast<pid_t>(number));
    next = end;
  }
}

// The state letter follows the name, which may hold any byte but ends with the last ")".
bool isDead(pid_t process) {
  const std::string status = readFile(directoryOf(process) + "/stat");
  const std::size_t nameEnd = status.rfind(')');
  return nameEnd == std::string::npos || status.size() < nameEnd + 3 ||
         status[nameEnd + 2] == 'Z' || status[nameEnd + 2] == 'X';
}

void adoptOrphans([[maybe_unused]] bool adopt) {
#ifdef PR_SET_CHILD_SUBREAPER
  prctl(PR_SET_CHILD_SUBREAPER, adopt ? 1UL : 0UL, 0UL, 0UL, 0UL);
#endif
}

}  // namespace

CommandTree::CommandTree() : m_strangers(childrenOf(getpid())) {
  adoptOrphans(true);
}

CommandTree::~CommandTree() {
  adoptOrphans(false);
}

// The children are listed for each thread that started them.
std::vector<pid_t> CommandTree::childrenOf(pid_t process) {
  std::vector<pid_t> children;
  const std::string tasks = directoryOf(process) + "/task";
  DirectoryReader entries(tasks.c_str(), DirectoryReader::Links::Follow);
  while (entries.next()) {
    appendNumbers(readFile(tasks + "/" + entries.name() + "/children"), children);
  }
  return children;
}

bool CommandTree::isStillOurShell(pid_t process) {
  return readFile(directoryOf(process) + "/cmdline", kOurShell.size()).starts_with(kOurShell);
}

void CommandTree::end(pid_t shell) const {
  kill(shell, SIGKILL);
  // While processes end, the system may leave one out of its list: only a second look is certain.
  int looksWithoutFind = 0;
  for (int round = 0; round < kRounds && looksWithoutFind < 2; ++round) {
    looksWithoutFind = endOnce(shell) ? looksWithoutFind + 1 : 0;
    poll(nullptr, 0, 1);
  }
}

// One look through the tree, parents first. True when nobody in it is alive.
bool CommandTree::endOnce(pid_t shell) const {
  bool isGone = true;
  std::vector<pid_t> pending = childrenOf(getpid());
  std::erase_if(pending, [this](pid_t process) { return contains(m_strangers, process); });
  for (std::size_t i = 0; i < pending.size(); ++i) {
    const pid_t process = pending[i];
    if (!isDead(process) && kill(process, SIGKILL) == 0) {
      isGone = false;
    }
    for (const pid_t child : childrenOf(process)) {
      pending.push_back(child);
    }
  }
  for (const pid_t process : childrenOf(getpid())) {
    if (process != shell && !contains(m_strangers, process)) {
      waitpid(process, nullptr, WNOHANG);
    }
  }
  return isGone;
}
