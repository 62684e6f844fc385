#include "platform/CleanupState.h"

constinit CleanupState g_cleanup;
