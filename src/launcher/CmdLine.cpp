#include "launcher/CmdLine.h"
