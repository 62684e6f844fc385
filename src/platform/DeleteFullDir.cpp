#include "platform/DeleteFullDir.h"
