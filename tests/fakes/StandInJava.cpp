// A compiled Java that counts its starts, for tests in which a script would not do: a line for each
// in the file "starts" of its home, which it finds by its own file. In the file "way" stands how it
// behaves. Like OpenJDK's it calls JLI_Launch; a test that wants another kind changes that name.
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

extern "C" __attribute__((visibility("default"), noinline)) const char* JLI_Launch() {
  return "JLI_Launch";
}

namespace {

std::string ownHome() {
  char path[PATH_MAX] = {};
  static_cast<void>(readlink("/proc/self/exe", path, sizeof path - 1) > 0);
  const std::string file = path;
  return file.substr(0, file.rfind("/bin/"));
}

void sayAnswer(int argc, char** argv) {
  std::puts("1739021872");
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], "java.", 5) == 0) {
      std::puts("17.0.2");
    }
  }
  std::fflush(stdout);
}

// A child that keeps our output open.
void leaveSomebody() {
  if (fork() == 0) {
    sleep(5);
    _exit(0);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string home = ownHome();
  std::ofstream(home + "/starts", std::ios::app) << argv[0] << "\n";
  std::string way;
  std::getline(std::ifstream(home + "/way"), way);
  if (way == "calls JLI_Launch") {
    std::puts(JLI_Launch());
  } else if (way == "shows its name") {
    std::fprintf(stderr, "%s: a warning\n", argv[0]);
  } else if (way == "shows JAVA_HOME") {
    std::printf("in %s\n", std::getenv("JAVA_HOME"));
  } else if (way == "says much") {
    std::puts(std::string(9000, '-').c_str());
  } else if (way == "leaves somebody") {
    leaveSomebody();
  } else if (way == "stays") {
    std::puts("1739021872");
    std::fflush(stdout);
    pause();
  }
  sayAnswer(argc, argv);
  if (way == "dies") {
    raise(SIGKILL);
  }
  return way == "fails" ? 1 : 0;
}
