#include "fakes/FakeJVM.h"

#include <sys/stat.h>

#include <filesystem>
#include <sstream>

#include "support/TestFiles.h"

namespace fs = std::filesystem;

namespace test {
namespace {

struct Script {
  FakeJVM kind;
  const char* body;
};

const Script kScripts[] = {
    {FakeJVM::RightValues, "printf '1739021872\\n17.0.2\\nFake Vendor\\n'"},
    {FakeJVM::WrongValues, "printf '1739021872\\n1.4.2\\nFake Vendor\\n'"},
    {FakeJVM::BannerFirst,
     "printf 'Picked up options\\n\\n 17.0.2\\n1739021872\\n17.0.2\\nFake Vendor\\n'"},
    {FakeJVM::NoMagicLine, "printf '17.0.2\\nFake Vendor\\n'"},
    {FakeJVM::MagicTrailingBlank, "printf '1739021872 \\n17.0.2\\nFake Vendor\\n'"},
    {FakeJVM::MagicLeadingBlank, "printf ' 1739021872\\n17.0.2\\nFake Vendor\\n'"},
    {FakeJVM::MagicOnly, "printf '1739021872\\n'"},
    {FakeJVM::OneValueOnly, "printf '1739021872\\n17.0.2\\n'"},
    {FakeJVM::CarriageReturns, "printf '1739021872\\r\\n17.0.2\\r\\nFake Vendor\\r\\n'"},
    {FakeJVM::NoFinalNewline, "printf '1739021872\\n17.0.2\\nFake Vendor'"},
    {FakeJVM::MoreLines, "printf '1739021872\\n17.0.2\\nFake Vendor\\nbye\\n'"},
    {FakeJVM::ExitOneAfterAll, "printf '1739021872\\n17.0.2\\nFake Vendor\\n'; exit 1"},
    {FakeJVM::OnStandardError, "printf '1739021872\\n17.0.2\\nFake Vendor\\n' >&2"},
    {FakeJVM::NoOutput, ":"},
    {FakeJVM::KilledBySignal, "printf 'starting\\n'; kill -KILL $$"},
    {FakeJVM::KilledAfterAll, "printf '1739021872\\n17.0.2\\nFake Vendor\\n'; kill -KILL $$"},
    {FakeJVM::MuchOutput,
     "head -c 1000000 /dev/zero | tr '\\0' x; printf '\\n1739021872\\n17.0.2\\nFake Vendor\\n'"},
    {FakeJVM::NotExecutable, "printf '1739021872\\n17.0.2\\nFake Vendor\\n'"},
};

// The head of a 64-bit little-endian program whose processor has a number that nobody has.
std::string programForNoProcessor() {
  std::string head(
      "\x7f"
      "ELF\x02\x01\x01",
      7);
  head.append(9, '\0');
  head.append("\x02\0\xEE\xEE\x01\0\0\0", 8);
  head.append(40, '\0');
  return head;
}

void makeExecutable(const std::string& exe, FakeJVM kind) {
  fs::create_directories(fs::path(exe).parent_path());
  if (kind == FakeJVM::Directory) {
    fs::create_directory(exe);
  } else if (kind == FakeJVM::DanglingLink) {
    fs::create_symlink("not-there", exe);
  } else if (kind == FakeJVM::WrongArchitecture) {
    writeScript(exe, programForNoProcessor());
  }
}

}  // namespace

std::string makeFakeJVM(const std::string& home, FakeJVM kind) {
  for (const Script& script : kScripts) {
    if (script.kind == kind) {
      makeFakeJVM(home, script.body);
    }
  }
  const std::string exe = home + "/bin/java";
  if (kind == FakeJVM::NotExecutable) {
    chmod(exe.c_str(), 0644);
  } else {
    makeExecutable(exe, kind);
  }
  return home;
}

std::string makeFakeJVM(const std::string& home, const std::string& script,
                        const std::string& exe) {
  writeScript(home + "/" + exe,
              "#!/bin/sh\n"
              "{ for a in \"$@\"; do printf '[%s]' \"$a\"; done; echo; } >>'" +
                  home + "/calls'\n" + script + "\n");
  return home;
}

std::vector<std::string> callsOfFakeJVM(const std::string& home) {
  std::vector<std::string> calls;
  if (fs::exists(home + "/calls")) {
    std::istringstream lines(readFile(home + "/calls"));
    for (std::string line; std::getline(lines, line);) {
      calls.push_back(line);
    }
  }
  return calls;
}

}  // namespace test
