#include "platform/RandomName.h"

#include <sys/time.h>
#include <unistd.h>

#include <cstdint>

#include "platform/CleanupState.h"

#if defined(__linux__) || defined(__APPLE__) || defined(__FreeBSD__) || defined(__OpenBSD__)
#include <sys/random.h>
#define CORVANE_HAS_GETENTROPY 1
#endif

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::uint64_t kAlphabetSize = sizeof(kAlphabet) - 1;

bool askSystem(std::uint64_t& number) {
#ifdef CORVANE_HAS_GETENTROPY
  return getentropy(&number, sizeof(number)) == 0;
#else
  (void)number;
  return false;
#endif
}

// One step of a linear congruential generator, mixed with the clock and the process id.
std::uint64_t numberFromClock() {
  std::uint64_t& state = g_cleanup.m_randomState;
  struct timeval now = {};
  (void)gettimeofday(&now, nullptr);
  state ^= static_cast<std::uint64_t>(now.tv_sec) << 20 ^ static_cast<std::uint64_t>(now.tv_usec);
  state ^= static_cast<std::uint64_t>(getpid()) << 32;
  state = state * 6364136223846793005ULL + 1442695040888963407ULL;
  return state ^ state >> 29;
}

std::uint64_t randomNumber() {
  std::uint64_t number = 0;
  return askSystem(number) ? number : numberFromClock();
}

}  // namespace

SString randomName(std::size_t size) {
  SString name;
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    number = i % 8 == 0 ? randomNumber() : number / kAlphabetSize;
    name += kAlphabet[number % kAlphabetSize];
  }
  return name;
}
