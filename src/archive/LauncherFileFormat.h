// The layout of a launcher file, drawn once for its reader, its writer and the tests.
//
//   executable | embedded files ... | file index | purpose byte | trailer
//
// (The order of embedded files and index is free; the offsets say where they are. Between the index
// and the purpose byte there may be anything: corvane-pack stores its digests there, and draws them
// in authoring/DigestBlock.h.) Numbers are signed and big-endian; offsets count from the beginning
// of the file.
//
//   trailer, the last 8 bytes       file index entry
//     4  offset of the file index     1  file type, 0..8
//     4  identification CA 82 CA 82   4  file id
//                                     4  file length: stored bytes
//   purpose byte: the byte in front   4  offset to file bytes
//   of the trailer                    2  string length L
//                                     L  file name, no newline in it
//   file index                        1  compressed flag: only 1 means yes
//     4  file count N                 when compressed:
//     N  entries, one after another     4  decompressed file count
//                                       4  decompressed size in bytes
#ifndef CORVANE_ARCHIVE_LAUNCHERFILEFORMAT_H
#define CORVANE_ARCHIVE_LAUNCHERFILEFORMAT_H

#include <cstdint>

enum LauncherFileType : std::int32_t {
  FILE_TYPE_INSTRUCTIONS = 0,   // tag file
  FILE_TYPE_JVM = 1,            // tag file
  FILE_TYPE_LAUNCH_SCRIPT = 2,  // tag file
  FILE_TYPE_JAR = 3,            // archive for the class path
  FILE_TYPE_JVM_INSTALLER = 4,  // made executable on extraction
  FILE_TYPE_VERIFY_JAR = 5,
  FILE_TYPE_APPLICATION_ARCHIVE = 6,
  FILE_TYPE_LAUNCHER = 7,     // made executable on extraction
  FILE_TYPE_JVM_MESSAGE = 8,  // tag file
  FILE_TYPE_LAST = FILE_TYPE_JVM_MESSAGE
};

constexpr bool isTagFileType(std::int32_t type) {
  return type == FILE_TYPE_INSTRUCTIONS || type == FILE_TYPE_JVM ||
         type == FILE_TYPE_LAUNCH_SCRIPT || type == FILE_TYPE_JVM_MESSAGE;
}

// Types that are programs: they become executable when they are extracted.
constexpr bool isProgramType(std::int32_t type) {
  return type == FILE_TYPE_JVM_INSTALLER || type == FILE_TYPE_LAUNCHER;
}

inline constexpr long kTrailerSize = 8;
inline constexpr long kPurposeOffsetFromEnd = kTrailerSize + 1;
inline constexpr std::uint32_t kLauncherIdentification = 0xCA82CA82u;
inline constexpr unsigned char kCompressedFlag = 1;
inline constexpr std::int32_t kMaxNameLength = 32767;

#endif
