// Clock: the time that goes on steadily, whatever the user sets the machine's clock to.
#ifndef CORVANE_PLATFORM_CLOCK_H
#define CORVANE_PLATFORM_CLOCK_H

#include <chrono>

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr Clock::time_point kNever = Clock::time_point::max();

#endif
