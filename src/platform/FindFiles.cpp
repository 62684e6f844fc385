#include "platform/FindFiles.h"
