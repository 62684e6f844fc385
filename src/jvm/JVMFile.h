// JVMFile: describes one kind of Java virtual machine that the setup can run on.
//
// A thin object around a jvm file, a tag file that says where to look for the JVM, how to
// recognise it, which system properties it must report, and how to call it (docs/jvm-file.md).
// The tag file is not owned; it must outlive this object and is written into: JVM_HOME holds the
// last home tested.
//
// JVMFile.cpp: tags and macros. JVMFileVerify.cpp: running a candidate and judging its output.
// JVMFileHints.cpp: the places where a candidate may be.
#ifndef CORVANE_JVM_JVMFILE_H
#define CORVANE_JVM_JVMFILE_H

#include <memory>

#include "launchscript/LaunchScriptGrammar.h"
#include "launchscript/MacroHandler.h"
#include "util/SString.h"
#include "util/StringPair.h"

class JVMMatch;
class TagFile;
struct VerifyClass;

class JVMFile : public MacroHandler {
 public:
  explicit JVMFile(TagFile& tagFile) : m_tagFile(tagFile) {}

  TagFile& getTagFile() const { return m_tagFile; }
  SString getDesc() const;    // first value of DESC
  SString getJVMExe() const;  // first value of JVM_EXE, such as "bin/java"
  bool isSearchAll() const;

  using MacroHandler::resolve;
  // `text` with every @TAG@ replaced by the tag's first value; an unknown tag disappears.
  CommandText resolve(const CommandText& text) const { return resolve(text, kTagMark); }
  CommandText processMacro(const MacroText& text, char delimiter, std::size_t start,
                           std::size_t& end) const override;

  // Verification. `verifyClass` is that of JVMFiles::writeVerifyJar. A match is returned as a new
  // object that refers to the tag file; null means refused. A LauncherException of the run passes
  // through.

  // The home that the jvm file itself names; needs JVM_PROPERTIES (else a warning is logged).
  [[nodiscard]] std::unique_ptr<JVMMatch> verify(const VerifyClass& verifyClass);
  [[nodiscard]] std::unique_ptr<JVMMatch> verify(const SString& home,
                                                 const VerifyClass& verifyClass);
  // Runs the verify class in the JVM at `home` and judges what it printed.
  [[nodiscard]] bool performVerify(const SString& home, const VerifyClass& verifyClass);
  // True when the lines after the magic line match the requirements.
  [[nodiscard]] bool verifyJVMOutput(const SString& output,
                                     const StringPairPtrDeque& properties) const;

  // Location by hints: each verifies its candidates in order and returns the first match, or null.

  [[nodiscard]] std::unique_ptr<JVMMatch> verifyWithPlatformHints(const VerifyClass& verifyClass);
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyWithPathHints(const VerifyClass& verifyClass);
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyWithPlatformJVMPaths(
      const VerifyClass& verifyClass);

 private:
  SString tagValue(const char* tag, long index = 0) const;
  [[nodiscard]] bool isFoundPath(const SString& tag) const;
  [[nodiscard]] bool hasProperties() const;  // logs the warning when it has none
  [[nodiscard]] bool beginHintSearch(const char* strategy) const;
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyPlatformHint(const SString& hint,
                                                             const VerifyClass& verifyClass);
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyAbsoluteHint(const SString& hint,
                                                             const VerifyClass& verifyClass);
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyRelativeHint(const SString& hint,
                                                             const VerifyClass& verifyClass);
  CommandText buildVerifyCommand(const SString& home, const VerifyClass& verifyClass,
                                 StringPairPtrDeque& properties) const;
  void addProperties(CommandText& command, StringPairPtrDeque& properties) const;

  TagFile& m_tagFile;
};

#endif
