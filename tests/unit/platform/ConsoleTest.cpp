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
  std::string wanted = "";
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
    {.name = "set to 0", .mode = Shown, .steps = {{Set, 0}}, .progress = 0, .block = 0},
    {.name = "set to 69", .mode = Shown, .steps = {{Set, 69}}, .progress = 69, .block = 0},
    {.name = "set to 70",
     .mode = Shown,
     .steps = {{Set, 70}},
     .wanted = "\n",
     .progress = 70,
     .block = 1},
    {.name = "set to 139",
     .mode = Shown,
     .steps = {{Set, 139}},
     .wanted = "\n",
     .progress = 139,
     .block = 1},
    {.name = "set to 140 skips a row",
     .mode = Shown,
     .steps = {{Set, 140}},
     .wanted = "\n",
     .progress = 140,
     .block = 2},
    {.name = "set back within closed rows",
     .mode = Shown,
     .steps = {{Set, 140}, {Set, 100}},
     .wanted = "\n",
     .progress = 100,
     .block = 2},
    {.name = "progress-rows-stay-closed",
     .mode = Shown,
     .steps = {{Set, 140}, {Set, 0}, {Set, 209}},
     .wanted = "\n",
     .progress = 209,
     .block = 2},
    {.name = "next row after going back",
     .mode = Shown,
     .steps = {{Set, 140}, {Set, 0}, {Set, 210}},
     .wanted = "\n\n",
     .progress = 210,
     .block = 3},
    {.name = "set below 0", .mode = Shown, .steps = {{Set, -71}}, .progress = -71, .block = 0},
    {.name = "set to the most",
     .mode = Shown,
     .steps = {{Set, kMost}},
     .wanted = "\n",
     .progress = kMost,
     .block = kMost / 70},
    {.name = "set hidden", .mode = Hidden, .steps = {{Set, 140}}, .progress = 140, .block = 0},
    {.name = "set silent", .mode = Silent, .steps = {{Set, 140}}, .progress = 0, .block = 0},
    {.name = "progress-counts-double",
     .mode = Shown,
     .steps = {{Advance, 1}},
     .wanted = ".",
     .progress = 2,
     .block = 0},
    {.name = "advance by 3",
     .mode = Shown,
     .steps = {{Advance, 3}},
     .wanted = "...",
     .progress = 6,
     .block = 0},
    {.name = "advance by 0", .mode = Shown, .steps = {{Advance, 0}}, .progress = 0, .block = 0},
    {.name = "advance by less than 0",
     .mode = Shown,
     .steps = {{Advance, -2}},
     .progress = -4,
     .block = 0},
    {.name = "34 dots",
     .mode = Shown,
     .steps = {{Advance, 34}},
     .wanted = dots(34),
     .progress = 68,
     .block = 0},
    {.name = "35 dots end a row",
     .mode = Shown,
     .steps = {{Advance, 35}},
     .wanted = dots(35) + "\n",
     .progress = 70,
     .block = 1},
    {.name = "70 dots at once end one row",
     .mode = Shown,
     .steps = {{Advance, 70}},
     .wanted = dots(70) + "\n",
     .progress = 140,
     .block = 2},
    {.name = "34 dots and 1",
     .mode = Shown,
     .steps = {{Advance, 34}, {Advance, 1}},
     .wanted = dots(34) + ".\n",
     .progress = 70,
     .block = 1},
    {.name = "a row and a dot",
     .mode = Shown,
     .steps = {{Advance, 35}, {Advance, 1}},
     .wanted = dots(35) + "\n.",
     .progress = 72,
     .block = 1},
    {.name = "advance hidden",
     .mode = Hidden,
     .steps = {{Advance, 35}},
     .progress = 70,
     .block = 0},
    {.name = "advance silent", .mode = Silent, .steps = {{Advance, 35}}, .progress = 0, .block = 0},
    {.name = "the sum wraps around",
     .mode = Shown,
     .steps = {{Set, kMost}, {Advance, 1}},
     .wanted = "\n.",
     .progress = kLeast + 1,
     .block = kMost / 70},
    {.name = "the sum wraps at the second addition",
     .mode = Shown,
     .steps = {{Set, kMost - 1}, {Advance, 1}},
     .wanted = "\n.",
     .progress = kLeast,
     .block = kMost / 70},
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
