#include "tagfile/TextUtils.h"
