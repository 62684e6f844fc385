#include "tagfile/TagFile.h"
