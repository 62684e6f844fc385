// The line by which a stub tells what it is. It stands in the program's constant data, so it is in
// every setup made of the stub, stripped or not; the launcher never reads it, corvane-pack does.
//
//   corvane-stub kind=KIND version=VERSION encoding=ENCODING machine=MACHINE <newline>
//
// The values are printable ASCII without blanks. KIND is the program's name. ENCODING is
// "traditional" (each language in its own) or "user" (what the user's terminal shows). MACHINE is
// the processor, as uname -m calls it. New fields are added behind the last one.
#ifndef CORVANE_ARCHIVE_STUBMARK_H
#define CORVANE_ARCHIVE_STUBMARK_H

#define CORVANE_STUB_MARK_BEGIN "corvane-stub"

inline constexpr const char* kStubMarkBegin = CORVANE_STUB_MARK_BEGIN;
inline constexpr const char* kStubMarkFields[] = {"kind", "version", "encoding", "machine"};
inline constexpr char kStubMarkEnd = '\n';

// The line, from string literals.
#define CORVANE_STUB_MARK(kind, version, encoding, machine)                       \
  CORVANE_STUB_MARK_BEGIN " kind=" kind " version=" version " encoding=" encoding \
                          " machine=" machine "\n"

#endif
