// guarded PROGRAM [ARGUMENT...]: runs a test that is a program of its own as the others run: in the
// same surroundings (in UTF-8, which the file names of Java need), and with nothing left behind.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "support/Guard.h"

int main(int, char** argv) {
  test::fixSurroundings();
  setenv("LC_ALL", "C.UTF-8", 1);
  return test::runGuarded([argv] {
    execvp(argv[1], argv + 1);
    std::perror(argv[1]);
    return 127;
  });
}
