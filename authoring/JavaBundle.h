// JavaBundle: makes the Java installer of a setup, a shell program that carries a Java.
//
// The launcher starts it for INSTALL_JVM: docs/authoring.md has the contract.
#ifndef CORVANE_AUTHORING_JAVABUNDLE_H
#define CORVANE_AUTHORING_JAVABUNDLE_H

#include <cstdint>
#include <string>

namespace authoring {

// `source` is the folder of a JDK or of a jlink image, or an archive of one. The same Java gives
// the same bytes. Returns how many files are in it. Throws AuthoringError.
std::int64_t bundleJava(const std::string& source, const std::string& output);

}  // namespace authoring

#endif
