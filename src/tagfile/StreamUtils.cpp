#include "tagfile/StreamUtils.h"
