#include "authoring/Manifest.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "archive/StubMark.h"
#include "authoring/AuthoringError.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

class ManifestTest : public testing::Test {
 protected:
  ManifestTest() {
    for (const char* const file : {"project/a.tag", "project/sub/b.tag", "base1/c.jar",
                                   "base2/c.jar", "base2/d.jar", "project/bad\nname"}) {
      test::writeFile(m_dir / file, "x");
    }
  }

  authoring::Manifest load(const std::string& json) {
    return authoring::loadManifest(test::writeFile(m_dir / "project/m.json", json), m_bases);
  }
  // The text thrown, without the manifest's path and with "DIR" for the scratch folder.
  std::string errorOf(const std::string& json) {
    std::string text = test::errorOf<authoring::AuthoringError>([&] { load(json); });
    const std::string prefix = m_dir / "project/m.json: ";
    EXPECT_TRUE(text.starts_with(prefix)) << text;
    return test::replaced(text.erase(0, prefix.size()), m_dir.path(), "DIR");
  }

  test::TempDir m_dir;
  std::vector<std::string> m_bases = {m_dir / "base1", m_dir / "base2"};
};

// Why the library refuses a text, without the place.
std::string reasonOfLibrary(const std::string& json) {
  try {
    return nlohmann::json::parse(json).dump();
  } catch (const nlohmann::json::parse_error& e) {
    const std::string text = e.what();
    return text.substr(text.find(": ", text.find("column ")) + 2);
  }
}

struct ErrorRow {
  const char* name;
  std::string json;
  std::string error;
};

// The manifest with one file, of which these are the keys.
std::string withFile(const std::string& keys) {
  return R"({"files": [{)" + keys + "}]}";
}

const char* const kTypes =
    "instructions, jvm, launchscript, jar, jvm-installer, verify, archive, launcher, jvm-message";

const std::string kLongest(255, 'n');

const std::vector<ErrorRow> kErrorRows = {
    {"no object", "[]", "this must be an object, as in { \"purpose\": ... }"},
    {"unknown key", R"({"files": [], "file": []})",
     "unknown key \"file\"; the keys here are purpose, stub, files"},
    {"doubled key", R"({"files": [], "files": []})",
     "files: this key stands twice in one object; remove one of them"},
    {"stub that is not there", R"({"stub": "none", "files": []})",
     "stub: there is no file \"none\" in DIR/project, DIR/base1, DIR/base2; make it, or name its "
     "folder with --base"},
    {"stub of another kind", R"({"stub": 1, "files": []})",
     "stub: this must be a text that is not empty"},
    {"no files", R"({"purpose": 0})",
     "files: this must be the list of the files, as in \"files\": [ ... ]"},
    {"files of another kind", R"({"files": {}})",
     "files: this must be the list of the files, as in \"files\": [ ... ]"},
    {"purpose below 0", R"({"purpose": -1, "files": []})",
     "purpose: this must be a whole number from 0 to 255"},
    {"purpose above 255", R"({"purpose": 256, "files": []})",
     "purpose: this must be a whole number from 0 to 255"},
    {"purpose with a fraction", R"({"purpose": 1.5, "files": []})",
     "purpose: this must be a whole number from 0 to 255"},
    {"purpose as a text", R"({"purpose": "1", "files": []})",
     "purpose: this must be a whole number from 0 to 255"},
    {"file of another kind", R"({"files": ["a.tag"]})",
     "files[0]: this must be an object, as in { \"type\": ... }"},
    {"unknown key of a file", withFile(R"("type": "jar", "path": "c.jar", "nam": "x")"),
     "files[0]: unknown key \"nam\"; the keys here are type, id, path, name, decompressed"},
    {"doubled key of a file", withFile(R"("type": "jar", "type": "jvm", "path": "c.jar")"),
     "files[0].type: this key stands twice in one object; remove one of them"},
    {"no type", withFile(R"("path": "c.jar")"), "files[0]: the key \"type\" is missing"},
    {"no path", withFile(R"("type": "jar")"), "files[0]: the key \"path\" is missing"},
    {"unknown type in the second file",
     R"({"files": [{"type": "jar", "path": "c.jar"}, {"type": "Jar", "path": "d.jar"}]})",
     "files[1].type: \"Jar\" is no file type; did you mean jar?"},
    {"program for a manifest",
     "\x7F"
     "ELF\1\1",
     "this is no manifest; it looks like a program that is none "
     "of ours"},
    {"stub for a manifest",
     "\x7F"
     "ELF\1\1" +
         std::string(kStubMarkBegin) +
         " kind=a version=1 encoding=x "
         "machine=y" +
         kStubMarkEnd,
     "this is no manifest; it looks like a launcher"},
    {"type as a number", withFile(R"("type": 3, "path": "c.jar")"),
     "files[0].type: this must be a text that is not empty"},
    {"empty path", withFile(R"("type": "jar", "path": "")"),
     "files[0].path: this must be a text that is not empty"},
    {"path of no file", withFile(R"("type": "jar", "path": "none.jar")"),
     "files[0].path: there is no file \"none.jar\" in DIR/project, DIR/base1, DIR/base2; make it, "
     "or "
     "name its folder with --base"},
    {"path of a folder", withFile(R"("type": "jar", "path": "sub")"),
     "files[0].path: \"DIR/project/sub\" is a folder; name a regular file"},
    {"id below 0", withFile(R"("type": "jar", "path": "c.jar", "id": -1)"),
     "files[0].id: this must be a whole number from 0 to 2147483647"},
    {"id above 2147483647", withFile(R"("type": "jar", "path": "c.jar", "id": 2147483648)"),
     "files[0].id: this must be a whole number from 0 to 2147483647"},
    {"doubled id",
     R"({"files": [{"type": "jar", "path": "c.jar", "id": 7},
                   {"type": "jar", "path": "d.jar", "id": 7}]})",
     "files[1].id: another file has the number 7; give each file a number of its own, or none"},
    {"name with a folder", withFile(R"("type": "jar", "path": "c.jar", "name": "x/c.jar")"),
     "files[0].name: \"x/c.jar\" is a path; write the plain name of a file"},
    {"name that leaves the folder", withFile(R"("type": "jar", "path": "c.jar", "name": "..")"),
     "files[0].name: \"..\" is a path; write the plain name of a file"},
    {"absolute name", withFile(R"("type": "jar", "path": "c.jar", "name": "/etc/x")"),
     "files[0].name: \"/etc/x\" is a path; write the plain name of a file"},
    {"name with a newline", withFile(R"("type": "jar", "path": "c.jar", "name": "a\nb")"),
     "files[0].name: \"a\\x0Ab\" holds a newline, at which a launcher stops reading it"},
    {"base name with a newline", withFile(R"("type": "jar", "path": "bad\nname")"),
     "files[0].name: \"bad\\x0Aname\" holds a newline, at which a launcher stops reading it"},
    {"name with a zero byte", withFile(R"("type": "jar", "path": "c.jar", "name": "a\u0000b")"),
     "files[0].name: \"a\\x00b\" holds a zero byte, at which a launcher stops reading it"},
    {"name of 256 bytes",
     withFile(R"("type": "jar", "path": "c.jar", "name": ")" + kLongest + "n\""),
     "files[0].name: \"" + kLongest + "n\" is longer than 255 bytes"},
    {"empty name", withFile(R"("type": "jar", "path": "c.jar", "name": "")"),
     "files[0].name: this must be a text that is not empty"},
    {"name of the extracted input file",
     withFile(R"("type": "jar", "path": "c.jar", "name": "input.tag")"),
     "files[0].name: \"input.tag\" is the name of the file that -cv:extract writes itself"},
    {"doubled name",
     R"({"files": [{"type": "jar", "path": "c.jar"},
                   {"type": "jar", "path": "d.jar", "name": "c.jar"}]})",
     "files[1]: another file is stored as \"c.jar\", too, and would be overwritten; give this one "
     "another \"name\""},
    {"decompressed of another kind",
     withFile(R"("type": "archive", "path": "c.jar", "decompressed": 5)"),
     "files[0].decompressed: this must be an object, as in { \"files\": ... }"},
    {"decompressed without bytes",
     withFile(R"("type": "archive", "path": "c.jar", "decompressed": {"files": 1})"),
     "files[0].decompressed.bytes: this must be a whole number from 0 to 2147483647"},
    {"decompressed with too many files",
     withFile(
         R"("type": "archive", "path": "c.jar", "decompressed": {"files": 2147483648, "bytes": 1})"),
     "files[0].decompressed.files: this must be a whole number from 0 to 2147483647"},
    {"decompressed with an unknown key",
     withFile(R"("type": "archive", "path": "c.jar", "decompressed": {"size": 1})"),
     "files[0].decompressed: unknown key \"size\"; the keys here are files, bytes"},
};

// What the library says is its own affair; ours is the place in front, and nothing else.
TEST_F(ManifestTest, SaysWhereTheSyntaxIsWrong) {
  struct Row {
    const char* name;
    std::string json;
    std::string place;
  };
  const Row rows[] = {
      {"empty file", "", "line 1, column 1: "},
      {"broken in the third line", "{\n\"purpose\": 0,\n\"files\": [}", "line 3, column 11: "},
      {"trailing text", R"({"files": []} x)", "line 1, column 15: "},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.place + reasonOfLibrary(row.json), errorOf(row.json));
  }
}

TEST_F(ManifestTest, SaysWhatIsWrongAndWhere) {
  for (const ErrorRow& row : kErrorRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.error, errorOf(row.json));
  }
  EXPECT_NE(std::string::npos, errorOf(withFile(R"("type": "x", "path": "c.jar")")).find(kTypes));
}

TEST_F(ManifestTest, SaysThatItIsNotThere) {
  try {
    authoring::loadManifest(m_dir / "none.json", {});
    FAIL() << "nothing was thrown";
  } catch (const authoring::AuthoringError& e) {
    EXPECT_EQ(m_dir / "none.json: No such file or directory", e.what());
  }
}

TEST_F(ManifestTest, TakesEachTypeByItsName) {
  const char* const names[] = {"instructions", "jvm",           "launchscript",
                               "jar",          "jvm-installer", "verify",
                               "archive",      "launcher",      "jvm-message"};
  for (std::int32_t type = 0; type < 9; ++type) {
    const auto manifest =
        load(withFile(R"("path": "c.jar", "type": ")" + std::string(names[type]) + "\""));
    EXPECT_EQ(type, manifest.files.at(0).type) << names[type];
  }
}

TEST_F(ManifestTest, TakesTheLongestName) {
  const auto manifest =
      load(withFile(R"("type": "jar", "path": "c.jar", "name": ")" + kLongest + "\""));
  EXPECT_EQ(kLongest, manifest.files.at(0).name);
}

TEST_F(ManifestTest, LooksInItsOwnFolderFirst) {
  const auto manifest = load(R"({"purpose": 255, "files": [
      {"type": "instructions", "path": "a.tag"},
      {"type": "jvm", "path": "sub/b.tag"},
      {"type": "jar", "path": "c.jar", "name": "other.jar"},
      {"type": "archive", "path": "d.jar", "decompressed": {"files": 0, "bytes": 2147483647}},
      {"type": "jar", "path": ")" +
                             (m_dir / "base2/c.jar") + R"("}]})");
  EXPECT_EQ(255, manifest.purpose);
  ASSERT_EQ(5u, manifest.files.size());
  const char* const paths[] = {"project/a.tag", "project/sub/b.tag", "base1/c.jar", "base2/d.jar",
                               "base2/c.jar"};
  const char* const names[] = {"a.tag", "b.tag", "other.jar", "d.jar", "c.jar"};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(m_dir / paths[i], manifest.files[i].path);
    EXPECT_EQ(names[i], manifest.files[i].name);
    EXPECT_EQ(i == 3, manifest.files[i].decompressed.has_value());
  }
  EXPECT_EQ(0, manifest.files[3].decompressed->files);
  EXPECT_EQ(2147483647, manifest.files[3].decompressed->bytes);
}

struct IdRow {
  const char* name;
  std::vector<int> given;  // -1: none
  std::vector<int> wanted;
};

const IdRow kIdRows[] = {
    {"none given", {-1, -1, -1}, {1, 2, 3}},
    {"all given", {7, 0, 2147483647}, {7, 0, 2147483647}},
    {"around those given", {-1, 1, -1, 3, -1}, {2, 1, 4, 3, 5}},
    {"far ones given", {9, -1, 8, -1}, {9, 1, 8, 2}},
};

TEST_F(ManifestTest, NumbersTheFilesThatHaveNoNumber) {
  for (const IdRow& row : kIdRows) {
    SCOPED_TRACE(row.name);
    std::string files;
    for (std::size_t i = 0; i < row.given.size(); ++i) {
      files += files.empty() ? "" : ", ";
      files += R"({"type": "jar", "path": "c.jar", "name": "n)" + std::to_string(i) + "\"";
      files += row.given[i] < 0 ? "}" : ", \"id\": " + std::to_string(row.given[i]) + "}";
    }
    std::vector<int> ids;
    for (const auto& file : load(R"({"files": [)" + files + "]}").files) {
      ids.push_back(file.id);
    }
    EXPECT_EQ(row.wanted, ids);
  }
}

struct TextRow {
  const char* name;
  const char* text;
};

const TextRow kGoodTexts[] = {
    {"byte order mark", "\xEF\xBB\xBF{\"files\": []}"},
    {"comments", "// a\n{ /* b\n */ \"files\": [ // { \n ] } // c"},
    {"comment without an end of line", "{\"files\": []}//"},
    {"carriage returns", "\xEF\xBB\xBF\r\n// a\r\n{\r\n\"files\": []\r\n}\r\n"},
};

TEST_F(ManifestTest, MayHoldCommentsAndAByteOrderMark) {
  for (const TextRow& row : kGoodTexts) {
    EXPECT_NO_THROW(load(row.text)) << row.name;
  }
  for (const char* const text : {"\xFF\xFE{", "\xFE\xFF"}) {
    EXPECT_EQ("this is UTF-16; save it as UTF-8", errorOf(text));
  }
}

// What follows "//" is no comment in a text.
TEST_F(ManifestTest, KeepsSlashesInTexts) {
  EXPECT_EQ(
      "files[0].path: there is no file \"a//b/*\" in DIR/project, DIR/base1, DIR/base2; make "
      "it, or name its folder with --base",
      errorOf(R"({"files": [{"type": "jar", "path": "a//b/*"}]})"));
}

TEST_F(ManifestTest, MayNameAStub) {
  EXPECT_EQ("", load(R"({"files": []})").stub);
  test::writeFile(m_dir / "base2/the stub", "x");
  EXPECT_EQ(m_dir / "base2/the stub", load(R"({"stub": "the stub", "files": []})").stub);
}

TEST_F(ManifestTest, MayNameNoFile) {
  const auto manifest = load(R"({"files": []})");
  EXPECT_EQ(0, manifest.purpose);
  EXPECT_TRUE(manifest.files.empty());
}

}  // namespace
