// The line that says which stub this is. It is constant data of the program, so every setup made
// from the stub has it, stripped or not. corvane-pack reads it, the launcher does not.
//
//   corvane-stub kind=KIND version=VERSION encoding=ENCODING machine=MACHINE <newline>
//
// The values are printable ASCII without blanks. KIND is the program's name. ENCODING is
// "traditional" (each language in its own) or "user" (what the user's terminal shows). MACHINE is
// the processor, as uname -m calls it. New fields are added at the end.
#ifndef CORVANE_ARCHIVE_STUBMARK_H
#define CORVANE_ARCHIVE_STUBMARK_H

#define CORVANE_STUB_MARK_BEGIN "corvane-stub"

inline constexpr const char* kStubMarkBegin = CORVANE_STUB_MARK_BEGIN;
inline constexpr const char* kStubMarkFields[] = {"kind", "version", "encoding", "machine"};
inline constexpr char kStubMarkEnd = '\n';

// The line; its arguments are string literals.
#define CORVANE_STUB_MARK(kind, version, encoding, machine)                       \
  CORVANE_STUB_MARK_BEGIN " kind=" kind " version=" version " encoding=" encoding \
                          " machine=" machine "\n"

#endif
