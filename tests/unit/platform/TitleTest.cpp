// The title: its escapes, and its way into the user's encoding.
#include <gtest/gtest.h>

#include "platform/Console.h"
#include "platform/PlatformImpl.h"
#include "support/ConsoleState.h"
#include "support/TestFiles.h"

namespace {

using test::str;
using enum test::Mode;

struct TitleRow {
  const char* name;
  test::Mode mode;
  const char* title;
  const char* wantedOutput;
  const char* wantedTitle;
};

// In the locale "C".
const TitleRow kTitleRows[] = {
    {"plain", Shown, "Foo 1.0", "Foo 1.0\n", "Foo 1.0"},
    {"hidden", Hidden, "Foo", "", "Foo"},
    {"silent keeps it too", Silent, "Foo", "", "Foo"},
    {"empty", Shown, "", "\n", ""},
    {"percent signs are text", Shown, "5%s", "5%s\n", "5%s"},
    {"escape in ASCII", Shown, "a\\u0042c", "aBc\n", "aBc"},
    {"upper-case escape", Shown, "a\\U0042c", "aBc\n", "aBc"},
    {"last ASCII character", Shown, "a\\u007fc",
     "a\x7F"
     "c\n",
     "a\x7F"
     "c"},
    {"escape that is none", Shown, "C:\\users", "C:\\users\n", "C:\\users"},
    {"first character beyond ASCII ends it", Shown, "ab\\u0080c", "ab\n", "ab"},
    {"letter beyond ASCII ends it", Shown, "Caf\\u00e9 x", "Caf\n", "Caf"},
    {"stray byte ends it", Shown, "Caf\xC3\xA9 x", "Caf\n", "Caf"},
    {"escape of the zero character ends it", Shown, "ab\\u0000cd", "ab\n", "ab"},
    {"nothing can be converted: the title before stays", Shown, "\\u65e5\\u672c", "before\n",
     "before"},
    {"the same in silent mode", Silent, "\\u65e5\\u672c", "", "before"},
};

void checkTitle(const TitleRow& row) {
  test::setMode(row.mode);
  g_console.g_title = "before";
  const auto output = test::captureStdout([&] { PlatformImpl::setUITitle(row.title); });
  EXPECT_EQ(row.wantedOutput, output) << row.name;
  EXPECT_EQ(row.wantedTitle, str(g_console.g_title)) << row.name;
}

TEST(Title, TitleWithoutLocale) {
  const test::ScopedEnvironment all("LC_ALL", "C");
  for (const TitleRow& row : kTitleRows) {
    checkTitle(row);
  }
}

const TitleRow kUtf8TitleRows[] = {
    {"Latin", Shown, "Caf\\u00e9 x", "Caf\xC3\xA9 x\n", "Caf\xC3\xA9 x"},
    {"Japanese", Shown, "\\u65E5\\u672c", "\xE6\x97\xA5\xE6\x9C\xAC\n", "\xE6\x97\xA5\xE6\x9C\xAC"},
    {"last two-byte and first three-byte character", Shown, "\\u07ff\\u0800",
     "\xDF\xBF\xE0\xA0\x80\n", "\xDF\xBF\xE0\xA0\x80"},
    {"Latin in silent mode", Silent, "Caf\\u00e9", "", "Caf\xC3\xA9"},
    {"stray byte ends it", Shown, "\\u00e9\xC3\xA9 x", "\xC3\xA9\n", "\xC3\xA9"},
    {"half of a pair ends it", Shown, "a\\ud83d\\ude00", "a\n", "a"},
};

TEST(Title, TitleInUtf8) {
  const test::ScopedEnvironment all("LC_ALL", "C.UTF-8");
  for (const TitleRow& row : kUtf8TitleRows) {
    checkTitle(row);
  }
}

// Which variables choose the title's encoding. No locale "xx_YY" is installed anywhere.
struct TitleLocaleRow {
  const char* name;
  const char* all;
  const char* ctype;
  const char* lang;
  const char* wanted;
};

constexpr const char* kAccented = "Caf\xC3\xA9";

const TitleLocaleRow kTitleLocaleRows[] = {
    {"nothing set", nullptr, nullptr, nullptr, "Caf"},
    {"LANG alone", nullptr, nullptr, "C.UTF-8", kAccented},
    {"LC_CTYPE alone", nullptr, "C.UTF-8", nullptr, kAccented},
    {"LC_ALL alone", "C.UTF-8", nullptr, nullptr, kAccented},
    {"LC_CTYPE before LANG", nullptr, "C", "C.UTF-8", "Caf"},
    {"LC_ALL before LC_CTYPE", "C", "C.UTF-8", "C.UTF-8", "Caf"},
    {"empty variables do not count", "", "", "C.UTF-8", kAccented},
    {"unknown locale in UTF-8", nullptr, nullptr, "xx_YY.UTF-8", kAccented},
    {"unknown locale in utf8", nullptr, nullptr, "xx_YY.utf8@euro", kAccented},
    {"unknown locale in another encoding", nullptr, nullptr, "xx_YY.ISO-8859-1", "Caf"},
    {"unknown locale without encoding", nullptr, nullptr, "xx_YY", "Caf"},
    {"unknown LC_ALL hides LANG", "xx_YY", nullptr, "C.UTF-8", "Caf"},
    {"unknown LC_CTYPE in UTF-8", "", "xx_YY.UTF-8", "C", kAccented},
    {"unknown LC_ALL before unknown LC_CTYPE", "xx_YY", "xx_YY.UTF-8", nullptr, "Caf"},
    {"the same in UTF-8", "xx_YY.UTF-8", "xx_YY", "C", kAccented},
};

TEST(Title, TitleLocales) {
  for (const TitleLocaleRow& row : kTitleLocaleRows) {
    const test::ScopedEnvironment all("LC_ALL", row.all);
    const test::ScopedEnvironment ctype("LC_CTYPE", row.ctype);
    const test::ScopedEnvironment lang("LANG", row.lang);
    test::captureStdout([] { PlatformImpl::setUITitle("Caf\\u00e9"); });
    EXPECT_EQ(row.wanted, str(g_console.g_title)) << row.name;
  }
}

}  // namespace
