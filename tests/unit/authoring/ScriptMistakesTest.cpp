// What `check` finds on the ways of an instruction script.
#include "unit/authoring/Mistakes.h"

namespace {

const std::vector<mistakes::Mistake> kRows = {
    {"test missing",
     "i",
     "  JMP0 @N1@ install\n",
     "",
     {"i:6: error: LAUNCH is reached, too, when the FIND_JVM of line 5 fails; the name of the jvm "
      "file is empty then, and the script ends with an error; put JMP0 @N1@ and a label between "
      "them",
      "i:9: warning: this line is never reached; every way leads around it; delete it, or let a "
      "jump lead to a label in front of it"}},
    {"S1 for S2",
     "i",
     "LAUNCH @S2@",
     "LAUNCH @S1@",
     {"i:7: error: LAUNCH gets the home of the Java of the FIND_JVM of line 5, which is no jvm "
      "file; the script ends with an error; write LAUNCH @S2@ and the seconds"}},
    {"S2 for S1",
     "i",
     "LAUNCH @S1@",
     "LAUNCH @S2@",
     {"i:12: error: LAUNCH gets an empty name: the INSTALL_JVM of line 10 leaves the jvm file in "
      "S1; the script ends with an error; write LAUNCH @S1@ and the seconds"}},
    {"test of another variable",
     "i",
     "JMP0 @N1@ install",
     "JMP0 @N2@ install",
     {"i:6: warning: JMP0 tests a variable that nothing has set; it is 0, and the jump is always "
      "taken; write @N1@, which tells of the last search",
      "i:7: warning: this line is never reached; every way leads around it; delete it, or let a "
      "jump lead to a label in front of it"}},
    {"installation not tested",
     "i",
     "  JMP0 @N1@ nothing\n",
     "",
     {"i:11: error: LAUNCH is reached, too, when the INSTALL_JVM of line 10 fails; the name of the "
      "jvm file is empty then, and the script ends with an error; put JMP0 @N1@ and a label "
      "between them",
      "i:14: warning: this line is never reached; every way leads around it; delete it, or let a "
      "jump lead to a label in front of it"}},
    {"search without an end",
     "i",
     "JMP0 @N1@ install",
     "JMP0 @N1@ end",
     {"i:5: warning: when this FIND_JVM fails, the script ends without a word; the user sees "
      "nothing, and the status is 0; write 1 as the second argument, or install a Java, or end "
      "with a status, such as that of ILAUNCH -1 0",
      "i:10: warning: this line is never reached; every way leads around it; delete it, or let a "
      "jump lead to a label in front of it"}},
    {"installation without an end",
     "i",
     "JMP0 @N1@ nothing",
     "JMP0 @N1@ end",
     {"i:10: warning: when this INSTALL_JVM fails, the script ends without a word; the user sees "
      "nothing, and the status is 0; end with a status, such as that of ILAUNCH -1 0",
      "i:15: warning: this line is never reached; every way leads around it; delete it, or let a "
      "jump lead to a label in front of it"}},
    {"search for ever",
     "i",
     "JMP0 @N1@ install",
     "JMP0 @N1@ again",
     {"i:5: error: the script searches for ever when there is no suitable Java; each way from a "
      "failure leads back to a search; let a failure lead to a label behind the loop",
      "i:10: warning: this line is never reached; every way leads around it; delete it, or let a "
      "jump lead to a label in front of it"}},
    {"label on the first line",
     "i",
     "GOTO end",
     "GOTO top",
     {"i:8: error: the label \"top\" stands on the script's first line, where it is never found; "
      "the script ends with an error here; put a line with // in front of it"}},
    {"launch before the search",
     "i",
     "  FIND_JVM 1 0\n",
     "  LAUNCH @S2@ 1\n  FIND_JVM 1 0\n",
     {"i:5: error: LAUNCH gets an empty name: nothing has set it; the script ends with an error; "
      "put a FIND_JVM in front of it"}},
    {"never ends",
     "i",
     "  ILAUNCH 69 0\n",
     "  GOTO nothing\n",
     {"i:15: error: the script never ends once it comes here; all ways lead back; let a jump lead "
      "to a label behind the loop",
      "n: warning: JVM_PROPERTIES is missing; hints are not looked at and VERIFY accepts no JVM"}},
    {"line behind a jump",
     "i",
     "  GOTO end\n:install",
     "  GOTO end\n  ILAUNCH 17 0\n:install",
     {"i:9: warning: this line is never reached; every way leads around it; delete it, or let a "
      "jump lead to a label in front of it"}},
    {"label missing",
     "i",
     ":install\n",
     "",
     {"i:6: error: there is no label \"install\"; the script ends with an error here; write a line "
      ":install"}},
    {"label misspelt",
     "i",
     "GOTO end",
     "GOTO ende",
     {"i:8: error: there is no label \"ende\"; the script ends with an error here; did you mean "
      "end?"}},
    {"label with a comment",
     "i",
     ":install",
     ":install // now",
     {"i:6: error: the line of the label \"install\" holds more than the label, which is never "
      "found then; the script ends with an error here; write :install and nothing else on that "
      "line"}},
    {"command in small letters",
     "i",
     "INSTALL_JVM",
     "install_jvm",
     {"i:10: error: unknown command \"install_jvm\"; the script ends with an error here; write "
      "INSTALL_JVM"}},
    {"comment without a blank",
     "i",
     "// First",
     "//First",
     {"i:3: error: unknown command \"//First\"; the script ends with an error here; a comment "
      "begins with // and a blank"}},
    {"comment of a shell",
     "i",
     "// First",
     "# First",
     {"i:3: error: unknown command \"#\"; the script ends with an error here; a comment begins "
      "with // and a blank"}},
    {"number of no jvm file",
     "i",
     "ILAUNCH 69",
     "ILAUNCH 70",
     {"i:15: error: no jvm file has the number 70; ILAUNCH does nothing; write the number of a jvm "
      "file, or -1 to end with status -1"}},
    {"label outside the block",
     "i",
     ":end\n/:",
     "/:\n:end",
     {"i:8: error: there is no label \"end\"; the script ends with an error here; write a line "
      ":end",
      "i:13: error: there is no label \"end\"; the script ends with an error here; write a line "
      ":end",
      "i:17: error: \":end\" stands outside a block; it is read as a tag without a name, which "
      "nobody reads; put it in front of the /: of the block that it belongs to"}},
    {"seconds missing",
     "i",
     "LAUNCH @S2@ 1",
     "LAUNCH @S2@",
     {"i:7: error: LAUNCH needs the jvm file's name and, behind it on the line, the seconds; the "
      "script ends with an error here; write LAUNCH @S2@ 1"}},
    {"variable without its second sign",
     "i",
     "@N1@ install",
     "@N1 install",
     {"i:6: error: the last @ lacks its second one; the script ends with an error here; write a "
      "single @ as @@"}},
    {"variable without its signs, for a number",
     "i",
     "JMP0 @N1@ install",
     "JMP0 N1 install",
     {"i:6: error: \"N1\" is no number; the script ends with an error here; write @N1@"}},
    {"variable without its signs, for the jvm file",
     "i",
     "LAUNCH @S2@",
     "LAUNCH S2",
     {"i:7: error: LAUNCH looks for a file S2 in the current folder; the script ends with an error "
      "here; write @S2@"}},
    {"stored name for the jvm file",
     "i",
     "LAUNCH @S2@",
     "LAUNCH k",
     {"i:7: error: LAUNCH looks for a file k in the current folder, not in the setup; the script "
      "ends with an error here; write ILAUNCH 21 and the seconds"}},
    {"stored name for the number",
     "i",
     "ILAUNCH 69",
     "ILAUNCH n",
     {"i:15: error: \"n\" is no number; the script ends with an error here; write the number of a "
      "jvm file"}},
    {"jvm file that was found, for the number",
     "i",
     "LAUNCH @S2@ 1",
     "ILAUNCH @S2@ 1",
     {"i:7: error: @S2@ is the name of a jvm file here, and no number; the script ends with an "
      "error here; write a number, or a variable that holds one"}},
    {"arguments of LAUNCH in the other order",
     "i",
     "LAUNCH @S2@ 1",
     "LAUNCH 1 @S2@",
     {"i:7: error: @S2@ is the name of a jvm file here, and no number; the script ends with an "
      "error here; write a number, or a variable that holds one"}},
    {"home for seconds",
     "i",
     "LAUNCH @S2@ 1",
     "LAUNCH @S2@ @S1@",
     {"i:7: error: @S1@ is the home of a Java here, and no number; the script ends with an error "
      "here; write a number, or a variable that holds one"}},
    {"text for seconds",
     "i",
     "  LAUNCH @S2@ 1",
     "  SET S5 = soon\n  LAUNCH @S2@ @S5@",
     {"i:8: error: @S5@ is another text here, and no number; the script ends with an error here; "
      "write a number, or a variable that holds one"}},
    {"number that is set to a text",
     "i",
     "  LAUNCH @S2@ 1",
     "  SET N3 = @S2@\n  SET N4 = @S5@\n  LAUNCH @S2@ 1",
     {"i:7: error: @S2@ is the name of a jvm file here, and no number; the script ends with an "
      "error here; write a number, or a variable that holds one",
      "i:8: error: @S5@ is empty here, and no number; the script ends with an error here; write a "
      "number, or a variable that holds one"}},
    {"jump to a variable that nothing has set",
     "i",
     "GOTO end",
     "GOTO @S5@",
     {"i:8: error: @S5@ is empty here, and no label is called so; the script ends with an error "
      "here; set it to the name of a label"}},
    {"jump to a variable that names no label",
     "i",
     "  GOTO end",
     "  SET S5 = fin\n  GOTO @S5@",
     {"i:9: error: @S5@ is \"fin\" here, and no label is called so; the script ends with an error "
      "here; write a line :fin"}},
    {"jump to a number that has no label",
     "i",
     "GOTO end",
     "GOTO found@N1@",
     {"i:8: error: found@N1@ is \"found1\" here, and no label is called so; the script ends with "
      "an error here; write a line :found1"}},
    {"label with its colon",
     "i",
     "GOTO end",
     "GOTO :end",
     {"i:8: error: there is no label \":end\"; the script ends with an error here; write it "
      "without its colon"}},
    {"blank behind the colon of a label",
     "i",
     ":install",
     ": install",
     {"i:6: error: the line of the label \"install\" holds more than the label, which is never "
      "found then; the script ends with an error here; write :install and nothing else on that "
      "line"}},
    {"comparison",
     "i",
     "JMP0 @N1@ install",
     "JMP0 @N1@ == 0 install",
     {"i:6: error: there is no label \"==\"; the script ends with an error here; nothing can be "
      "compared; a JMP0 jumps when its value is 0"}},
    {"one argument too many",
     "i",
     "FIND_JVM 1 0",
     "FIND_JVM 1 0 1",
     {"i:5: warning: \"1\" is one argument too many for FIND_JVM; nobody reads it; delete it"}},
    {"one variable too many for LAUNCH",
     "i",
     "LAUNCH @S2@ 1",
     "LAUNCH @S2@ 1 @S1@",
     {"i:7: warning: \"@S1@\" is one argument too many for LAUNCH; nobody reads it; delete it"}},
    {"calculation",
     "i",
     "// First of all",
     "SET N2 = @N1@ + 1",
     {"i:3: warning: nothing is calculated; the number in front of the sign is stored; write the "
      "number that is meant"}},
    {"calculation without blanks",
     "i",
     "// First of all",
     "SET N2=2-1",
     {"i:3: warning: nothing is calculated; the number in front of the sign is stored; write the "
      "number that is meant"}},
    {"text behind the quotes of SET",
     "i",
     "// First of all",
     "SET S5 = \"a\" b",
     {"i:3: warning: text behind the closing quote is lost: \"b\"; a value that begins with a "
      "quote ends at the next single one; put all of the value into quotes and double those "
      "inside"}},
    {"single @ beside a variable",
     "i",
     "// First of all",
     "SET S5 = \"me@@home @N1@\"",
     {"i:3: error: the @@ is read again, since a variable stands beside it, and then its @ begins "
      "a reference; the script ends with an error here; write @@@@ for a single @ there"}},
    {"assignment without SET",
     "i",
     "// First of all",
     "N2 = 1",
     {"i:3: error: unknown command \"N2\"; the script ends with an error here; write SET in front "
      "of it"}},
    {"VERIFY of a file that only ends the run",
     "i",
     "ILAUNCH 69 0",
     "VERIFY 1 1 69\n  ILAUNCH 69 0",
     {"n: warning: JVM_PROPERTIES is missing; hints are not looked at and VERIFY accepts no JVM"}},
};

TEST(ScriptMistakes, AreFoundAtTheirLines) {
  mistakes::expectFindings(kRows);
}

}  // namespace
