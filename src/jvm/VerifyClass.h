// VerifyClass: the class that runs inside a candidate and prints its properties.
//
// Either text may be empty. Both go into the command as they are, with their quotes.
#ifndef CORVANE_JVM_VERIFYCLASS_H
#define CORVANE_JVM_VERIFYCLASS_H

#include "launchscript/CommandText.h"

struct VerifyClass {
  CommandText classpath;
  CommandText name;
  bool isPacked = false;  // it prints the properties and nothing else

  bool empty() const { return classpath.empty() && name.empty(); }
};

#endif
