#include "platform/PlatformImpl.h"
