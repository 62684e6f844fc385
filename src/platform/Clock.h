// Clock: time that does not jump when the machine's clock is set.
#ifndef CORVANE_PLATFORM_CLOCK_H
#define CORVANE_PLATFORM_CLOCK_H

#include <chrono>

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr Clock::time_point kNever = Clock::time_point::max();

#endif
