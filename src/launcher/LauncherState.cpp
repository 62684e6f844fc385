#include "launcher/LauncherState.h"

constinit LauncherState g_launcher;
