#include "jvm/UnverifiedJVMMatch.h"
