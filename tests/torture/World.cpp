#include "torture/World.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <sstream>

#include "archive/LauncherFileFormat.h"

namespace fs = std::filesystem;

namespace torture {
namespace {

constexpr const char* kEmptied[] = {"temp", "current", "dest"};
constexpr std::size_t kArchiveSize = 100'000;  // more than one chunk of a copy

std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

// Bytes that no block of zeros can stand for.
std::string archiveBytes() {
  std::string bytes(kArchiveSize, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>('a' + i * 31 % 26);
  }
  return bytes;
}

std::string instructionsOf(const Scenario& scenario) {
  std::string text = "INSTRUCTIONS:\n";
  for (const std::string& line : scenario.instructions) {
    text += line + "\n";
  }
  return text + "/:\n";
}

void empty(const std::string& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) {
    fs::remove_all(entry.path());
  }
}

}  // namespace

std::string readIfThere(const std::string& path) {
  return fs::is_regular_file(path) ? test::readFile(path) : std::string();
}

bool Outcome::did(const std::string& line) const {
  return std::find(record.begin(), record.end(), line) != record.end();
}

std::string Outcome::text() const {
  std::string text = "status " + std::to_string(ending.status) + (ending.hung ? ", hung" : "") +
                     "\n--- out\n" + out + "--- err\n" + err + "--- log\n" + log + "--- record\n";
  for (const std::string& line : record) {
    text += line + "\n";
  }
  for (const std::string& name : left) {
    text += "left: " + name + "\n";
  }
  return text + (handedOut ? "--- handed out\n" + *handedOut : "");
}

World::World(const Scenario& scenario, const std::string& stub) : m_scenario(scenario) {
  for (const char* name : {"app", "temp", "current", "dest", "bin"}) {
    fs::create_directories(outside(name));
  }
  pack(stub);
  addStandIns();
  if (scenario.scans) {
    addShell();
  }
  prepareCommand();
}

std::string World::inside(const std::string& name) const {
  return m_scenario.scans ? "/" + name : m_dir / name;
}

std::vector<test::StoredFile> World::embeddedFiles() const {
  const std::string standIn = test::readFile(CORVANE_STAND_IN);
  const std::string hint = m_scenario.scans ? "SEARCH_ALL: 1\n" : "PLATFORM_HINT: FAKE_HOME\n";
  const std::string exec = m_scenario.execs ? "exec " : "";
  return {{FILE_TYPE_LAUNCHER, 7, "inner", standIn},
          {FILE_TYPE_INSTRUCTIONS, 1, "setup.ins", instructionsOf(m_scenario)},
          {FILE_TYPE_JVM, 10, "java.jvm",
           "DESC: Java 17\nJVM_EXE: bin/java\nJVM_PROPERTIES:\njava.version=17...\n/:\n"
           "CLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\nSYSTEM: -D\nSYSTEM_SEPARATOR: =\n" +
               hint},
          {FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "not looked at by the stand-in"},
          {FILE_TYPE_JVM_INSTALLER, 5, "install", standIn},
          {FILE_TYPE_APPLICATION_ARCHIVE, 6, "wizard.jar", archiveBytes()},
          {FILE_TYPE_LAUNCH_SCRIPT, 2, "setup.lsc",
           "DESC: Sample\nCOMMAND: \"" + exec +
               "\"\"@JVM_HOME@/@JVM_EXE@\"\" -cp %APPLICATION_ARCHIVE%() Wizard\"\n"}};
}

void World::pack(const std::string& stub) {
  test::writeScript(outside("app/setup"),
                    test::launcherFileBytes(embeddedFiles(), 1, test::readFile(stub)));
  test::writeFile(outside("in.tag"),
                  replaceAll(m_scenario.inputFile, "@", m_scenario.scans ? "" : m_dir.path()) +
                      "LOGFILE: " + inside("log.txt") + "\n");
  test::writeFile(outside("java.jvm"),
                  "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17...\n");
}

void World::addStandIns() {
  const std::string standIn = test::readFile(CORVANE_STAND_IN);
  test::writeScript(outside("jvms/java17/bin/java"), standIn);
  test::writeScript(outside("bin/install"), standIn);
}

// On a disk of its own: the shell, and the libraries of the shell.
void World::addShell() {
  const std::string copy =
      "set -- '" + m_dir.path() +
      "'; cp /bin/sh \"$1/bin\" && for f in $(ldd /bin/sh | grep -o '/[^ :]*\\.so[^ :]*'); do "
      "mkdir -p \"$1${f%/*}\" && cp -L \"$f\" \"$1$f\"; done";
  if (std::system(copy.c_str()) != 0) {
    throw std::runtime_error("cannot copy the shell");
  }
}

void World::prepareCommand() {
  command.program = inside("app/setup");
  command.arguments = {"-cv:tempdir", inside("temp"), "-cv:log", inside("log.txt")};
  if (!m_scenario.inputFile.empty()) {
    command.arguments.insert(command.arguments.end(), {"-cv:in", inside("in.tag")});
  }
  command.arguments.insert(command.arguments.end(), m_scenario.arguments.begin(),
                           m_scenario.arguments.end());
  command.environment = {{"PATH", "/nowhere"},
                         {"HOME", inside("home")},
                         {"FAKE_HOME", inside("jvms/java17")},
                         {"INSTALLED", inside("jvms/java17/bin")},
                         {"RECORD", inside("record")},
                         {"STATUS", "0"},
                         {"WORK_MS", "0"}};
  command.folder = outside("current");
  command.input = "/dev/null";
  command.output = outside("out.txt");
  command.errors = outside("err.txt");
  if (m_scenario.scans) {
    const std::string disk = m_dir.path();
    command.prepare = [disk] { return chroot(disk.c_str()) == 0 && chdir("/current") == 0; };
  }
}

void World::reset() {
  for (const char* name : kEmptied) {
    empty(outside(name));
  }
  for (const char* name : {"out.txt", "err.txt", "log.txt", "record"}) {
    fs::remove(outside(name));
  }
}

Outcome World::collect(Ending ending) const {
  Outcome outcome;
  outcome.ending = std::move(ending);
  const std::string out = readIfThere(outside("out.txt"));
  outcome.out = normalised(out);
  outcome.err = normalised(readIfThere(outside("err.txt")));
  outcome.log = normalised(readIfThere(outside("log.txt")));
  outcome.record = linesOf(readIfThere(outside("record")));
  for (const char* folder : {"current", "dest"}) {
    for (const std::string& name : test::listTree(outside(folder))) {
      outcome.products[std::string(folder) + "/" + name] =
          normalised(readIfThere(outside(std::string(folder) + "/" + name)));
    }
  }
  const std::string temp = inside("temp") + "/";
  outcome.left = test::listTree(outside("temp"));
  for (const std::string& line : linesOf(out)) {
    const bool isTemporary = m_scenario.kind == Kind::Search && line.starts_with(temp);
    const std::string name = isTemporary ? line.substr(temp.size()) : "";
    if (std::erase(outcome.left, name) != 0) {
      outcome.handedOut = normalised(test::readFile(outside("temp/" + name)));
    }
  }
  return outcome;
}

Outcome World::run(Watch& watch, std::chrono::seconds limit) {
  reset();
  watch.start(command);
  return collect(watch.finish(limit));
}

std::string World::normalised(const std::string& text) const {
  return std::regex_replace(replaceAll(text, m_dir.path(), "DIR"), std::regex("cvj[A-Za-z0-9]{6}"),
                            "cvj#");
}

}  // namespace torture
