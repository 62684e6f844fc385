#include "platform/DeleteFailure.h"

#include <cstring>

#include "launcher/Log.h"

void logDeleteFailure(const SString& path, int error) {
  logMessage("Could not delete " + path + " :  " + std::strerror(error), LOG_WARNING);
}
