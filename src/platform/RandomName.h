// RandomName: unpredictable names for temporary files.
#ifndef CORVANE_PLATFORM_RANDOMNAME_H
#define CORVANE_PLATFORM_RANDOMNAME_H

#include <cstddef>

#include "util/SString.h"

// `size` letters and digits (A-Z, a-z, 0-9) from the system's source of randomness; where there is
// none, from the clock and the process, which differ from call to call but can be guessed. Whoever
// creates a file under such a name must refuse one that exists.
SString randomName(std::size_t size);

#endif
