#include "instructions/Instructions.h"
