#include "jvm/JVMFiles.h"
