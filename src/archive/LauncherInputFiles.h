// LauncherInputFiles: everything the launcher was given to work with.
//
// Holds the file index of the launcher file and the objects built from tag files: instruction
// script, launch script, jvm files, JVM message. They come from the launcher file and from an
// input file ("-cv:in"), which is loaded first and wins (docs/formats.md, "Input file").
//
// Owns all of them and their tag files. The objects are declared after the tag files that they
// refer to, so they are destroyed first.
#ifndef CORVANE_ARCHIVE_LAUNCHERINPUTFILES_H
#define CORVANE_ARCHIVE_LAUNCHERINPUTFILES_H

#include <cstdio>
#include <memory>

#include "archive/FileIndex.h"
#include "archive/JVMMessage.h"
#include "instructions/Instructions.h"
#include "jvm/JVMFiles.h"
#include "launchscript/LaunchScript.h"
#include "tagfile/TagFile.h"
#include "util/SString.h"

class LauncherInputFiles {
 public:
  constexpr LauncherInputFiles() = default;
  LauncherInputFiles(const LauncherInputFiles&) = delete;
  LauncherInputFiles& operator=(const LauncherInputFiles&) = delete;

  // Takes what an input file names: INSTRUCTIONS, LAUNCHSCRIPT, VERIFY_CLASSPATH with
  // VERIFY_CLASS_NAME, UI_TITLE, JVM. Throws with the text of the step's MSG_..._LOAD_FAILED in
  // front of the cause.
  void load(const TagFile& inputFile);
  // Reads the launcher file's index, once in a run, and with `loadTagFilesToo` parses its tag
  // files. A launcher file without our trailer holds no files, which is no error. Throws
  // LauncherException; entries read before the error stay. Memory is bounded by the file's size: an
  // index that names the same bytes over and over ends with an error that says so.
  void load(bool loadTagFilesToo);
  // Copies every embedded file into the current directory and writes "input.tag" beside them, an
  // input file that runs the same setup from disk.
  void extractAll();

  bool areInternalFilesLoaded() const { return m_internalFilesLoaded; }
  Instructions* getInstructions() const { return m_instructions.get(); }
  LaunchScript* getLaunchScript() const { return m_launchScript.get(); }
  JVMFiles& getJVMFiles() { return m_jvmFiles; }
  JVMMessage* getJVMMessage() const { return m_jvmMessage.get(); }  // null: none embedded

  // The files that the launcher file carries; empty until it is loaded.
  const FileIndex& getFileIndex() const { return m_fileIndex; }

 private:
  TagFile& loadTagFile(const SString& path);
  void logFileIndex() const;
  void loadTagFiles(std::FILE* launcherFile);
  void useTagFile(const FileIndexEntry& entry);
  void setLaunchScript(const TagFile& tagFile);
  void loadJVMFile(const SString& path);

  FileIndex m_fileIndex;
  TagFilePtrDeque m_tagFiles;  // those that an input file named
  std::unique_ptr<Instructions> m_instructions;
  std::unique_ptr<LaunchScript> m_launchScript;
  std::unique_ptr<JVMMessage> m_jvmMessage;
  JVMFiles m_jvmFiles{m_fileIndex};
  bool m_jvmFilesGiven = false;  // true: embedded jvm files are left out
  bool m_internalFilesLoaded = false;
};

#endif
