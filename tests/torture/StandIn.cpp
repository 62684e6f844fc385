// The stand-in for everything that a launcher starts. It is compiled, since a shell merges signals,
// and plays the part that its own name gives it:
//
//   java      asked to verify it reports Java 17; else it is the wizard
//   install   makes a JVM in the current folder
//   inner     the launcher that a run is handed over to; removes itself as a real one does
//
// Like a JVM, java goes on after QUIT. A part leaves its traces in the file $RECORD: "begun PART"
// at once, "done PART" as its last act.
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>

namespace {

constexpr char kInstalledJVM[] =
    "DESC: Installed\nJVM_EXE: bin/java\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\n";

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool writeAll(int fd, std::string_view text) {
  return write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

bool writeFile(const char* path, int flags, std::string_view text) {
  const int fd = open(path, O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0666);
  const bool written = fd != -1 && writeAll(fd, text);
  return fd != -1 && close(fd) == 0 && written;
}

bool record(const std::string& line) {
  return writeFile(variable("RECORD").c_str(), O_APPEND, line + "\n");
}

void work() {
  std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(variable("WORK_MS").c_str())));
}

// 70 when the stand-in itself could not do its part.
int play(const std::string& part, bool (*act)()) {
  if (!record("begun " + part)) {
    return 70;
  }
  work();
  return act() && record("done " + part) ? std::atoi(variable("STATUS").c_str()) : 70;
}

bool install() {
  return writeFile("jvm", O_TRUNC, kInstalledJVM) &&
         symlink(variable("INSTALLED").c_str(), "bin") == 0;
}

bool doNothing() {
  return true;
}

bool isVerification(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "Verify") == 0) {
      return true;
    }
  }
  return false;
}

void answerQuit(int) {
  constexpr char kAnswer[] = "Full thread dump\n";
  static_cast<void>(write(STDOUT_FILENO, kAnswer, sizeof kAnswer - 1) == 0);
}

// As in a real launcher, a signal does not cut it short.
void removeItself(const std::string& path) {
  sigset_t all, before;
  sigfillset(&all);
  sigprocmask(SIG_SETMASK, &all, &before);
  unlink(path.c_str());
  rmdir(path.substr(0, path.rfind('/')).c_str());
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argv[0];
  const std::string name = path.substr(path.rfind('/') + 1);
  if (name == "install") {
    return play("installer", install);
  }
  if (name == "inner") {
    removeItself(path);
    return play("inner", doNothing);
  }
  std::signal(SIGQUIT, answerQuit);
  if (isVerification(argc, argv)) {
    work();
    return writeAll(STDOUT_FILENO, "1739021872\n17.0.1\n") ? 0 : 70;
  }
  return play("wizard", doNothing);
}
