// `check` has nothing to say of texts that are as they should be, in whatever style they are
// written.
#include "unit/authoring/Mistakes.h"

namespace {

using mistakes::findingsOf;
using mistakes::Texts;

const std::vector<std::string> kNothing;

const std::string kPlain =
    "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() %RUNTIME_JAVAARGS%() Setup\n";

struct SoundRow {
  std::string name;
  Texts texts;
};

const std::vector<SoundRow> kRows = {
    {"the setup that the mistakes are made in", {}},
    {"as short as it gets",
     {.script = "INSTRUCTIONS:\nFIND_JVM 1 1\nJMP0 @N1@ end\nLAUNCH @S2@ 1\n:end\n/:\n",
      .launchScript = "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() Setup\n",
      .jvmFiles = {"JVM_EXE: bin/java\nJVM_PROPERTIES: java.specification.version = 21\n"
                   "CLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\n"}}},
    {"all in quotes, with the line ends of Windows",
     {.script = "INSTRUCTIONS:\r\n\"FIND_JVM 1 1\"\r\n\"JMP0 @N1@ none\"\r\n\"LAUNCH \"\"@S2@\"\" "
                "1\"\r\n\"GOTO end\"\r\n\":none\"\r\n\"ILAUNCH -1 0\"\r\n\":end\"\r\n\"/:\"\r\n",
      .launchScript =
          "DESC: \"Sample\"\r\nCOMMAND: \"\"\"@JVM_HOME@/@JVM_EXE@\"\" %CP%() Setup\"\r\n"
          "AUTO_SET_WORKING_DIR: \"0\"\r\n",
      .jvmFiles = {"DESC: \"Java 21\"\r\nJVM_EXE: \"bin/java\"\r\nJVM_PROPERTIES:\r\n"
                   "\"java.specification.version = 21\"\r\n/:\r\nCLASSPATH: \"-cp \"\r\n"
                   "CLASSPATH_SEPARATOR: \":\"\r\n"}}},
    {"the class path in a variable",
     {.launchScript = "COMMAND: %CP%()exec \"@JVM_HOME@/@JVM_EXE@\" -Dcp=\"#CLASSPATH#\" Setup\n",
      .jvmFiles = {"JVM_EXE: bin/java\nJVM_PROPERTIES: java.version = 1.8...\nUSE_CP_ENV_VAR: 1\n"
                   "CP_ENV_VAR: CLASSPATH\nCLASSPATH_SEPARATOR: \":\"\n",
                   mistakes::kOtherJavaFile + "USE_CP_ENV_VAR: 1\nCP_ENV_VAR: CLASSPATH\n",
                   mistakes::kNoJavaFile}}},
    {"what a shell can do",
     {.launchScript = "DESC: Caf\\u00e9\nCOMMAND: cd \"$HOME\" && LANG=C MODE='a b' exec "
                      "\"@JVM_HOME@/bin/java\" %RUNTIME_JAVAARGS%() %CP%(\"\"\"$(dirname "
                      "\"\"%LAUNCHER_DIR%()\"\")/lib.jar\"\"\") -Duser=#USER# "
                      "-Dmore=\"#A##LC_ALL##JAVA_OPTS#\" -Dtmp=%TEMP_DIR%() "
                      "-Dby=ann@example.org -Dload=100% Setup 2>>setup.err\n"}},
    {"tags of the author's own",
     {.launchScript =
          "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" @MEMORY@ %IF_EXISTS%(\"NATIVE\",\"@NATIVE@\") "
          "%CP%() %REPLACE%(\"@FROM@\",\"-\",\"a_b\") @ARGUMENTS@ -Dtitle=\"\u201cA\u00a0B\u201d\" "
          "Setup\n"
          "ARCHIVE: %LAUNCHER_DIR%()/@MORE@\n",
      .jvmFiles = {mistakes::kJavaFile +
                       "NATIVE: --enable-native-access=ALL-UNNAMED\nMEMORY: @MAX@\n"
                       "MAX: -Xmx2g\nFROM: _\nMORE: more.jar\nNote: of the author\u2013me\n"
                       "ARGUMENTS: @REQ_JAVA_ARGS@ -Xss1m\n",
                   mistakes::kOtherJavaFile, mistakes::kNoJavaFile}}},
    {"properties of every kind",
     {.jvmFiles =
          {"JVM_EXE: bin/java\nJVM_PROPERTIES:\njava.specification.version=2...\n"
           "java.version = 21.0.2\njava.vendor = ...\njava.vm.name = OpenJDK 64-Bit Server VM\n"
           "java.runtime.version = 21.0.2+13-Debian-2\nos.arch = amd64\n"
           "sun.arch.data.model = 64\nos.name=Linux\njava.class.version = 65.0\n"
           "com.example.flavour = full\njava.vm.specification.version = 21\n/:\n"
           "PATH_HINT:\n.\n../jre\nmy jre\n//server/share/jre\n/opt/java [21]/..\n/:\n"
           "CLASSPATH: --class-path=\nCLASSPATH_SEPARATOR: \":\"\nSYSTEM: -D\n"
           "SYSTEM_SEPARATOR: \"=\"\n",
           mistakes::kOtherJavaFile, mistakes::kNoJavaFile}}},
    {"values that end with a colon",
     {.launchScript = kPlain,
      .jvmFiles = {"JVM_EXE: bin/java\nJVM_PROPERTIES: java.specification.version = 21\n"
                   "CLASSPATH: -Xbootclasspath/a:\nCLASSPATH_SEPARATOR: :\n",
                   mistakes::kOtherJavaFile, mistakes::kNoJavaFile}}},
    {"options for a class path with more in front",
     {.launchScript = kPlain,
      .jvmFiles = {"JVM_EXE: bin/java\nJVM_PROPERTIES: java.specification.version = 21\n"
                   "VERIFY_ARGS: \"-Xint \"\nCLASSPATH: \"@VERIFY_ARGS@-cp \"\n"
                   "CLASSPATH_SEPARATOR: \":\"\n",
                   "JVM_EXE: bin/java\nJVM_PROPERTIES: java.specification.version = 17\n"
                   "CLASSPATH: -Djava.class.path=\nCLASSPATH_SEPARATOR: \":\"\n",
                   mistakes::kNoJavaFile}}},
    {"sizes of memory, and options of other Javas that begin like them",
     {.launchScript = "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" -Xms64M -Xmn8000k -Xss0x80000 -Xmx1T "
                      "-Xmso256k -Xmns64m -Xmnx256m -Xssi16k --add-modules -Xmx1x %CP%() "
                      "%RUNTIME_JAVAARGS%() Setup\n"}},
    {"sizes of memory that are filled in later",
     {.launchScript = "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" -Xmx#USER# -Xms1#USER# -Xss1\"$S\" "
                      "%CP%() %RUNTIME_JAVAARGS%() Setup\n"}},
    {"a class that Java reads from its source",
     {.launchScript = "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() %RUNTIME_JAVAARGS%() "
                      "\"%LAUNCHER_DIR%()/Setup.java\"\n"}},
    {"entries and properties in quotes",
     {.launchScript = "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" %CP% ( \"\"\"my lib.jar\"\"\" , "
                      "\"a.jar:b.jar\", ) "
                      "%SYSTEMPROP%(\"t\",\"\"\"b c;d\"\"\") \"%SYSTEMPROP%(\"u\",\"v w\")\" "
                      "%SYSTEMPROP%(\"d\",\"%LAUNCHER_DIR%()\") %RUNTIME_JAVAARGS%() Setup\n"
                      "ARCHIVE: \"\"\"%LAUNCHER_DIR%()/my lib.jar\"\"\"\n"}},
    {"arguments that a shell reads",
     {.jvmFiles = {mistakes::kOtherJavaFile +
                       "REQ_JAVA_ARGS: -Xms64M -Xss0x80000 -Xmso256k -Xmx#MEMORY#m --add-opens "
                       "java.base/java.lang=ALL-UNNAMED "
                       "-Dq=\"a b;c\" '-Dx=a&b' -Dy=a\\;b @MORE@ $OPTIONS\n"
                       "MORE: -Xss1m\nJVM_CLASSPATH: \"\"\"/opt/my lib.jar\"\"\"\n",
                   mistakes::kJavaFile, mistakes::kNoJavaFile}}},
    {"variables for the wizard",
     {.jvmFiles = {mistakes::kOtherJavaFile +
                       "SET_ENV_FOR_WIZARD:\nLC_ALL=C\nFOO=\nA_B = c d\n"
                       "OPTIONS=-Da=b -Dc=d\nMAIL=a@b.c\nPART=50%\nX=y z=1\n/:\n",
                   mistakes::kJavaFile, mistakes::kNoJavaFile}}},
    {"the arguments of the user given on by a function",
     {.launchScript =
          "COMMAND: wizard() { exec \"$JAVA_HOME/bin/java\" %CP%() %RUNTIME_JAVAARGS%() "
          "Setup \"$*\"; }; wizard\n"}},
    {"a program that is looked for first",
     {.launchScript =
          "COMMAND: test -x \"@JVM_HOME@/@JVM_EXE@\" || exit 70; J=\"@JVM_HOME@/@JVM_EXE@\"; "
          "exec \"$J\" %CP%() %RUNTIME_JAVAARGS%() Setup 2>&1 <file\n"}},
    {"Java without a class",
     {.launchScript =
          "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() %RUNTIME_JAVAARGS%() -version\n"}},
    {"a Java that is no java",
     {.script = "INSTRUCTIONS: FIND_JVM 1 1\n",
      .launchScript = "COMMAND: @JVM_HOME@/@JVM_EXE@ @REQ_JAVA_ARGS@ %CP%() setup.scm\n",
      .jvmFiles = {"JVM_EXE: guile\nREQ_JAVA_ARGS: -l start.scm -h\nJVM_PROPERTIES: version = "
                   "3...\nSEARCH_ALL: 1\n"
                   "PLATFORM_HINT:\nGUILE_HOME\nJAVA17_HOME\nJAVA_HOME\n/:\n"}}},
    {"a Java that was named, and a scan at the end",
     {.script = "INSTRUCTIONS:\n// Was one named?\nVERIFY 0 0 17\nJMP0 @N1@ search\nILAUNCH 17 1\n"
                "GOTO end\n:search\nFIND_JVM 1 1\nSET S5 = @S2@\nSET N3 = @N1@\nJMP0 @N3@ none\n"
                "LAUNCH \"@S5@\" 1\nGOTO end\n:none\nILAUNCH 69 0\n:end\n/:\n",
      .jvmFiles = {mistakes::kJavaFile, mistakes::kOtherJavaFile + "SEARCH_ALL: 1\n",
                   mistakes::kNoJavaFile}}},
    {"two tries, the second one after the user has been asked",
     {.script = "INSTRUCTIONS:\n//\nSET N5 = 0\n:again\nFIND_JVM 1 0\nGOTO found@N1@\n:found1\n"
                "LAUNCH @S2@ 1\nGOTO end\n:found0\nGOTO round@N5@\n:round0\nSET N5 = 1\n"
                "INSTALL_JVM 2\nGOTO again\n:round1\nILAUNCH 69 0\n:end\n/:\n"}},
    {"comments behind statements",
     {.script = "INSTRUCTIONS:\n// a\nINITIALIZE_UI // b\nSET N2 = 5 // c\nSET S5 = a // d\n"
                "SET S6 = \"a b\" // e\nFIND_JVM 1 1 // f\nJMP0 @N1@ none // g\n"
                "LAUNCH @S2@ 1 # h\nGOTO end // i\n:none\nILAUNCH 69 0 really\n:end\n/:\n"}},
    {"numbers, signs and labels that look odd",
     {.script = "INSTRUCTIONS:\n:top\nSET N2 = -1\nSET N3 = \"4 apples\"\nSET S5=a=b-c\n"
                "SET S6 = me@@home\nSET S7 = \"@@@@ @N2@\"\nSET S9 =\n"
                "FIND_JVM 01 +1\nSET S8 = \"no java/1\"\nJMP0 @n1@ @s8@\nLAUNCH \"@S2@\" 0\n"
                "GOTO end-2\n:no java/1\nILAUNCH 069 0\n:end-2\n/:\n"}},
    {"a number of a jvm file that a variable holds",
     {.script = "INSTRUCTIONS:\n//\nFIND_JVM 1 1\nSET N4 = 69\nJMP0 @N1@ none\nLAUNCH @S2@ 1\n"
                "GOTO end\n:none\nILAUNCH @N4@ 0\n:end\n/:\n"}},
    {"a status by a tag of its own",
     {.launchScript = "COMMAND: %IF_EXISTS%(\"STATUS\",\"exit @STATUS@;\") exec "
                      "\"@JVM_HOME@/@JVM_EXE@\" %CP%() %RUNTIME_JAVAARGS%() Setup\n",
      .jvmFiles = {mistakes::kJavaFile, mistakes::kOtherJavaFile, "STATUS: 69\n"}}},
};

TEST(SoundTexts, GiveNothing) {
  for (const SoundRow& row : kRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(kNothing, findingsOf(row.texts));
  }
}

// --- The examples of the pages ---

// What stands between lines of three backquotes.
std::vector<std::string> blocksOf(const std::string& page) {
  const std::string text = test::readFile(std::string(CORVANE_DOCS_DIR) + "/" + page);
  const std::string fence = "\n```";
  std::vector<std::string> blocks;
  for (std::size_t begin = text.find(fence); begin != std::string::npos;) {
    begin = text.find('\n', begin + 1) + 1;
    const std::size_t end = text.find(fence, begin - 1);
    blocks.push_back(text.substr(begin, end - begin + 1));
    begin = text.find(fence, end + 1);
  }
  return blocks;
}

// A jvm file that only ends the run with a status.
TEST(SoundTexts, TheStatusFileOfThePageGivesNothing) {
  const std::vector<std::string> blocks = blocksOf("check.md");
  ASSERT_EQ(1u, blocks.size());
  EXPECT_EQ(kNothing,
            findingsOf({.jvmFiles = {mistakes::kJavaFile, mistakes::kOtherJavaFile, blocks[0]}}));
}

bool startsWith(const std::string& text, const char* beginning) {
  return text.rfind(beginning, 0) == 0;
}

TEST(SoundTexts, TheScriptsOfThePagesGiveNothing) {
  const std::vector<std::string> blocks = blocksOf("instructions.md");
  EXPECT_LE(5u, blocks.size());
  for (const std::string& block : blocks) {
    SCOPED_TRACE(block);
    const bool isWhole = startsWith(block, "INSTRUCTIONS:");
    EXPECT_EQ(kNothing, findingsOf({.script = isWhole ? block : "INSTRUCTIONS:\n" + block + "/:\n",
                                    .jvmFiles = {mistakes::kJavaFile}}));
  }
}

TEST(SoundTexts, TheLaunchScriptsAndJVMFilesOfThePagesGiveNothing) {
  int found = 0;
  for (const char* const page : {"jvm-file.md", "launch-script.md"}) {
    for (const std::string& block : blocksOf(page)) {
      SCOPED_TRACE(block);
      if (block.find("\nCOMMAND:") != std::string::npos) {
        EXPECT_EQ(kNothing, findingsOf({.launchScript = block,
                                        .jvmFiles = {mistakes::kJavaFile, mistakes::kOtherJavaFile,
                                                     mistakes::kNoJavaFile}}));
        ++found;
      } else if (block.find("\nJVM_EXE:") != std::string::npos) {
        const bool isWhole = block.find("\nJVM_PROPERTIES:") != std::string::npos;
        EXPECT_EQ(kNothing,
                  findingsOf({.jvmFiles = {block + (isWhole ? "" : "JVM_PROPERTIES: a=b\n"),
                                           mistakes::kOtherJavaFile, mistakes::kNoJavaFile}}));
        ++found;
      }
    }
  }
  EXPECT_LE(3, found);
}

}  // namespace
