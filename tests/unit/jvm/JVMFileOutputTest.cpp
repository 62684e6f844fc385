// The judgement of what a JVM printed.
#include <gtest/gtest.h>

#include "jvm/JVMFile.h"
#include "support/JVMSupport.h"

namespace {

using test::sstr;

struct OutputRow {
  const char* name;
  std::string output;
  std::vector<std::string> expected;  // one value for each requirement
  bool wanted;
  std::string wantedLog = "";
};

const OutputRow kOutputs[] = {
    {"right value", "1739021872\n17\n", {"17"}, true},
    {"wrong value", "1739021872\n17\n", {"18"}, false},
    {"two right values", "1739021872\n17\nVendor\n", {"17", "Vendor"}, true},
    {"second value wrong", "1739021872\n17\nVendor\n", {"17", "vendor"}, false},
    {"first value wrong", "1739021872\n17\nVendor\n", {"16", "Vendor"}, false},
    {"values in another order", "1739021872\nVendor\n17\n", {"17", "Vendor"}, false},
    {"no requirement", "1739021872\nwhatever\n", {}, true},
    {"line longer than the value", "1739021872\n17.0\n", {"17"}, false},
    {"line shorter than the value", "1739021872\n1\n", {"17"}, false},
    {"blank before the value", "1739021872\n 17\n", {"17"}, false},
    {"blank behind the value", "1739021872\n17 \n", {"17"}, false},
    {"tab behind the value", "1739021872\n17\t\n", {"17"}, false},
    {"empty line, empty value", "1739021872\n\n", {""}, true},
    {"empty line, another value", "1739021872\n\n", {"17"}, false},
    {"last line without newline", "1739021872\n17", {"17"}, true},
    {"more lines than requirements", "1739021872\n17\nmore\n", {"17"}, true},
    {"banner first", "banner line\n1739021872\n1.4.2\n", {"1.4..."}, true},
    {"banner first, other prefix", "banner line\n1739021872\n1.4.2\n", {"1.5..."}, false},
    {"prefix alone", "1739021872\n1.4\n", {"1.4..."}, true},
    {"line shorter than the prefix", "1739021872\n1.\n", {"1.4..."}, false},
    {"empty line, prefix", "1739021872\n\n", {"1.4..."}, false},
    {"prefix in other letters", "1739021872\nsun Java\n", {"Sun..."}, false},
    {"dots alone accept any line", "1739021872\nwhatever\n", {"..."}, true},
    {"dots alone accept an empty line", "1739021872\n\n17\n", {"...", "17"}, true},
    {"two dots are a value", "1739021872\n1.4\n", {"1.4.."}, false},
    {"two dots are a value, right", "1739021872\n..\n", {".."}, true},
    {"four dots: a prefix with a dot", "1739021872\n1.4.2\n", {"1.4...."}, true},
    {"four dots: no dot there", "1739021872\n1.4\n", {"1.4...."}, false},
    {"dots inside are a value", "1739021872\n1.4.2\n", {"1...2"}, false},
    {"lenient-verify-output: magic line alone", "1739021872\n", {"17", "Vendor"}, true},
    {"lenient-verify-output: no newline", "1739021872", {"17"}, true},
    {"lenient-verify-output: ends early", "1739021872\n17\n", {"17", "Vendor"}, true},
    {"lenient-verify-output: ends early, wrong", "1739021872\n16\n", {"17", "Vendor"}, false},
    {"magic line twice: the first counts", "1739021872\n1739021872\n17\n", {"1739021872"}, true},
    {"carriage returns are dropped", "1739021872\r\n17\r\n", {"17"}, true},
    {"carriage return inside", "17390\r21872\n1\r7\n", {"17"}, true},
    {"no output", "", {"17"}, false, "ERROR: Invalid magic value: \n\n"},
    {"empty line only", "\n", {"17"}, false, "ERROR: Invalid magic value: \n\n"},
    {"no magic line", "17\nVendor\n", {"17"}, false, "ERROR: Invalid magic value: Vendor\n\n"},
    {"no magic line, no newline", "a\nb", {}, false, "ERROR: Invalid magic value: b\n\n"},
    {"no magic line, empty line last", "a\n\n", {}, false, "ERROR: Invalid magic value: \n\n"},
    {"blank behind the magic number",
     "1739021872 \n17\n",
     {},
     false,
     "ERROR: Invalid magic value: 17\n\n"},
    {"blank behind the magic number, last",
     "1739021872 \n",
     {},
     false,
     "ERROR: Invalid magic value: 1739021872 \n\n"},
    {"blank before the magic number",
     " 1739021872\n",
     {},
     false,
     "ERROR: Invalid magic value:  1739021872\n\n"},
    {"magic number and more",
     "17390218720\n",
     {},
     false,
     "ERROR: Invalid magic value: 17390218720\n\n"},
    {"magic number cut", "173902187\n", {}, false, "ERROR: Invalid magic value: 173902187\n\n"},
};

TEST(JVMFileOutput, IsJudged) {
  for (const OutputRow& row : kOutputs) {
    SCOPED_TRACE(row.name);
    TagFile tags;
    StringPairPtrDeque properties;
    for (const std::string& value : row.expected) {
      properties.push_back(std::make_unique<StringPair>(StringPair{"name", sstr(value)}));
    }
    test::LogCapture log;
    EXPECT_EQ(row.wanted, JVMFile(tags).verifyJVMOutput(sstr(row.output), properties));
    EXPECT_EQ(row.wantedLog, log.take());
  }
}

}  // namespace
