#include "jvm/JVMMatch.h"
