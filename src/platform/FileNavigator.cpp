#include "platform/FileNavigator.h"
