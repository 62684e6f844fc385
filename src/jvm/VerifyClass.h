// VerifyClass: the class that runs inside a candidate and prints its properties.
//
// Either text may be empty, and goes into the command as it stands: quotes are part of it.
#ifndef CORVANE_JVM_VERIFYCLASS_H
#define CORVANE_JVM_VERIFYCLASS_H

#include "util/SString.h"

struct VerifyClass {
  SString classpath;
  SString name;

  bool empty() const { return classpath.empty() && name.empty(); }
};

#endif
