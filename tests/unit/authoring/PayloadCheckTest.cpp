// Seeded mistakes in archives, programs and the list of the files, each with the whole line.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "authoring/FindingReport.h"
#include "authoring/SetupCheck.h"
#include "support/ArchiveFixture.h"

namespace {

using test::StoredFile;

std::string little(std::uint32_t number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) {
    text += static_cast<char>(number >> 8 * i & 0xFF);
  }
  return text;
}

// What stands about an empty file in both places of a zip archive that tell of it.
std::string zipFields(const std::string& name, std::uint32_t unpacked) {
  return little(20, 2) + std::string(16, '\0') + little(unpacked, 4) +
         little(static_cast<std::uint32_t>(name.size()), 2) + little(0, 2);
}

// A zip archive of files whose bytes nobody reads.
std::string zipOf(const std::vector<std::string>& names, std::uint32_t unpacked = 0) {
  std::string files;
  std::string list;
  for (const std::string& name : names) {
    list += std::string("PK\1\2") + little(20, 2) + zipFields(name, unpacked) +
            std::string(10, '\0') + little(static_cast<std::uint32_t>(files.size()), 4) + name;
    files += std::string("PK\3\4") + zipFields(name, 0) + name;
  }
  const auto count = static_cast<std::uint32_t>(names.size());
  return files + list + std::string("PK\5\6") + little(0, 4) + little(count, 2) + little(count, 2) +
         little(static_cast<std::uint32_t>(list.size()), 4) +
         little(static_cast<std::uint32_t>(files.size()), 4) + little(0, 2);
}

// The beginning of a program for Linux.
std::string elfFor(char machine) {
  return std::string(
             "\x7F"
             "ELF\2\1\1") +
         std::string(11, '\0') + machine + std::string(45, '\0');
}

constexpr char kX8664 = 62;
constexpr char kArm64 = '\xB7';

// A sound setup: whatever it carries is used.
struct Parts {
  std::string lines =
      "FIND_JVM 1 1\nJMP0 @N1@ none\nLAUNCH @S2@ 1\nGOTO end\n:none\nINSTALL_JVM "
      "1\nEXECUTE_LAUNCHER 6\n:end";
  std::string command = "exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() -Dx=%APPLICATION_ARCHIVE%() a.Main x";
  std::string jar = zipOf({"a/", "a/Main.class"});
  std::string verify = zipOf({"Verify.class"});
  std::string installer = "#!/bin/sh\nexit 0\n";
  std::string archive = zipOf({"d/", "d/f"}, 1000);
  std::string launcher = elfFor(kX8664);
  std::string jvm =
      "JVM_EXE: bin/java\nJVM_PROPERTIES: a = b\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\n";
  std::optional<authoring::DecompressedSize> sizes = authoring::DecompressedSize{1, 1000};
};

std::vector<StoredFile> filesOf(const Parts& parts) {
  return {{0, 1, "i", "INSTRUCTIONS:\n//\n" + parts.lines + "\n/:\n"},
          {2, 2, "l", "COMMAND: " + parts.command + "\n"},
          {1, 3, "j", parts.jvm},
          {3, 4, "a.jar", parts.jar},
          {5, 5, "v.jar", parts.verify},
          {4, 6, "installer", parts.installer},
          {7, 7, "launcher", parts.launcher},
          {6, 8, "app.zip", parts.archive, parts.sizes}};
}

std::vector<std::string> linesOf(const authoring::Setup& setup) {
  std::vector<std::string> lines;
  const authoring::Findings findings = authoring::checkSetup(setup);
  for (const authoring::Finding& finding : findings.all()) {
    lines.push_back(describe(finding, false));
    lines.back().pop_back();
  }
  return lines;
}

struct PayloadRow {
  const char* name;
  void (*spoil)(Parts&);
  std::vector<std::string> findings;
};

constexpr const char* kNoClass = "; Java finds no class in it; build or copy it again";
constexpr const char* kNoJVM = "; no JVM is ever accepted; build or copy it again";

const PayloadRow kPayloadRows[] = {
    {"sound", [](Parts&) {}, {}},
    {"empty jar",
     [](Parts& parts) { parts.jar = ""; },
     {std::string("a.jar: error: the file is empty") + kNoClass}},
    {"jar that is none",
     [](Parts& parts) { parts.jar = "<html>"; },
     {std::string("a.jar: error: the file is no zip archive, as a jar is one") + kNoClass}},
    {"cut jar",
     [](Parts& parts) { parts.jar.resize(parts.jar.size() - 30); },
     {std::string(
          "a.jar: error: the zip archive is cut: the list at its end is missing or broken") +
      kNoClass}},
    {"cut verify archive",
     [](Parts& parts) { parts.verify.resize(10); },
     {std::string(
          "v.jar: error: the zip archive is cut: the list at its end is missing or broken") +
      kNoJVM}},
    {"verify archive without its class",
     [](Parts& parts) {
       parts.verify = zipOf({"x/Verify.class", "verify.class"});
     },
     {"v.jar: error: the archive holds no Verify.class; no JVM is ever accepted; take the "
      "verify.jar of this program"}},
    {"main class that is not there",
     [](Parts& parts) { parts.jar = zipOf({"a/Mein.class"}); },
     {"l:1: error: COMMAND: the class a.Main is in none of the jars; Java starts and finds no "
      "class "
      "to run; correct the class, or add its jar to the manifest"}},
    {"main class for newer versions of Java",
     [](Parts& parts) { parts.jar = zipOf({"META-INF/versions/11/a/Main.class"}); },
     {}},
    {"main class on another class path",
     [](Parts& parts) {
       parts.command =
           "@JVM_HOME@/@JVM_EXE@ %CP%(\"/opt/x.jar\") -Dx=%APPLICATION_ARCHIVE%() b.Main";
     },
     {}},
    {"main class from a variable",
     [](Parts& parts) {
       parts.command = "@JVM_HOME@/@JVM_EXE@ %CP%() -Dx=%APPLICATION_ARCHIVE%() #MAIN#";
     },
     {"l:1: warning: COMMAND: hardly anybody sets #MAIN#; it vanishes from the command then; did "
      "you mean MAIL?"}},
    {"another program before Java",
     [](Parts& parts) {
       parts.command =
           "test -x a && exec java --add-modules java.sql %CP%() b/Main "
           "%APPLICATION_ARCHIVE%()";
     },
     {"l:1: error: COMMAND: the class b.Main is in none of the jars; Java starts and finds no "
      "class "
      "to run; correct the class, or add its jar to the manifest"}},

    {"empty installer",
     [](Parts& parts) { parts.installer = ""; },
     {"installer: error: the file is empty; there is nothing to run; build or copy it again"}},
    {"installer that is an archive",
     [](Parts& parts) { parts.installer = zipOf({"x"}); },
     {"installer: error: the file is no program; it cannot be run; name a program, or a script "
      "whose first line is #!/bin/sh"}},
    {"installer that is a Java class",
     [](Parts& parts) { parts.installer = std::string("\xCA\xFE\xBA\xBE\0\0\0\x34", 8); },
     {"installer: error: the file is no program; it cannot be run; name a program, or a script "
      "whose first line is #!/bin/sh"}},
    {"script without an interpreter",
     [](Parts& parts) { parts.installer = "exit 0\n"; },
     {"installer: warning: the script does not name its interpreter; whichever shell there is "
      "takes it; begin its first line with #!/bin/sh"}},
    {"script with the line ends of another system",
     [](Parts& parts) { parts.installer = "#!/bin/sh\r\nexit 0\r\n"; },
     {"installer: error: the script's first line ends with a carriage return; the system finds no "
      "interpreter of that name; save the file with the line ends of Unix"}},
    {"launcher for another machine",
     [](Parts& parts) { parts.launcher = elfFor(kArm64); },
     {"launcher: warning: the program is for aarch64, the stub for x86_64; it may not run where "
      "the setup does; take the program for x86_64"}},
    {"launcher for another system",
     [](Parts& parts) { parts.launcher = "\xCF\xFA\xED\xFE"; },
     {"launcher: warning: the program is for another system than the stub; it does not run where "
      "the setup does; take the program for the stub's system"}},

    {"archive without its sizes",
     [](Parts& parts) { parts.sizes.reset(); },
     {"app.zip: warning: the archive app.zip has no sizes; the launcher asks for no room to unpack "
      "it; write \"decompressed\": { \"files\": 1, \"bytes\": 1000 }"}},
    {"archive of another kind without its sizes",
     [](Parts& parts) {
       parts.sizes.reset();
       parts.archive = "tar";
     },
     {"app.zip: warning: the archive app.zip has no sizes; the launcher asks for no room to unpack "
      "it; write \"decompressed\" with the files and bytes that come of it"}},
    {"archive with sizes that are too small",
     [](Parts& parts) { parts.sizes->bytes = 999; },
     {"app.zip: warning: of the archive app.zip come 1 file and 1000 bytes, more than its sizes "
      "tell; the launcher asks for too little room; write \"decompressed\": { \"files\": 1, "
      "\"bytes\": 1000 }"}},
    {"empty archive",
     [](Parts& parts) { parts.archive = ""; },
     {"app.zip: error: the file is empty; nothing comes of it; build or copy it again"}},

    {"files that nothing uses",
     [](Parts& parts) {
       parts.lines = "FIND_JVM 1 1\nJMP0 @N1@ end\nLAUNCH @S2@ 1\n:end";
       parts.command = "@JVM_HOME@/@JVM_EXE@ -cp x y";
     },
     {"l:1: warning: COMMAND: CP is not called, though the setup carries jar files; nothing else "
      "puts them on the class path; write %CP%() in front of the class",
      "installer: warning: installer is never used; there is no INSTALL_JVM in the instruction "
      "script; leave the file out, or use it",
      "launcher: warning: launcher is never used; there is no EXECUTE_LAUNCHER in the instruction "
      "script; leave the file out, or use it",
      "app.zip: warning: app.zip is never used; there is no %APPLICATION_ARCHIVE%() in the launch "
      "script; leave the file out, or use it"}},
    {"files that only a calling program uses", [](Parts& parts) { parts.lines = "//"; }, {}},
};

TEST(PayloadCheck, FindsSeededMistakes) {
  const test::TempDir dir;
  for (const PayloadRow& row : kPayloadRows) {
    SCOPED_TRACE(row.name);
    Parts parts;
    row.spoil(parts);
    authoring::Setup setup = authoring::loadSetup(
        test::writeFile(dir / "setup", test::launcherFileBytes(filesOf(parts))), {});
    setup.stub = authoring::lookAtProgram(elfFor(kX8664));
    EXPECT_EQ(row.findings, linesOf(setup));
  }
}

TEST(PayloadCheck, KnowsWhichOfSeveralIsTaken) {
  const test::TempDir dir;
  std::vector<StoredFile> files = filesOf(Parts());
  files.push_back({8, 9, "m1", "MESSAGE: x\n"});
  files.push_back({8, 10, "m2", "MESSAGE: x\n"});
  files.push_back({4, 11, "installer2", "#!/bin/sh\n"});
  const std::string path = test::writeFile(dir / "setup", test::launcherFileBytes(files));
  EXPECT_EQ((std::vector<std::string>{
                "m1: warning: m1 is never used; of the files of the type jvm-message the launcher "
                "takes the last, m2; leave it out",
                "installer2: warning: installer2 is never used; of the files of the type "
                "jvm-installer the launcher takes the first, installer; leave it out"}),
            linesOf(authoring::loadSetup(path, {})));
}

TEST(PayloadCheck, ReadsManifestsWithTheirLines) {
  const test::TempDir dir;
  test::writeFile(dir / "i.tag", "INSTRUCTIONS: //\n");
  test::writeFile(dir / "j.tag", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nSET_ENV_FOR_WIZARD: A=b\n");
  const std::string path =
      test::writeFile(dir / "m.json",
                      "// a comment\n"
                      "{ \"purpose\": 1, \"files\": [\n"
                      "  { \"type\": \"instructions\", \"path\": \"i.tag\" },\n"
                      "  { \"type\": \"jvm\",\n"
                      "    \"path\": \"j.tag\" },\n"
                      "  { \"type\": \"jar\", \"id\": 7,\n"
                      "    \"path\": \"none.jar\" },\n"
                      "  { \"type\": \"jra\", \"id\": 7, \"path\": \"j.tag\",\n"
                      "    \"name\": \"..\", \"nmae\": \"x\" }\n"
                      "] }\n");
  const std::string folder = dir.path();
  EXPECT_EQ(
      (std::vector<std::string>{
          path + ":7: error: files[2].path: there is no file \"none.jar\" in " + folder +
              "; make it, or name its folder with --base",
          path + ":8: error: files[3].id: another file has the number 7; give each file a "
                 "number of its own, or none",
          path + ":8: error: files[3].type: \"jra\" is no file type; did you mean jar?",
          path + ":9: error: files[3]: unknown key \"nmae\"; the keys here are type, id, "
                 "path, name, decompressed",
          path + ":9: error: files[3].name: \"..\" is a path; write the plain name of a file",
          (dir / "j.tag") +
              ":3: warning: SET_ENV_FOR_WIZARD is not looked at; the setup has the purpose 1, "
              "and only those of 0 and 2 set variables; write \"purpose\": 0 in the manifest"}),
      linesOf(authoring::loadSetup(path, {})));
}

struct BrokenManifestRow {
  const char* name;
  std::string json;
  std::vector<std::string> findings;  // without the manifest's path
};

const BrokenManifestRow kBrokenManifests[] = {
    {"no JSON",
     "{\n  \"purpose\": 0,\n  \"files\": [}\n",
     {":3: error: column 13: syntax error while parsing value - unexpected '}'; expected '[', '{', "
      "or a literal"}},
    {"control characters in what is no JSON",
     "{\n\xC2\x9B",
     {":2: error: column 1: syntax error while parsing object key - invalid literal; last read: "
      "'{<U+000A>\\xC2'; expected string literal"}},
    {"no list of files",
     "{ \"fils\": [] }",
     {":1: error: unknown key \"fils\"; the keys here are purpose, stub, files",
      ":1: error: files: this must be the list of the files, as in \"files\": [ ... ]"}},
    {"keys twice, keys that are none, and a misspelt type that may be the one that is needed",
     "{ \"purpose\": 0,\n\"purpose\": 2,\n\"titel\": 1,\n\"name\": 2,\n"
     "\"files\": [ { \"type\": \"instruction\", \"path\": \"i.tag\" } ] }",
     {":2: error: purpose: this key stands twice in one object; remove one of them",
      ":3: error: unknown key \"titel\"; the keys here are purpose, stub, files",
      ":4: error: unknown key \"name\"; the keys here are purpose, stub, files",
      ":5: error: files[0].type: \"instruction\" is no file type; did you mean instructions?"}},
    {"lists in lists, too deep to be followed",
     "{ \"files\": [], \"purpose\": " + std::string(100000, '[') + "\n",
     {":2: error: column 1: syntax error while parsing value - unexpected end of input; expected "
      "'[', '{', or a literal"}},
};

TEST(PayloadCheck, TellsOfABrokenManifestAllThatIsKnown) {
  const test::TempDir dir;
  test::writeFile(dir / "i.tag", "INSTRUCTIONS: //\n");
  for (const BrokenManifestRow& row : kBrokenManifests) {
    SCOPED_TRACE(row.name);
    const std::string path = test::writeFile(dir / "m.json", row.json);
    std::vector<std::string> findings = row.findings;
    for (std::string& finding : findings) {
      finding.insert(0, path);
    }
    EXPECT_EQ(findings, linesOf(authoring::loadSetup(path, {})));
  }
}

TEST(PayloadCheck, TellsWhichFileCannotBeRead) {
  authoring::Manifest manifest;
  manifest.isRead = true;
  manifest.files = {{FILE_TYPE_JAR, 1, 1, "/nowhere/x.jar", "x.jar", {}}};
  const std::vector<std::string> findings = linesOf(loadSetup(manifest, ""));
  ASSERT_EQ(2U, findings.size());
  EXPECT_EQ(
      "/nowhere/x.jar: error: cannot be read: No such file or directory; the setup cannot be "
      "packed",
      findings[1]);
}

}  // namespace
