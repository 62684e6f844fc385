// OutputTarget: where an output goes.
#ifndef CORVANE_AUTHORING_OUTPUTTARGET_H
#define CORVANE_AUTHORING_OUTPUTTARGET_H

#include <string>

namespace authoring {

// The file that `path` stands for: itself, or what it leads to as a link. Throws AuthoringError,
// whoever asks, when it is there and is no regular file (a device must not be replaced by a file),
// or is a link that leads nowhere.
std::string findOutputTarget(const std::string& path);

}  // namespace authoring

#endif
