#include "archive/FileIndexEntry.h"
