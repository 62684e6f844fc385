// Findings: their order, and how they are shown.
#include "authoring/Findings.h"

#include <gtest/gtest.h>

#include <string>

#include "authoring/FindingReport.h"
#include "authoring/SafeText.h"

namespace {

using authoring::describe;
using authoring::Findings;
using authoring::Severity;

Findings someFindings() {
  Findings findings;
  findings.warning({"b", 7}, "late", "", "");
  findings.error({"b", 2}, "first of two", "", "");
  findings.error({"b", 2}, "second of two", "", "");
  findings.error({"b", 0}, "whole file", "", "");
  findings.warning({"a", 9}, "earlier file", "", "");
  findings.warning({"unknown", 1}, "other file", "", "");
  return findings;
}

TEST(Findings, StandInTheOrderOfFilesAndLines) {
  Findings findings = someFindings();
  findings.sort({"a", "b", "a"});
  EXPECT_EQ(
      "unknown:1: warning: other file\n"
      "a:9: warning: earlier file\n"
      "b: error: whole file\n"
      "b:2: error: first of two\n"
      "b:2: error: second of two\n"
      "b:7: warning: late\n"
      "setup: 3 errors, 3 warnings\n",
      reportAsText("setup", findings, false));
}

TEST(Findings, AreAllErrorsWhenWarningsAre) {
  Findings findings;
  findings.warning({"a", 1}, "doubtful", "", "");
  EXPECT_FALSE(findings.hasErrors());
  findings.makeStrict();
  EXPECT_TRUE(findings.hasErrors());
  EXPECT_EQ("a:1: error: doubtful\nx: 1 error, 0 warnings\n", reportAsText("x", findings, false));
}

struct TextRow {
  const char* name;
  const char* what;
  const char* why;
  const char* advice;
  const char* line;
};

const TextRow kTextRows[] = {
    {"all three", "a", "b", "c", "f:1: error: a; b; c\n"},
    {"no reason", "a", "", "c", "f:1: error: a; c\n"},
    {"no advice", "a", "b", "", "f:1: error: a; b\n"},
    {"alone", "a", "", "", "f:1: error: a\n"},
    {"bytes for a terminal", "\x1B[2J", "\r", "\n", "f:1: error: \\x1B[2J; \\x0D; \\x0A\n"},
};

TEST(Findings, SayWhatWhyAndWhatToWrite) {
  for (const TextRow& row : kTextRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.line,
              describe({Severity::kError, {"f", 1}, row.what, row.why, row.advice}, false));
  }
}

TEST(Findings, ColourTheirSeverity) {
  EXPECT_EQ("f\\x1B: \x1B[1;31merror:\x1B[m a\n",
            describe({Severity::kError, {"f\x1B", 0}, "a", "", ""}, true));
  EXPECT_EQ("f:3: \x1B[1;35mwarning:\x1B[m a\n",
            describe({Severity::kWarning, {"f", 3}, "a", "", ""}, true));
}

TEST(Findings, AreNothingWhenThereAreNone) {
  EXPECT_EQ("", reportAsText("setup", Findings(), true));
  EXPECT_EQ(
      "{\n  \"file\": \"setup\",\n  \"errors\": 0,\n  \"warnings\": 0,\n  \"findings\": []\n}\n",
      reportAsJson("setup", Findings()));
}

TEST(Findings, AreJsonForPrograms) {
  Findings findings;
  findings.error({"a\n", 3}, "\x1B \xC2\x9B \xFF \x7F", "why", "");
  findings.warning({"b", 0}, "what", "", "advice");
  EXPECT_EQ(
      "{\n"
      "  \"file\": \"setup\",\n"
      "  \"errors\": 1,\n"
      "  \"warnings\": 1,\n"
      "  \"findings\": [\n"
      "    {\n"
      "      \"severity\": \"error\",\n"
      "      \"file\": \"a\\n\",\n"
      "      \"line\": 3,\n"
      "      \"what\": \"\\u001b \\u009b \\ufffd \\u007f\",\n"
      "      \"why\": \"why\",\n"
      "      \"advice\": \"\"\n"
      "    },\n"
      "    {\n"
      "      \"severity\": \"warning\",\n"
      "      \"file\": \"b\",\n"
      "      \"line\": null,\n"
      "      \"what\": \"what\",\n"
      "      \"why\": \"\",\n"
      "      \"advice\": \"advice\"\n"
      "    }\n"
      "  ]\n"
      "}\n",
      reportAsJson("setup", findings));
}

struct SafeRow {
  const char* name;
  std::string text;
  const char* shown;
};

const SafeRow kSafeRows[] = {
    {"nothing", "", ""},
    {"letters and a backslash", "a\\n \"b\"", "a\\n \"b\""},
    {"letters of two, three and four bytes", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80",
     "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"},
    {"zero", std::string("a\0b", 3), "a\\x00b"},
    {"newline, tab, escape, delete", "\n\t\x1B\x7F", "\\x0A\\x09\\x1B\\x7F"},
    {"first letter after the control characters", "\xC2\xA0", "\xC2\xA0"},
    {"control characters of UTF-8", "\xC2\x80\xC2\x9F", "\\xC2\\x80\\xC2\\x9F"},
    {"control characters of one byte", "\x80\x9B", "\\x80\\x9B"},
    {"turned direction",
     "a\xE2\x80\xAE"
     "b",
     "a\\xE2\\x80\\xAE"
     "b"},
    {"end of a line", "\xE2\x80\xA8", "\\xE2\\x80\\xA8"},
    {"cut letter", "\xE2\x82", "\\xE2\\x82"},
    {"letter written too long", "\xC1\x81\xE0\x80\x9B", "\\xC1\\x81\\xE0\\x80\\x9B"},
    {"half of a pair", "\xED\xA0\x80", "\\xED\\xA0\\x80"},
    {"beyond the last letter", "\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80"},
};

TEST(SafeText, LeavesLettersAndNothingElse) {
  for (const SafeRow& row : kSafeRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.shown, authoring::safeText(row.text));
  }
}

}  // namespace
