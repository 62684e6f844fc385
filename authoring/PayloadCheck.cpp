#include "authoring/PayloadCheck.h"

#include <algorithm>
#include <optional>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "authoring/JavaCall.h"
#include "authoring/Listing.h"
#include "authoring/ProgramLook.h"
#include "authoring/ZipArchive.h"
#include "tagfile/TagNames.h"

namespace authoring {
namespace {

constexpr const char* kVerifyClass = "Verify";  // the class that the launcher starts
constexpr const char* kBuildAgain = "build or copy it again";

bool isOfType(const SetupFile& file, std::int32_t type) {
  return file.type == type && file.isReadable;
}

class PayloadCheck {
 public:
  PayloadCheck(const Setup& setup, Findings& findings) : m_setup(setup), m_findings(findings) {}

  void run() {
    for (const SetupFile& file : m_setup.files) {
      if (file.isReadable) {
        checkFile(file);
      } else {
        m_hasUnknownJar = m_hasUnknownJar || file.type == FILE_TYPE_JAR;
      }
      m_hasUnknownJar = m_hasUnknownJar || file.type == kUnknownType;
    }
    checkMainClass();
  }

 private:
  void checkFile(const SetupFile& file) {
    switch (file.type) {
      case FILE_TYPE_JAR:
        return jar(file);
      case FILE_TYPE_VERIFY_JAR:
        return verifyArchive(file);
      case FILE_TYPE_APPLICATION_ARCHIVE:
        return applicationArchive(file);
      case FILE_TYPE_JVM_INSTALLER:
      case FILE_TYPE_LAUNCHER:
        return program(file);
      default:
        return;
    }
  }

  // --- Archives ---

  // Nothing, and a finding, when Java could not open it.
  std::optional<ZipArchive> openJar(const SetupFile& file, const char* why) {
    if (file.payload.length == 0) {
      m_findings.error(file.at(), "the file is empty", why, kBuildAgain);
      return std::nullopt;
    }
    std::optional<ZipArchive> archive = ZipArchive::open(file.payload);
    if (!archive) {
      const bool isCut = file.payload.read(0, 2) == "PK";
      m_findings.error(file.at(),
                       isCut ? "the zip archive is cut: the list at its end is missing or broken"
                             : "the file is no zip archive, as a jar is one",
                       why, kBuildAgain);
    }
    return archive;
  }

  void jar(const SetupFile& file) {
    const auto archive = openJar(file, "Java finds no class in it");
    if (archive && archive->size() == 0) {
      m_findings.warning(file.at(), "the archive holds no files", "Java finds no class in it",
                         kBuildAgain);
    }
    m_hasUnknownJar = m_hasUnknownJar || !archive;
  }

  void verifyArchive(const SetupFile& file) {
    const auto archive = openJar(file, "no JVM is ever accepted");
    if (archive && !archive->holdsClass(kVerifyClass)) {
      m_findings.error(file.at(), std::string("the archive holds no ") + kVerifyClass + ".class",
                       "no JVM is ever accepted", "take the verify.jar of this program");
    }
  }

  void applicationArchive(const SetupFile& file) {
    if (file.payload.length == 0) {
      m_findings.error(file.at(), "the file is empty", "nothing comes of it", kBuildAgain);
      return;
    }
    const auto archive = ZipArchive::open(file.payload);
    const UnpackedSize actual = archive ? archive->unpackedSize() : UnpackedSize();
    const std::string advice =
        archive ? "write \"decompressed\": { \"files\": " + std::to_string(actual.files) +
                      ", \"bytes\": " + std::to_string(actual.bytes) + " }"
                : "write \"decompressed\" with the files and bytes that come of it";
    if (!file.decompressed) {
      m_findings.warning(file.entry, "the archive " + file.name + " has no sizes",
                         "the launcher asks for no room to unpack it", advice);
    } else if (file.decompressed->files < actual.files || file.decompressed->bytes < actual.bytes) {
      m_findings.warning(file.entry,
                         "of the archive " + file.name + " come " + countOf(actual.files, "file") +
                             " and " + countOf(actual.bytes, "byte") + ", more than its sizes tell",
                         "the launcher asks for too little room", advice);
    }
  }

  void checkMainClass() {
    const SetupFile* const script = m_setup.findType(FILE_TYPE_LAUNCH_SCRIPT);
    if (script == nullptr || script->tagFile == nullptr || m_hasUnknownJar ||
        !script->tagFile->getTagValue(tagname::kArchive, 0).empty() || hasOwnClassPath()) {
      return;
    }
    const auto name = findMainClass(script->tagFile->getTagValue(tagname::kCommand, 0));
    if (name && !isInAJar(*name)) {
      m_findings.error(script->at(tagname::kCommand, 0),
                       "COMMAND: the class " + *name + " is in none of the jars",
                       "Java starts and finds no class to run",
                       "correct the class, or add its jar to the manifest");
    }
  }

  // Some jvm file adds to the class path what only the user's machine has.
  bool hasOwnClassPath() const {
    return std::any_of(m_setup.files.begin(), m_setup.files.end(), [](const SetupFile& file) {
      return file.type == FILE_TYPE_JVM && file.tagFile != nullptr &&
             !file.tagFile->getTagValue(tagname::kJVMClasspath, 0).empty();
    });
  }

  bool isInAJar(const std::string& className) const {
    return std::any_of(m_setup.files.begin(), m_setup.files.end(), [&](const SetupFile& file) {
      const auto archive =
          isOfType(file, FILE_TYPE_JAR) ? ZipArchive::open(file.payload) : std::nullopt;
      return archive && archive->holdsClass(className);
    });
  }

  // --- Programs ---

  void program(const SetupFile& file) {
    const ProgramLook look = lookAtProgram(file.payload.read(0, kProgramBytes));
    if (file.payload.length == 0) {
      m_findings.error(file.at(), "the file is empty", "there is nothing to run", kBuildAgain);
    } else if (look.kind == ProgramKind::kNone) {
      m_findings.error(file.at(), "the file is no program", "it cannot be run",
                       "name a program, or a script whose first line is #!/bin/sh");
    } else if (look.kind == ProgramKind::kText) {
      m_findings.warning(file.at(), "the script does not name its interpreter",
                         "whichever shell there is takes it",
                         "begin its first line with #!/bin/sh");
    } else if (look.hasCarriageReturn) {
      m_findings.error(file.at(), "the script's first line ends with a carriage return",
                       "the system finds no interpreter of that name",
                       "save the file with the line ends of Unix");
    } else {
      machine(file, look);
    }
  }

  void machine(const SetupFile& file, const ProgramLook& look) {
    const ProgramLook& stub = m_setup.stub;
    const bool hasStub = stub.kind == ProgramKind::kElf || stub.kind == ProgramKind::kMachO;
    if (!hasStub || look.kind == ProgramKind::kScript) {
      return;
    }
    if (look.kind != stub.kind) {
      m_findings.warning(file.at(), "the program is for another system than the stub",
                         "it does not run where the setup does",
                         "take the program for the stub's system");
    } else if (!look.machine.empty() && !stub.machine.empty() && look.machine != stub.machine) {
      m_findings.warning(
          file.at(), "the program is for " + look.machine + ", the stub for " + stub.machine,
          "it may not run where the setup does", "take the program for " + stub.machine);
    }
  }

  const Setup& m_setup;
  Findings& m_findings;
  bool m_hasUnknownJar = false;
};

}  // namespace

void checkPayloads(const Setup& setup, Findings& findings) {
  PayloadCheck(setup, findings).run();
}

}  // namespace authoring
