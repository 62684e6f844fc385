#include "authoring/ProgramLook.h"

#include <algorithm>
#include <array>

namespace authoring {
namespace {

using namespace std::string_view_literals;

struct MachineRow {
  unsigned number;
  bool is64Bit;
  const char* name;
};

// The names of uname(1).
constexpr MachineRow kElfMachines[] = {
    {3, false, "i686"},     {8, false, "mips"},        {20, false, "ppc"},   {21, true, "ppc64"},
    {22, true, "s390x"},    {40, false, "armv7l"},     {62, true, "x86_64"}, {183, true, "aarch64"},
    {243, true, "riscv64"}, {258, true, "loongarch64"}};

constexpr std::array kMachOBegins = {"\xFE\xED\xFA\xCE"sv, "\xFE\xED\xFA\xCF"sv,
                                     "\xCE\xFA\xED\xFE"sv, "\xCF\xFA\xED\xFE"sv};
// A program for several machines begins as a Java class does. Behind it stands how many there are,
// or the version of the class, which is at least 45.
constexpr auto kManyMachines = "\xCA\xFE\xBA\xBE"sv;
constexpr unsigned kMostMachines = 44;

unsigned byteAt(std::string_view bytes, std::size_t position) {
  return static_cast<unsigned char>(bytes[position]);
}

std::string elfMachine(std::string_view bytes) {
  constexpr std::size_t kClass = 4;
  constexpr std::size_t kOrder = 5;
  constexpr std::size_t kMachine = 18;
  if (bytes.size() < kMachine + 2) {
    return "";
  }
  const bool isLittle = byteAt(bytes, kOrder) == 1;
  const unsigned first = byteAt(bytes, kMachine);
  const unsigned second = byteAt(bytes, kMachine + 1);
  const unsigned number = isLittle ? first | second << 8 : first << 8 | second;
  for (const MachineRow& row : kElfMachines) {
    if (row.number == number && row.is64Bit == (byteAt(bytes, kClass) == 2)) {
      return row.name;
    }
  }
  return "";
}

bool isMachO(std::string_view bytes) {
  if (bytes.starts_with(kManyMachines)) {
    return bytes.size() >= 8 && byteAt(bytes, 7) <= kMostMachines;
  }
  return std::any_of(kMachOBegins.begin(), kMachOBegins.end(),
                     [bytes](std::string_view begin) { return bytes.starts_with(begin); });
}

bool isText(std::string_view bytes) {
  return !bytes.empty() && std::none_of(bytes.begin(), bytes.end(), [](char byte) {
    return byte == '\0' || (static_cast<unsigned char>(byte) < ' ' && byte != '\n' &&
                            byte != '\r' && byte != '\t' && byte != '\f' && byte != '\x1B');
  });
}

}  // namespace

ProgramLook lookAtProgram(std::string_view bytes) {
  if (bytes.starts_with("\x7F"
                        "ELF")) {
    return {ProgramKind::kElf, elfMachine(bytes), false};
  }
  if (bytes.starts_with("#!")) {
    const std::string_view line = bytes.substr(0, bytes.find('\n'));
    return {ProgramKind::kScript, "", line.ends_with('\r')};
  }
  if (isMachO(bytes)) {
    return {ProgramKind::kMachO, "", false};
  }
  return {isText(bytes) ? ProgramKind::kText : ProgramKind::kNone, "", false};
}

}  // namespace authoring
