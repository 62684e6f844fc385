#include "archive/LauncherInputFiles.h"
