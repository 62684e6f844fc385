/* The floor of every start: a static program that prints one line. */
#include <stdio.h>

int main(void) {
  puts("2.52");
  return 0;
}
