#include "launchscript/LaunchScript.h"
