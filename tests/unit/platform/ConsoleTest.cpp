// The console: writers, status lines, progress, visibility, messages.
#include "platform/Console.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/PlatformImpl.h"
#include "platform/SubStatusWrapper.h"
#include "support/ConsoleState.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"

namespace {

using test::setMode;
using test::str;
using enum test::Mode;

// --- Writers ---

struct WriterRow {
  const char* name;
  bool enabled;
  void (*write)();
  const char* wanted;
};

const WriterRow kWriterRows[] = {
    {"line of a C text", true, [] { writeLine("ab"); }, "ab\n"},
    {"line of a string", true, [] { writeLine(SString("ab")); }, "ab\n"},
    {"empty line", true, [] { writeLine(""); }, "\n"},
    {"line keeps percent signs", true, [] { writeLine("100%s %%"); }, "100%s %%\n"},
    {"line ends at a zero byte", true, [] { writeLine(SString("a\0b", 3)); }, "a\n"},
    {"line keeps its bytes", true, [] { writeLine("\xC4\xE9\x01 "); }, "\xC4\xE9\x01 \n"},
    {"line while disabled", false, [] { writeLine("ab"); }, ""},
    {"string line while disabled", false, [] { writeLine(SString("ab")); }, ""},
    {"text without newline", true, [] { write("ab"); }, "ab"},
    {"write-interprets-percent", true, [] { write("100%% sure"); }, "100% sure"},
    {"text while disabled", false, [] { write("ab"); }, ""},
};

TEST(Console, Writers) {
  for (const WriterRow& row : kWriterRows) {
    g_console.g_enableOutput = row.enabled;
    EXPECT_EQ(row.wanted, test::captureStdout(row.write)) << row.name;
  }
}

TEST(Console, WriteIsSeenAtOnce) {
  test::captureStdout([] {
    writeLine("line");
    write(".");
    EXPECT_EQ(6, test::writtenSoFar());
  });
}

// --- Status lines ---

struct StatusRow {
  const char* name;
  test::Mode mode;
  int status;
  const char* title;
  const char* wanted;
};

const StatusRow kStatusRows[] = {
    {"initializing", Shown, UI_STATUS_INITIALIZING, "Foo", "\nInitializing Foo...\n"},
    {"initializing without a title", Shown, UI_STATUS_INITIALIZING, "", "\nInitializing ...\n"},
    {"title with percent signs", Shown, UI_STATUS_RUNNING, "5%s%%", "\nRunning 5%s%%...\n"},
    {"searching", Shown, UI_STATUS_SEARCHING, "Foo",
     "\nSearching for Java(tm) Virtual Machine...\n"},
    {"launch-failed-runs-together", Shown, UI_STATUS_LAUNCH_FAILED, "Foo",
     "\nNo Java(tm) Virtual Machine was found.Foo could not be launched.\n"},
    {"running", Shown, UI_STATUS_RUNNING, "Foo", "\nRunning Foo...\n"},
    {"preparing", Shown, UI_STATUS_PREPARING_JVM, "Foo",
     "\nPreparing Java(tm) Virtual Machine...\n"},
    {"first unknown status", Shown, 5, "Foo", ""},
    {"other unknown status", Shown, 7, "Foo", ""},
    {"hidden", Hidden, UI_STATUS_RUNNING, "Foo", ""},
    {"hidden, two texts", Hidden, UI_STATUS_LAUNCH_FAILED, "Foo", ""},
    {"silent", Silent, UI_STATUS_RUNNING, "Foo", ""},
    {"silent, two texts", Silent, UI_STATUS_LAUNCH_FAILED, "Foo", ""},
};

TEST(Console, StatusLines) {
  for (const StatusRow& row : kStatusRows) {
    setMode(row.mode);
    g_console.g_title = row.title;
    const auto output =
        test::captureStdout([&] { PlatformImpl::setUIStatus(static_cast<UIStatus>(row.status)); });
    EXPECT_EQ(row.wanted, output) << row.name;
  }
}

// --- Sub-status ---

struct SubStatusRow {
  const char* name;
  test::Mode mode;
  int subStatus;
  const char* wantedData;
};

const SubStatusRow kSubStatusRows[] = {
    {"none", Shown, UI_SUBSTATUS_NONE, "data"},
    {"sub-status-never-shown: searching", Shown, UI_SUBSTATUS_SEARCHING_FOR, "data"},
    {"sub-status-never-shown: scanning", Shown, UI_SUBSTATUS_SCANNING_DISKS, "data"},
    {"sub-status-never-shown: verifying", Shown, UI_SUBSTATUS_VERIFYING, "data"},
    {"hidden", Hidden, UI_SUBSTATUS_VERIFYING, "data"},
    {"silent changes nothing", Silent, UI_SUBSTATUS_VERIFYING, "before"},
};

TEST(Console, SubStatus) {
  for (const SubStatusRow& row : kSubStatusRows) {
    setMode(Shown);
    PlatformImpl::setUISubStatus(UI_SUBSTATUS_NONE, "before");
    setMode(row.mode);
    const auto output = test::captureStdout(
        [&] { PlatformImpl::setUISubStatus(static_cast<UISubStatus>(row.subStatus), "data"); });
    EXPECT_EQ("", output) << row.name;
    EXPECT_EQ(UI_SUBSTATUS_NONE, PlatformImpl::getUISubStatus()) << row.name;
    EXPECT_EQ(row.wantedData, str(PlatformImpl::getUISubStatusData())) << row.name;
  }
}

TEST(Console, SubStatusWrapperPutsBack) {
  PlatformImpl::setUISubStatus(UI_SUBSTATUS_SEARCHING_FOR, "outer");
  const auto output = test::captureStdout([] {
    const SubStatusWrapper wrapper;
    PlatformImpl::setUISubStatus(UI_SUBSTATUS_VERIFYING, "inner");
    EXPECT_EQ("inner", str(PlatformImpl::getUISubStatusData()));
  });
  EXPECT_EQ("", output);
  EXPECT_EQ(UI_SUBSTATUS_NONE, PlatformImpl::getUISubStatus());
  EXPECT_EQ("outer", str(PlatformImpl::getUISubStatusData()));
}

// --- Progress ---

struct Step {
  enum Kind { Set, Advance } kind;
  std::int32_t value;
};

struct ProgressRow {
  const char* name;
  test::Mode mode;
  std::vector<Step> steps;
  std::string wanted;
  std::int32_t progress;
  std::int32_t block;
};

constexpr Step::Kind Set = Step::Set;
constexpr Step::Kind Advance = Step::Advance;
constexpr std::int32_t kMost = 2147483647;
constexpr std::int32_t kLeast = -kMost - 1;

std::string dots(std::size_t count) {
  return std::string(count, '.');
}

const ProgressRow kProgressRows[] = {
    {"set to 0", Shown, {{Set, 0}}, "", 0, 0},
    {"set to 69", Shown, {{Set, 69}}, "", 69, 0},
    {"set to 70", Shown, {{Set, 70}}, "\n", 70, 1},
    {"set to 139", Shown, {{Set, 139}}, "\n", 139, 1},
    {"set to 140 skips a row", Shown, {{Set, 140}}, "\n", 140, 2},
    {"set back within closed rows", Shown, {{Set, 140}, {Set, 100}}, "\n", 100, 2},
    {"progress-rows-stay-closed", Shown, {{Set, 140}, {Set, 0}, {Set, 209}}, "\n", 209, 2},
    {"next row after going back", Shown, {{Set, 140}, {Set, 0}, {Set, 210}}, "\n\n", 210, 3},
    {"set below 0", Shown, {{Set, -71}}, "", -71, 0},
    {"set to the most", Shown, {{Set, kMost}}, "\n", kMost, kMost / 70},
    {"set hidden", Hidden, {{Set, 140}}, "", 140, 0},
    {"set silent", Silent, {{Set, 140}}, "", 0, 0},
    {"progress-counts-double", Shown, {{Advance, 1}}, ".", 2, 0},
    {"advance by 3", Shown, {{Advance, 3}}, "...", 6, 0},
    {"advance by 0", Shown, {{Advance, 0}}, "", 0, 0},
    {"advance by less than 0", Shown, {{Advance, -2}}, "", -4, 0},
    {"34 dots", Shown, {{Advance, 34}}, dots(34), 68, 0},
    {"35 dots end a row", Shown, {{Advance, 35}}, dots(35) + "\n", 70, 1},
    {"70 dots at once end one row", Shown, {{Advance, 70}}, dots(70) + "\n", 140, 2},
    {"34 dots and 1", Shown, {{Advance, 34}, {Advance, 1}}, dots(34) + ".\n", 70, 1},
    {"a row and a dot", Shown, {{Advance, 35}, {Advance, 1}}, dots(35) + "\n.", 72, 1},
    {"advance hidden", Hidden, {{Advance, 35}}, "", 70, 0},
    {"advance silent", Silent, {{Advance, 35}}, "", 0, 0},
    {"the sum wraps around", Shown, {{Set, kMost}, {Advance, 1}}, "\n.", kLeast + 1, kMost / 70},
    {"the sum wraps at the second addition",
     Shown,
     {{Set, kMost - 1}, {Advance, 1}},
     "\n.",
     kLeast,
     kMost / 70},
};

void apply(const Step& step) {
  if (step.kind == Step::Set) {
    PlatformImpl::setUIProgress(step.value);
  } else {
    PlatformImpl::advanceUIProgress(step.value);
  }
}

TEST(Console, Progress) {
  for (const ProgressRow& row : kProgressRows) {
    setMode(row.mode);
    g_console.ui_progress = 0;
    g_console.ui_progressBlock = 0;
    const auto output = test::captureStdout([&] {
      for (const Step& step : row.steps) {
        apply(step);
      }
    });
    EXPECT_EQ(row.wanted, output) << row.name;
    EXPECT_EQ(row.progress, g_console.ui_progress) << row.name;
    EXPECT_EQ(row.block, g_console.ui_progressBlock) << row.name;
  }
}

TEST(Console, HiddenProgressEndsARowOnceShown) {
  PlatformImpl::hideUI(0);
  PlatformImpl::setUIProgress(100);
  PlatformImpl::showUI();
  EXPECT_EQ(".\n", test::captureStdout([] { PlatformImpl::advanceUIProgress(1); }));
  EXPECT_EQ(1, g_console.ui_progressBlock);
}

// --- Visibility ---

struct VisibilityRow {
  const char* name;
  test::Mode before;
  void (*action)();
  bool wantedVisible;
};

const VisibilityRow kVisibilityRows[] = {
    {"at first", Shown, [] {}, true},
    {"hide", Shown, [] { PlatformImpl::hideUI(0); }, false},
    {"hide ignores its argument", Shown, [] { PlatformImpl::hideUI(30000); }, false},
    {"hide twice", Hidden, [] { PlatformImpl::hideUI(0); }, false},
    {"show", Hidden, [] { PlatformImpl::showUI(); }, true},
    {"show twice", Shown, [] { PlatformImpl::showUI(); }, true},
    {"show in silent mode hides", Silent, [] { PlatformImpl::showUI(); }, false},
    {"show in silent mode while hidden", SilentAndHidden, [] { PlatformImpl::showUI(); }, false},
    {"silent mode alone does not hide", Shown, [] { PlatformImpl::setSilent(true); }, true},
    {"the end of silent mode does not show", SilentAndHidden,
     [] { PlatformImpl::setSilent(false); }, false},
};

TEST(Console, Visibility) {
  for (const VisibilityRow& row : kVisibilityRows) {
    setMode(row.before);
    EXPECT_EQ("", test::captureStdout(row.action)) << row.name;
    EXPECT_EQ(row.wantedVisible, PlatformImpl::isUIVisible()) << row.name;
  }
}

TEST(Console, IsVisibleAndNotSilentAtFirst) {
  EXPECT_TRUE(PlatformImpl::isUIVisible());
  EXPECT_FALSE(PlatformTestAccess::isSilent());
}

// --- Messages ---

struct MessageRow {
  const char* name;
  test::Mode mode;
  const char* text;
  const char* wanted;
};

const MessageRow kMessageRows[] = {
    {"shown", Shown, "Bad news.", "Bad news.\n"},
    {"messages-show-while-hidden", Hidden, "Bad news.", "Bad news.\n"},
    {"silent", Silent, "Bad news.", ""},
    {"silent and hidden", SilentAndHidden, "Bad news.", ""},
    {"empty", Shown, "", "\n"},
    {"several lines", Shown, "a\nb\n", "a\nb\n\n"},
    {"percent signs are text", Shown, "%s%n%%", "%s%n%%\n"},
};

TEST(Console, Messages) {
  for (const MessageRow& row : kMessageRows) {
    setMode(row.mode);
    EXPECT_EQ(row.wanted, test::captureStdout([&] { PlatformImpl::showUIMessage(row.text); }))
        << row.name;
  }
}

}  // namespace
