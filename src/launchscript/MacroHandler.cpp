#include "launchscript/MacroHandler.h"
