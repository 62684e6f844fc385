// corvane-pack: makes launcher files, lists and checks them, and takes them apart.
//
// Exit status: 0 success, no errors found; 1 an error, or errors found; 2 wrong usage; 3 `verify`
// can tell neither.
#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "authoring/AuthoringError.h"
#include "authoring/BundleCommand.h"
#include "authoring/Completion.h"
#include "authoring/ExplainCommand.h"
#include "authoring/Extractor.h"
#include "authoring/FindingReport.h"
#include "authoring/Installation.h"
#include "authoring/LauncherFileReader.h"
#include "authoring/Listing.h"
#include "authoring/NewCommand.h"
#include "authoring/Packer.h"
#include "authoring/SafeText.h"
#include "authoring/SeekableInput.h"
#include "authoring/SetupCheck.h"
#include "authoring/SetupContents.h"
#include "authoring/StubRecognition.h"
#include "authoring/UsageError.h"
#include "authoring/VerifyCommand.h"

namespace {

constexpr int kStatusFindings = 1;
constexpr int kStatusUsage = 2;
constexpr const char* kWhereToBegin =
    "Start with: corvane-pack new DIR. A tutorial and all other pages are among the documents of\n"
    "this package (on Linux in /usr/share/doc/corvane-pack/docs); each command has a manual page,\n"
    "such as corvane-pack-new(1).";

struct Arguments {
  authoring::PackOptions pack;
  std::string file;
  std::string folder;
  authoring::Selection selection;
  authoring::ExplainOptions explain;
  bool json = false;
  bool strict = false;
  bool noCheck = false;
  bool noSumFile = false;
};

void print(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

// Shows an error, or what the text says that it is.
void complain(const std::string& text) {
  std::fprintf(stderr, "corvane-pack: %s\n", authoring::safeText(text).c_str());
}

authoring::Findings findingsOf(const authoring::Setup& setup, const Arguments& arguments) {
  authoring::Findings findings = authoring::checkSetup(setup);
  if (arguments.strict) {
    findings.makeStrict();
  }
  return findings;
}

// Shows what is wrong on standard error. False when there are errors.
bool passesCheck(const authoring::Setup& setup, const Arguments& arguments) {
  const authoring::Findings findings = findingsOf(setup, arguments);
  const std::string report =
      authoring::reportAsText(setup.label, findings, authoring::wantsColor(stderr));
  std::fputs(report.c_str(), stderr);
  if (findings.hasErrors()) {
    std::fputs("corvane-pack: nothing was packed; correct the errors, or go on with --no-check\n",
               stderr);
  }
  return !findings.hasErrors();
}

int pack(const Arguments& arguments) {
  authoring::Findings faults;
  authoring::PackOptions options = arguments.pack;
  options.sumFile = !arguments.noSumFile;
  const authoring::PackInputs inputs =
      authoring::loadPackInputs(options, arguments.noCheck ? nullptr : &faults);
  if (!arguments.noCheck) {
    authoring::Setup setup = authoring::loadSetup(inputs.manifest, inputs.stub);
    setup.findings.add(faults);
    if (!passesCheck(setup, arguments)) {
      return kStatusFindings;
    }
  }
  const authoring::PackResult result = authoring::packLauncher(options, inputs);
  const bool toStream = arguments.pack.output == authoring::kStandardStream;
  const std::string line = authoring::countOf(static_cast<std::int64_t>(result.files), "file") +
                           ", " + authoring::countOf(result.size, "byte") +
                           (result.sumFile.empty() ? "" : ", checksum in " + result.sumFile) + "\n";
  std::fprintf(toStream ? stderr : stdout, "%s: %s",
               toStream ? "standard output" : authoring::safeText(arguments.pack.output).c_str(),
               line.c_str());
  return 0;
}

int list(const Arguments& arguments) {
  const authoring::LauncherFile launcher = authoring::readLauncherFile(arguments.file);
  authoring::requireLauncher(launcher, arguments.file);
  print(arguments.json ? authoring::listAsJson(launcher)
                       : authoring::listAsTable(authoring::inputLabel(arguments.file), launcher));
  return 0;
}

int check(const Arguments& arguments) {
  const authoring::Setup setup = authoring::loadSetup(arguments.file, arguments.pack.baseFolders);
  const authoring::Findings findings = findingsOf(setup, arguments);
  if (arguments.json) {
    print(authoring::reportAsJson(setup.label, findings));
    return findings.hasErrors() ? kStatusFindings : 0;
  }
  if (setup.stubMark) {
    print(authoring::safeText(setup.label) + ": stub " + authoring::describeStub(*setup.stubMark) +
          "\n");
  }
  print(authoring::reportAsText(setup.label, findings, authoring::wantsColor(stdout)));
  return findings.hasErrors() ? kStatusFindings : 0;
}

int extract(const Arguments& arguments) {
  const authoring::LauncherFile launcher = authoring::readLauncherFile(arguments.file);
  authoring::requireLauncher(launcher, arguments.file);
  if (!launcher.hasTrailer) {
    throw authoring::AuthoringError(authoring::inputLabel(arguments.file) +
                                    " carries no files; there is nothing to copy out");
  }
  if (arguments.folder == authoring::kStandardStream) {
    authoring::extractFile(launcher, stdout, arguments.selection);
    return 0;
  }
  const authoring::ExtractResult result =
      authoring::extractFiles(launcher, arguments.folder, arguments.selection);
  for (const std::string& warning : result.warnings) {
    complain("warning: " + warning);
  }
  const bool isWhole = !result.manifest.empty();
  print(authoring::safeText(arguments.folder) + ": " +
        authoring::countOf(static_cast<std::int64_t>(result.files), "file") +
        (isWhole ? ", " + result.stub + ", " + result.manifest : "") + "\n");
  return 0;
}

int explain(const Arguments& arguments) {
  print(authoring::explainLog(arguments.explain));
  return 0;
}

void addBaseOption(CLI::App& command, Arguments& arguments) {
  command
      .add_option("--base", arguments.pack.baseFolders,
                  "Look here, too, for files that the manifest names; may be repeated")
      ->type_name("DIR")
      ->allow_extra_args(false);
}

void addSelection(CLI::App& command, authoring::Selection& selection) {
  command.add_option("--file", selection.names, "Only the file of this name; may be repeated")
      ->type_name("NAME")
      ->allow_extra_args(false);
  command.add_option("--id", selection.ids, "Only the file of this number; may be repeated")
      ->type_name("N")
      ->allow_extra_args(false);
  command.add_option("--type", selection.types, "Only files of this type; may be repeated")
      ->type_name("TYPE")
      ->allow_extra_args(false);
}

CLI::App& addExplain(CLI::App& app, authoring::ExplainOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "explain", "Tell from the log of a setup why each Java was taken or refused");
  command.add_option("LOG", options.log, "What -cv:log has written; - for standard input")
      ->required();
  command
      .add_option("--setup", options.setup,
                  "The setup, or its manifest: tells what was wanted, and which value differs")
      ->type_name("FILE");
  command.add_flag("--all", options.allRuns, "Every run in the log, and not the last one alone");
  command.add_flag("--json", options.json, "For programs");
  return command;
}

void addVersion(CLI::App& command) {
  command.set_version_flag("--version", authoring::describeInstallation,
                           "Show the versions of this program and its stubs");
}

// Each command and what it runs.
void addCommands(CLI::App& app, Arguments& arguments, int (*&chosen)(const Arguments&)) {
  CLI::App& packCommand = *app.add_subcommand("pack", "Make a launcher file from a manifest");
  packCommand
      .add_option("MANIFEST", arguments.pack.manifest,
                  "What the launcher file holds (JSON); - for standard input")
      ->required();
  packCommand
      .add_option("--output", arguments.pack.output,
                  "The launcher file to be made; - for standard output")
      ->type_name("FILE")
      ->required();
  CLI::Option* const stub = packCommand
                                .add_option("--stub", arguments.pack.stub,
                                            "The bare launcher; default: the one installed")
                                ->type_name("FILE");
  packCommand
      .add_option("--machine", arguments.pack.machine,
                  "The machine whose installed stub is taken, such as aarch64")
      ->type_name("MACHINE")
      ->excludes(stub);
  packCommand.add_flag("--any-stub", arguments.pack.anyStub,
                       "Take the stub as it is, even if it is none of ours");
  packCommand.add_flag("--no-check", arguments.noCheck, "Pack also what check finds errors in");
  packCommand.add_flag("--strict", arguments.strict, "Take warnings as errors");
  packCommand.add_flag("--no-sha256", arguments.noSumFile,
                       "Write no checksum FILE.sha256 beside the output");
  addBaseOption(packCommand, arguments);
  packCommand.callback([&chosen] { chosen = pack; });

  CLI::App& listCommand = *app.add_subcommand("list", "Show what a launcher file holds");
  listCommand.add_option("FILE", arguments.file, "A launcher file; - for standard input")
      ->required();
  listCommand.add_flag("--json", arguments.json, "For programs");
  listCommand.callback([&chosen] { chosen = list; });

  CLI::App& checkCommand =
      *app.add_subcommand("check", "Find what would go wrong when the launcher runs");
  checkCommand
      .add_option("FILE", arguments.file, "A launcher file or a manifest; - for standard input")
      ->required();
  checkCommand.add_flag("--json", arguments.json, "For programs");
  checkCommand.add_flag("--strict", arguments.strict, "Take warnings as errors");
  addBaseOption(checkCommand, arguments);
  checkCommand.callback([&chosen] { chosen = check; });

  CLI::App& extractCommand =
      *app.add_subcommand("extract", "Copy the files out of a launcher file");
  extractCommand.add_option("FILE", arguments.file, "A launcher file; - for standard input")
      ->required();
  extractCommand
      .add_option("--output", arguments.folder,
                  "The new or empty folder to write into; - for standard output, one file alone")
      ->type_name("DIR")
      ->required();
  addSelection(extractCommand, arguments.selection);
  extractCommand.callback([&chosen] { chosen = extract; });

  addExplain(app, arguments.explain).callback([&chosen] { chosen = explain; });
}

int run(const std::function<int()>& command) {
  try {
    const int status = command();
    if (std::fflush(stdout) == 0) {
      return status;
    }
    complain("standard output cannot be written");
  } catch (const std::exception& e) {
    complain(e.what());
  }
  return kStatusFindings;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGXFSZ, SIG_IGN);  // a file at its limit is a write that fails, as on a full disk
  CLI::App app("Makes setup launchers: one executable that carries its scripts and archives.",
               "corvane-pack");
  addVersion(app);
  app.require_subcommand(1);
  Arguments arguments;
  int (*command)(const Arguments&) = nullptr;
  addCommands(app, arguments, command);
  std::function<int()> ownCommand;  // of a command with options of its own
  authoring::addNewCommand(app, ownCommand);
  authoring::addBundleCommand(app, ownCommand);
  authoring::addVerifyCommand(app, ownCommand);
  authoring::addCompletionOption(app);
  for (CLI::App* const each : app.get_subcommands([](CLI::App*) { return true; })) {
    addVersion(*each);
  }
  app.footer(kWhereToBegin);  // last, or each command would repeat it
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() == 0) {
      return app.exit(e);  // help or version
    }
    std::fprintf(stderr, "corvane-pack: %s\nRun with --help for more information.\n",
                 authoring::describeUsageError(app, e).c_str());
    return kStatusUsage;
  }
  if (command != nullptr) {
    ownCommand = [command, &arguments] { return command(arguments); };
  }
  return run(ownCommand);
}
