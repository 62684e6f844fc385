// A program that behaves in one way, for tests where a shell would merge signals or pass on too
// much. Usage: stand_in WAY [FILE]. It first appends its process number to FILE.
#include <sys/types.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace {

void beDeaf() {
  for (const int number : {SIGHUP, SIGINT, SIGTERM, SIGQUIT}) {
    signal(number, SIG_IGN);
  }
}

[[noreturn]] void stay() {
  while (true) {
    pause();
  }
}

void noteProcess(const char* file) {
  if (std::FILE* list = std::fopen(file, "a")) {
    std::fprintf(list, "%ld\n", static_cast<long>(getpid()));
    std::fclose(list);
  }
}

// A child that stays, deaf; with its output still ours, and in a session of its own where asked.
void leaveBehind(const char* file, bool inOwnSession) {
  if (fork() == 0) {
    beDeaf();
    if (inOwnSession) {
      setsid();
    }
    noteProcess(file);
    stay();
  }
}

void say(const char* text) {
  static_cast<void>(write(STDOUT_FILENO, text, std::strlen(text)) == 0);
}

}  // namespace

int main(int argc, char** argv) {
  const char* way = argc > 1 ? argv[1] : "";
  const char* file = argc > 2 ? argv[2] : "/dev/null";
  noteProcess(file);
  if (std::strcmp(way, "deaf") == 0) {
    beDeaf();
    say("ready");
    stay();
  }
  if (std::strcmp(way, "stopped") == 0) {
    say("ready");
    raise(SIGSTOP);
    stay();
  }
  if (std::strcmp(way, "straggler") == 0) {
    leaveBehind(file, false);
    say("answer");
    return 3;
  }
  if (std::strcmp(way, "escaped") == 0) {
    leaveBehind(file, true);
    say("ready");
    stay();
  }
  if (std::strcmp(way, "family") == 0) {
    beDeaf();
    leaveBehind(file, true);
    stay();
  }
  if (std::strcmp(way, "reader") == 0) {
    char byte = 0;
    std::printf("%ld", static_cast<long>(read(STDIN_FILENO, &byte, 1)));
    return 0;
  }
  if (std::strcmp(way, "group") == 0) {
    std::printf("%s", getpgrp() == getppid() || getpgrp() == getpid() ? "own" : "shared");
    return 0;
  }
  if (std::strcmp(way, "slow") == 0) {  // "bye" when it is asked to end
    signal(SIGTERM, [](int) {
      say("bye");
      _exit(4);
    });
    say("ready");
    stay();
  }
  return 1;
}
