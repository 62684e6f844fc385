#include "authoring/ManifestCheck.h"

#include <algorithm>
#include <string>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "tagfile/TagNames.h"

namespace authoring {
namespace {

// --- Names and numbers ---

void checkNames(const Setup& setup, Findings& findings) {
  std::set<std::string> names;
  std::set<std::int32_t> ids;
  for (const SetupFile& file : setup.files) {
    const std::string fault = file.isStored ? findNameFault(file.name) : "";
    if (!fault.empty()) {
      findings.error(file.entry, "its name " + fault, "no launcher could copy it out", "");
    }
    if (file.isStored && !names.insert(file.name).second) {
      findings.error(file.entry, "another file has this name, too",
                     "copied out, one would overwrite the other", "give each a name of its own");
    }
    if (file.isStored && !ids.insert(file.id).second) {
      findings.error(file.entry, "another file has the number " + std::to_string(file.id) + ", too",
                     "scripts reach only the first", "give each a number of its own");
    }
  }
}

// --- Types that are there too often ---

enum class Taken { kFirst, kLast };

struct SingleRow {
  std::int32_t type;
  Taken taken;
};

const SingleRow kSingleTypes[] = {
    {FILE_TYPE_INSTRUCTIONS, Taken::kFirst},       {FILE_TYPE_LAUNCH_SCRIPT, Taken::kFirst},
    {FILE_TYPE_JVM_INSTALLER, Taken::kFirst},      {FILE_TYPE_VERIFY_JAR, Taken::kLast},
    {FILE_TYPE_APPLICATION_ARCHIVE, Taken::kLast}, {FILE_TYPE_JVM_MESSAGE, Taken::kLast},
};

void checkSingle(const Setup& setup, const SingleRow& row, Findings& findings) {
  const auto isOfType = [&row](const SetupFile& file) { return file.type == row.type; };
  const auto first = std::find_if(setup.files.begin(), setup.files.end(), isOfType);
  const auto last = std::find_if(setup.files.rbegin(), setup.files.rend(), isOfType);
  if (first == setup.files.end()) {
    return;
  }
  const bool isFirstTaken = row.taken == Taken::kFirst;
  const SetupFile& taken = isFirstTaken ? *first : *last;
  for (const SetupFile& file : setup.files) {
    if (isOfType(file) && &file != &taken) {
      findings.warning(file.entry, file.label + " is never used",
                       std::string("of the files of the type ") + fileTypeName(row.type) +
                           " the launcher takes the " + (isFirstTaken ? "first, " : "last, ") +
                           taken.label,
                       "leave it out");
    }
  }
}

// --- Files that nothing uses ---

// A script without any of them leaves the work to the program that calls the setup, which may use
// every file.
const Command kJavaCommands[] = {Command::kFindJVM, Command::kVerify, Command::kLaunch,
                                 Command::kILaunch};

struct UserRow {
  std::int32_t type;
  std::set<Command> commands;  // those that use it
  const char* function;        // of the launch script that uses it, or null
  const char* user;
};

// Not the launch script: its title is shown, whatever the script does. Not the jvm files: each of
// kJavaCommands uses them.
const UserRow kUsers[] = {
    {FILE_TYPE_JVM_INSTALLER,
     {Command::kInstallJVM},
     nullptr,
     "INSTALL_JVM in the instruction script"},
    {FILE_TYPE_VERIFY_JAR,
     {Command::kFindJVM, Command::kVerify},
     nullptr,
     "FIND_JVM or VERIFY in the instruction script"},
    {FILE_TYPE_APPLICATION_ARCHIVE,
     {},
     "%APPLICATION_ARCHIVE%",
     "%APPLICATION_ARCHIVE%() in the launch script"},
    {FILE_TYPE_LAUNCHER,
     {Command::kExecuteLauncher},
     nullptr,
     "EXECUTE_LAUNCHER in the instruction script"},
    {FILE_TYPE_JVM_MESSAGE, {Command::kFindJVM}, nullptr, "FIND_JVM in the instruction script"},
};

// True when a launch script calls it, or when there is none that tells.
bool isCalled(const Setup& setup, const char* function) {
  const SetupFile* const script = setup.findType(FILE_TYPE_LAUNCH_SCRIPT);
  if (script == nullptr || script->tagFile == nullptr) {
    return true;
  }
  const TagFile& tags = *script->tagFile;
  return tags.getTagValue(tagname::kCommand, 0).find(function) != SString::npos ||
         tags.getTagValue(tagname::kArchive, 0).find(function) != SString::npos;
}

template <typename Wanted>
bool hasAny(const std::set<Command>& commands, const Wanted& wanted) {
  return std::any_of(std::begin(wanted), std::end(wanted),
                     [&commands](Command command) { return commands.count(command) != 0; });
}

bool isUsed(const Setup& setup, const UserRow& row, const std::set<Command>& commands) {
  return row.function == nullptr ? hasAny(commands, row.commands) : isCalled(setup, row.function);
}

void checkUse(const Setup& setup, const std::set<Command>& commands, Findings& findings) {
  for (const UserRow& row : kUsers) {
    if (isUsed(setup, row, commands)) {
      continue;
    }
    for (const SetupFile& file : setup.files) {
      if (file.type == row.type) {
        findings.warning(file.entry, file.label + " is never used",
                         std::string("there is no ") + row.user, "leave the file out, or use it");
      }
    }
  }
}

// --- The purpose ---

// Those of launchers that set variables for the wizard.
bool setsVariables(std::int32_t purpose) {
  return purpose == 0 || purpose == 2;
}

void checkPurpose(const Setup& setup, Findings& findings) {
  for (const SetupFile& file : setup.files) {
    const bool isMeant = file.type == FILE_TYPE_JVM && file.tagFile != nullptr &&
                         file.tagFile->getTagValueCount(tagname::kSetEnvForWizard) > 0;
    if (isMeant && !setsVariables(setup.purpose)) {
      findings.warning(file.at(tagname::kSetEnvForWizard),
                       std::string(tagname::kSetEnvForWizard) + " is not looked at",
                       "the setup has the purpose " + std::to_string(setup.purpose) +
                           ", and only those of 0 and 2 set variables",
                       "write \"purpose\": 0 in the manifest");
    }
  }
}

}  // namespace

void checkManifest(const Setup& setup, const std::optional<std::set<Command>>& commands,
                   Findings& findings) {
  checkNames(setup, findings);
  for (const SingleRow& row : kSingleTypes) {
    checkSingle(setup, row, findings);
  }
  if (commands && hasAny(*commands, kJavaCommands)) {
    checkUse(setup, *commands, findings);
  }
  checkPurpose(setup, findings);
}

}  // namespace authoring
