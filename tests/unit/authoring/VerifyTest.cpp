// verify: whether a setup is as it was packed, and what happened to it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "authoring/AuthoringError.h"
#include "authoring/DigestBlock.h"
#include "authoring/Sha256.h"
#include "authoring/Verification.h"
#include "support/ArchiveFixture.h"
#include "unit/authoring/SetupBytes.h"

namespace {

using authoring::Soundness;
using authoring::verifySetup;
using namespace std::string_literals;

class VerifyTest : public testing::Test {
 protected:
  // "sound: 1 file, ...", or a line for each fault.
  std::string verify(const std::string& bytes) {
    const auto result = verifySetup(test::writeFile(m_dir / "setup", bytes));
    const char* const states[] = {"sound", "damaged", "unknown"};
    std::string text = states[static_cast<int>(result.soundness)];
    if (result.faults.empty()) {
      return text + ": " + result.summary;
    }
    for (const std::string& fault : result.faults) {
      text += ": " + fault;
    }
    return text;
  }

  test::TempDir m_dir;
};

// Places: stub 0 to 9, "a" 10 to 12 with a newline at 13, "b" empty, "c" 14 to 15, index 16 to 70.
std::string smallSetup() {
  return test::setupBytes({{3, 1, "a", "PKa"}, {3, 2, "b", ""}, {3, 3, "c", "c\n"}}, 2);
}

std::string flipped(std::string bytes, std::size_t place, int bit = 0) {
  bytes[place] = static_cast<char>(bytes[place] ^ 1 << bit);
  return bytes;
}

constexpr const char* kEnd =
    "damaged: its end is damaged: the digests, or what tells where the file index lies";
constexpr const char* kNoDigests =
    "unknown: has no digests: an older corvane-pack or another program packed it, and whether its "
    "bytes were changed cannot be told";

// What names the damage of the byte at `place`.
std::string faultAt(std::size_t place) {
  if (place < 10) return "damaged: the launcher program is damaged (bytes 0 to 9)";
  if (place < 13) return "damaged: a is damaged (bytes 10 to 12)";
  if (place == 13) return "damaged: the byte behind a is damaged (byte 13)";
  if (place < 16) return "damaged: c is damaged (bytes 14 to 15)";
  if (place < 71) {
    return "damaged: the file index is damaged (bytes 16 to 70), so that its files cannot be told "
           "apart";
  }
  return kEnd;
}

TEST_F(VerifyTest, NamesEachFlippedByte) {
  const std::string bytes = smallSetup();
  EXPECT_EQ("sound: 3 files, 308 bytes", verify(bytes));
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    EXPECT_EQ(faultAt(place), verify(flipped(bytes, place, static_cast<int>(place % 8)))) << place;
  }
}

TEST_F(VerifyTest, NamesEachDamagedFile) {
  EXPECT_EQ("damaged: a is damaged (bytes 10 to 12): c is damaged (bytes 14 to 15)",
            verify(flipped(flipped(smallSetup(), 10), 14)));
}

// Several changes at once, of any kind: never sound, and no other error than our own.
TEST_F(VerifyTest, FindsAnyDamage) {
  std::mt19937 random(20260);
  const std::string setup = smallSetup();
  const auto upTo = [&random](std::size_t count) { return random() % count; };
  for (int i = 0; i < 600; ++i) {
    std::string bytes = setup;
    for (std::size_t changes = 1 + upTo(4); changes > 0 && !bytes.empty(); --changes) {
      const std::size_t place = upTo(bytes.size());
      switch (upTo(4)) {
        case 0:
          bytes.erase(place, 1 + upTo(40));
          break;
        case 1:
          bytes.insert(place, bytes.substr(upTo(bytes.size()), 1 + upTo(40)));
          break;
        default:
          bytes = flipped(bytes, place, static_cast<int>(upTo(8)));
      }
    }
    if (bytes == setup) continue;
    try {
      EXPECT_FALSE(verify(bytes).starts_with("sound")) << i;
    } catch (const authoring::AuthoringError&) {
    }
  }
}

// --- What a setup cannot be without a liar ---

struct LiarRow {
  const char* name;
  std::string index;
  std::vector<std::string> pieces;  // whose digests are stored
  std::string told;
};

const std::string kOther =
    "damaged: its files lie otherwise than its digests tell; another program has changed it";

const LiarRow kLiarRows[] = {
    {"files that overlap",
     authoring::encodeIndex({{3, 1, 3, 10, "a", {}}, {3, 2, 3, 11, "b", {}}}),
     {"#!/bin/sh\n", "abc", "bc"},
     kOther},
    {"a file behind the index",
     authoring::encodeIndex({{3, 1, 3, 1000, "a", {}}}),
     {"#!/bin/sh\n", "abc"},
     kOther},
    {"a negative length",
     authoring::encodeIndex({{3, 1, -3, 13, "a", {}}}),
     {"#!/bin/sh\n", "abc"},
     kOther},
    {"more digests than files", authoring::encodeIndex({}), {"#!/bin/sh\nabc", "abc"}, kOther},
    {"fewer digests than files",
     authoring::encodeIndex({{3, 1, 3, 10, "a", {}}}),
     {"#!/bin/sh\n"},
     kOther},
    {"an index of no type",
     authoring::encodeIndex({{9, 1, 3, 10, "a", {}}}),
     {"#!/bin/sh\n", "abc"},
     "DIR/setup: entry 0 of the file index cannot be read: Invalid file type in file index."},
};

TEST_F(VerifyTest, BelievesNoLiar) {
  for (const LiarRow& row : kLiarRows) {
    SCOPED_TRACE(row.name);
    const std::string begin = std::string(test::kStub) + "abc";
    std::vector<std::string> digests;
    for (const std::string& piece : row.pieces) {
      digests.push_back(authoring::sha256Of(piece));
    }
    digests.push_back(authoring::sha256Of(row.index));
    const std::string end =
        '\0' + authoring::encodeTrailer(static_cast<std::int64_t>(begin.size()));
    const auto offset = static_cast<std::int64_t>(begin.size() + row.index.size());
    std::string told;
    const std::string error = test::errorOf<authoring::AuthoringError>([&] {
      told = verify(begin + row.index + authoring::encodeDigests(offset, digests, end) + end);
    });
    EXPECT_EQ(row.told, told + test::replaced(error, m_dir.path(), "DIR"));
  }
}

// --- By its look ---

class LookTest : public VerifyTest {
 protected:
  std::string m_stub = test::readFile(CORVANE_STUB);
  std::string m_whole = test::setupBytes(allTypes(), 1, m_stub);
};

constexpr const char* kText =
    "damaged: was changed by a transfer as text (carriage returns were put into it); transfer it "
    "as binary";
constexpr const char* kCut =
    "damaged: was cut off: files follow the launcher program, but their index, which is the end of "
    "a setup, is missing";
constexpr const char* kBare =
    "damaged: carries no files: it is a bare launcher, or strip or a tool like it has removed them";

std::string behind(const char* count, std::size_t size) {
  return "damaged: has " + std::string(count) +
         " behind its end, so that its files are not found; the setup is its first " +
         std::to_string(size) + " bytes";
}

std::string cutProgram(std::size_t size, std::size_t wanted) {
  return "damaged: was cut off inside the launcher program: it has " + std::to_string(size) +
         " bytes of more than " + std::to_string(wanted);
}

// For each CR LF an LF.
std::string withoutReturns(const std::string& bytes) {
  return test::replaced(bytes, "\r\n", "\n");
}

TEST_F(LookTest, TellsWhatHappened) {
  const std::size_t size = m_whole.size();
  const std::size_t stub = m_stub.size();
  // "\r\n" that a transfer takes out, in a file that is large enough to hold some anyway.
  const std::string returns = test::setupBytes({{3, 1, "a", "a\r\nb\r\n"}}, 0, m_stub);
  const auto taken = static_cast<long>(returns.size() - withoutReturns(returns).size());
  struct Row {
    const char* name;
    std::string bytes;
    std::string told;
  };
  const Row rows[] = {
      {"whole", m_whole,
       "sound: 9 files, " + std::to_string(size) +
           " bytes, stub corvane-launcher " CORVANE_VERSION " (" CORVANE_MACHINE ")"},
      {"a byte short", m_whole.substr(0, size - 1), kCut},
      {"cut in the digests", m_whole.substr(0, size - 100), kCut},
      {"cut in the files", m_whole.substr(0, stub + 20), kCut},
      {"cut behind the program", m_stub, kBare},
      {"cut in the program", m_stub.substr(0, stub - 1), cutProgram(stub - 1, stub)},
      {"cut after 1000 bytes", m_stub.substr(0, 1000), cutProgram(1000, stub)},
      {"a newline behind the end", m_whole + "\n", behind("1 byte", size)},
      {"zeros behind the end", m_whole + std::string(512, '\0'), behind("512 bytes", size)},
      {"an unfinished download", m_whole.substr(0, stub + 20) + std::string(5000, '\0'),
       "damaged: ends with zeros, as a download leaves them that was not finished"},
      {"a byte put in", m_stub.substr(0, 100) + "x" + m_whole.substr(100),
       "damaged: 1 byte was put into it, somewhere in front of its end"},
      {"bytes lost", m_stub.substr(0, 100) + m_whole.substr(110),
       "damaged: 10 bytes are missing, somewhere in front of its end"},
      {"a transfer as text", test::replaced(m_whole, "\n", "\r\n"), kText},
      {"a transfer as text, cut", test::replaced(m_stub, "\n", "\r\n"), kText},
      {"a transfer as text the other way", withoutReturns(returns),
       "damaged: " + std::to_string(taken) +
           " bytes are missing, somewhere in front of its end, as after a transfer as text that "
           "takes carriage returns out"},
      {"a setup behind a setup", m_whole + m_whole, kEnd},
      {"an embedded setup, cut behind it",
       [&] {
         const std::string outer = test::setupBytes({{7, 1, "inner", m_whole}}, 0, m_stub);
         return outer.substr(0, stub + size);
       }(),
       "damaged: " + std::to_string(stub) +
           " bytes were put into it, somewhere in front of its end"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.told, verify(row.bytes));
  }
}

TEST_F(LookTest, KnowsSetupsWithoutDigests) {
  const std::string old = test::launcherFileBytes(allTypes(), 1, m_stub);
  struct Row {
    const char* name;
    std::string bytes;
    std::string told;
  };
  const Row rows[] = {
      {"whole", old, kNoDigests},
      {"no files", test::launcherFileBytes({}), kNoDigests},
      {"cut", old.substr(0, old.size() - 1), kCut},
      {"bytes lost in the program", old.substr(10),
       "damaged: entry 0 of the file index cannot be read: Invalid file type in file index."},
      {"a file that lies outside",
       test::launcherFileBytes(
           "PK", authoring::encodeIndex({{3, 1, 2, 10, "a", {}}, {3, 2, 500, 0, "b\x1B", {}}})),
       "damaged: the bytes of b\\x1B lie outside the file"},
      {"a later form", test::replaced(smallSetup(), "corvane-sha256-1", "corvane-sha256-2"),
       "unknown: has digests of a later form; use a later corvane-pack"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.told, verify(row.bytes));
  }
}

TEST_F(LookTest, KnowsWhatRemovesTheFiles) {
  const std::string path = test::writeFile(m_dir / "stripped", m_whole);
  if (std::system("command -v strip >/dev/null") != 0) {
    GTEST_SKIP() << "there is no strip";
  }
  ASSERT_EQ(0, std::system(("strip '" + path + "'").c_str()));
  EXPECT_EQ(kBare, verify(test::readFile(path)));
}

struct ForeignRow {
  const char* bytes;
  const char* error;
};

TEST_F(VerifyTest, RefusesWhatIsNoSetup) {
  for (const ForeignRow& row : {ForeignRow{"hello\n", "a text"}, ForeignRow{"", "an empty file"}}) {
    EXPECT_EQ(m_dir / "setup is no launcher file; it looks like " + row.error,
              test::errorOf<authoring::AuthoringError>([&] { verify(row.bytes); }));
  }
  EXPECT_EQ(m_dir / "none: No such file or directory",
            test::errorOf<authoring::AuthoringError>([&] { verifySetup(m_dir / "none"); }));
}

// --- SHA-256 itself ---

struct SumRow {
  std::string bytes;
  const char* hex;
};

// The examples of the standard.
const SumRow kSumRows[] = {
    {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
    {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
    {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
     "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
    {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
};

TEST(Sha256Test, MakesTheDigestsOfTheStandard) {
  authoring::Sha256 sum;
  for (const SumRow& row : kSumRows) {
    EXPECT_EQ(row.hex, authoring::hexOf(authoring::sha256Of(row.bytes)));
    for (const char byte : row.bytes) {
      sum.add({&byte, 1});
    }
    EXPECT_EQ(row.hex, authoring::hexOf(sum.finish()));
  }
}

// Large and small stretches, within pieces and between them.
TEST(DigestCollectorTest, SeesTheSameBytesAsTheWriter) {
  authoring::DigestCollector digests(true);
  const std::string large(300000, 'x');
  const std::string bytes =
      test::launcherFileBytes({{3, 1, "a", large}, {3, 2, "b", "b"}}, 0, large, &digests);
  EXPECT_EQ(authoring::sha256Of(bytes), digests.wholeFile());
}

}  // namespace
