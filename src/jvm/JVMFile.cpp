#include "jvm/JVMFile.h"
