#include "platform/Console.h"

#include <cctype>
#include <cstdio>

namespace {

constexpr std::size_t kLongestWord = std::size_t{64} * 1024;

int skipWhiteSpace() {
  int byte = std::getchar();
  while (byte != EOF && std::isspace(byte) != 0) {
    byte = std::getchar();
  }
  return byte;
}

}  // namespace

constinit ConsoleState g_console;

void writeLine(const SString& text) {
  writeLine(text.c_str());
}

void writeLine(const char* text) {
  if (g_console.g_enableOutput) {
    std::puts(text);
  }
}

// The text is a format on purpose, see below.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

// QUIRK(write-interprets-percent): the text is the format of printf, so "%%" shows as one "%".
void write(const char* text) {
  if (g_console.g_enableOutput) {
    std::printf(text);
    std::fflush(stdout);
  }
}

#pragma GCC diagnostic pop

SString getLine() {
  SString word;
  int byte = skipWhiteSpace();
  while (byte != EOF && std::isspace(byte) == 0 && word.size() < kLongestWord) {
    word += static_cast<char>(byte);
    byte = std::getchar();
  }
  if (byte != EOF) {
    std::ungetc(byte, stdin);
  }
  return word.c_str();  // as text, up to its first zero byte
}
