/* The floor of a Java: a static program that gives the answer of a verification. By its mark the
   launcher takes it for the program of an OpenJDK. */
#include <stdio.h>

__attribute__((used)) static const char mark[] = "JLI_Launch";

int main(void) {
  puts("1739021872");
  return 0;
}
