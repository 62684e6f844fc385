#include "launcher/Launcher.h"
