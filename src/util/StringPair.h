// StringPair: a key and its value, two plain strings.
#ifndef CORVANE_UTIL_STRINGPAIR_H
#define CORVANE_UTIL_STRINGPAIR_H

#include "util/PtrDeque.h"
#include "util/SString.h"

struct StringPair {
  SString key;
  SString value;
};

using StringPairPtrDeque = PtrDeque<StringPair>;

#endif
