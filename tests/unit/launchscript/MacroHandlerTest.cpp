#include "launchscript/MacroHandler.h"

#include <gtest/gtest.h>

#include <map>

#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

using test::sstr;
using test::str;

struct Row {
  const char* name;
  std::string text;
  std::string wanted;
  std::vector<std::string> wantedNames;  // handed to the handler, in order
};

// What the names in the rows stand for; all others stand for nothing.
const std::map<std::string, std::string> kValues = {
    {"A", "alpha"},
    {"B", "beta"},
    {"opens", "%"},
    {"nested", "<%A%>"},
    {"pair", "%%"},
    {"half", "%A"},
    {"%b", "odd name"},
    {"long", "0123456789%A%0123456789"},
    {"deep", "%nested%%nested%"},
    {"x y", "blank"},
};

const Row kRows[] = {
    {"empty", "", "", {}},
    {"no delimiter", "plain", "plain", {}},
    {"one delimiter alone", "%", "%", {}},
    {"one delimiter first", "%abc", "%abc", {}},
    {"one delimiter last", "abc%", "abc%", {}},
    {"two delimiters alone", "%%", "%", {}},
    {"three delimiters alone: the middle one is a name", "%%%", "", {"%"}},
    {"four delimiters", "%%%%", "%", {"%"}},
    {"five delimiters", "%%%%%", "%", {"%"}},
    {"shortest macro", "%A%", "alpha", {"A"}},
    {"macro in a text", "x%A%y", "xalphay", {"A"}},
    {"two macros", "%A%%B%", "alphabeta", {"A", "B"}},
    {"two macros and text", "1%A%2%B%3", "1alpha2beta3", {"A", "B"}},
    {"name with a blank", "%x y%", "blank", {"x y"}},
    {"unknown name", "x%C%y", "xy", {"C"}},
    {"third delimiter opens nothing", "%A%B%", "alphaB%", {"A"}},
    {"delimiter three bytes before the end", "x%AB", "x%AB", {}},
    {"delimiter two bytes before the end", "xx%A", "xx%A", {}},
    {"doubled at the end", "100%%", "100%", {}},
    {"doubled at the beginning", "%%a", "%a", {}},
    {"doubled in the middle", "a%%b", "a%b", {}},
    {"doubled behind a macro", "%A%%%", "alpha%", {"A"}},
    {"doubled in front of a macro takes it", "%%A%", "", {"%A"}},
    {"doubled-delimiter-opens-macro", "a%%b%c", "aodd namec", {"%b"}},
    {"doubled far from the next", "100%% or 50%", "100", {"% or 50"}},
    {"value-scanned-again", "x%nested%y", "x<alpha>y", {"nested", "A"}},
    {"value longer than all before it",
     "%long%%B%",
     "0123456789alpha0123456789beta",
     {"long", "A", "B"}},
    {"value with two values", "%deep%.", "<alpha><alpha>.", {"deep", "nested", "A", "nested", "A"}},
    {"value opens a macro with what follows", "%opens%A%", "alpha", {"opens", "A"}},
    {"value opens nothing", "x%opens%y", "x%y", {"opens"}},
    {"value is half a macro", "%half%%", "alpha", {"half", "A"}},
    {"value is a pair", "x%pair%y", "x%y", {"pair"}},
    {"other delimiters are text", "@A@#B#", "@A@#B#", {}},
};

class Names : public MacroHandler {
 public:
  CommandText processMacro(const MacroText& text, char, std::size_t start,
                           std::size_t& end) const override {
    m_names.push_back(str(text.buffer().substr(start + 1, end - start - 1)));
    m_wholes.push_back(str(text.whole()));
    m_positions.push_back(text.positionInWhole(start));
    const auto found = kValues.find(m_names.back());
    return found == kValues.end() ? SString() : sstr(found->second);
  }
  mutable std::vector<std::string> m_names;
  mutable std::vector<std::string> m_wholes;
  mutable std::vector<std::size_t> m_positions;
};

TEST(MacroHandler, ReplacesMacros) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const Names names;
    EXPECT_EQ(row.wanted, str(names.resolve(sstr(row.text), '%')));
    EXPECT_EQ(row.wantedNames, names.m_names);
  }
}

TEST(MacroHandler, ShowsTheTextAsFarAsItWasResolved) {
  const Names names;
  names.resolve("a%nested%b%C%c%B%", '%');
  EXPECT_EQ((std::vector<std::string>{"a%nested%b%C%c%B%", "a<%A%>b%C%c%B%", "a<alpha>b%C%c%B%",
                                      "a<alpha>bc%B%"}),
            names.m_wholes);
  EXPECT_EQ((std::vector<std::size_t>{1, 2, 9, 10}), names.m_positions);
}

// Moves the end, as a function does whose arguments stand behind its name.
class Calls : public MacroHandler {
 public:
  CommandText processMacro(const MacroText& text, char, std::size_t,
                           std::size_t& end) const override {
    end = text.buffer().shape().find(')', end);
    return "value";
  }
};

TEST(MacroHandler, ReplacesAsFarAsTheHandlerSays) {
  EXPECT_EQ("xvalueyvalue", str(Calls().resolve("x%F%(a %)y%G%()", '%')));
}

// Every value holds its own macro: such a text never ends.
class Endless : public MacroHandler {
 public:
  CommandText processMacro(const MacroText&, char, std::size_t, std::size_t&) const override {
    PlatformTestAccess::setCanceled(++m_rounds == 1000);
    return "again %me%";
  }
  mutable int m_rounds = 0;
};

TEST(MacroHandler, CanBeCanceled) {
  setenv("LANG", "C", 1);
  const Endless endless;
  EXPECT_EQ("LauncherException: Canceled by the user.",
            test::outcome([&] { return endless.resolve("%me%", '%'); }));
  EXPECT_EQ(1000, endless.m_rounds);
  PlatformTestAccess::setCanceled(false);
}

TEST(MacroHandler, ResolvesLongTexts) {
  std::string text;
  std::string wanted;
  for (int i = 0; i < 200; ++i) {
    text += "%nested% and %B%,";
    wanted += "<alpha> and beta,";
  }
  EXPECT_EQ(wanted, str(Names().resolve(sstr(text), '%')));
}

}  // namespace
