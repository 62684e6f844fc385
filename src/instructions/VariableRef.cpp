#include "instructions/VariableRef.h"
