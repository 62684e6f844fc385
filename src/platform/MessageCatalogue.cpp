#include "platform/MessageCatalogue.h"
