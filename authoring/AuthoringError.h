// AuthoringError: what stops corvane-pack. Its text says which file or entry is at fault and what
// to do about it, and is shown as it stands.
#ifndef CORVANE_AUTHORING_AUTHORINGERROR_H
#define CORVANE_AUTHORING_AUTHORINGERROR_H

#include <stdexcept>

namespace authoring {

class AuthoringError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace authoring

#endif
