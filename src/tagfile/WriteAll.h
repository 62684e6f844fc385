// Writes bytes to a descriptor, however many pieces the system takes them in.
#ifndef CORVANE_TAGFILE_WRITEALL_H
#define CORVANE_TAGFILE_WRITEALL_H

#include <string_view>

// Returns 0 or the system's error number. An interrupted call goes on, unless `isGivenUp` says so:
// streams of the C library would lose what they hold.
[[nodiscard]] int writeAll(
    int descriptor, std::string_view bytes, bool (*isGivenUp)() = [] { return false; });

#endif
