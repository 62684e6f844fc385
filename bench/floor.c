/* The floor of every start: a static program that prints one line. */
#include <stdio.h>

int main(void) {
  puts("one line");
  return 0;
}
