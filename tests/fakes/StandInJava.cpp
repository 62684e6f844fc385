// A compiled Java that counts its starts, for tests in which a script would not do: a line for each
// in the file "starts" of its home, which it finds by its own file, also without /proc. In the file
// "way" stands how it behaves, with a number behind some ways. Like OpenJDK's it calls JLI_Launch;
// a test that wants another kind changes that name.
#include <sys/auxv.h>
#include <unistd.h>

#include <algorithm>
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
  char* const path = realpath(reinterpret_cast<const char*>(getauxval(AT_EXECFN)), nullptr);
  const std::string file = path == nullptr ? "" : path;
  std::free(path);
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

// As Java 7 refuses a class of Java 8.
void refuseClass(std::FILE* stream) {
  std::fputs(
      "Exception in thread \"main\" java.lang.UnsupportedClassVersionError: Verify : "
      "Unsupported major.minor version 52.0\n",
      stream);
}

// The number behind `word` in `way`; -1 for another way.
int numberBehind(const std::string& word, const std::string& way) {
  return way.rfind(word, 0) == 0 ? std::atoi(way.c_str() + word.size()) : -1;
}

void say(const std::string& way, const char* name) {
  if (way == "calls JLI_Launch") {
    std::puts(JLI_Launch());
  } else if (way == "shows its name") {
    std::fprintf(stderr, "%s: a warning\n", name);
  } else if (way == "shows JAVA_HOME") {
    std::printf("in %s\n", std::getenv("JAVA_HOME"));
  } else if (const int count = numberBehind("says ", way); count > 0) {
    std::puts(std::string(static_cast<std::size_t>(count), '-').c_str());
  }
}

// Behaves; returns the exit status.
int behave(const std::string& way, int argc, char** argv) {
  say(way, argv[0]);
  if (const int status = numberBehind("is too old, ", way); status >= 0) {
    refuseClass(stderr);
    return status;
  }
  if (way == "is too old for all to see") {
    refuseClass(stdout);
    return 1;
  }
  if (way == "is too old and shows its name") {
    std::fprintf(stderr, "%s: ", argv[0]);
    refuseClass(stderr);
    return 1;
  }
  if (way == "leaves somebody") {
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
  return std::max(numberBehind("ends with ", way), 0);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string home = ownHome();
  std::ofstream(home + "/starts", std::ios::app) << argv[0] << "\n";
  std::string way;
  std::getline(std::ifstream(home + "/way"), way);
  return behave(way, argc, argv);
}
