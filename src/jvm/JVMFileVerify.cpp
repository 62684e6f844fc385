// JVMFile, verification: a candidate is accepted when the verify class, run in it, prints the
// property values that the jvm file demands.
#include "jvm/JVMFile.h"

#include <chrono>

#include "jvm/JVMMatch.h"
#include "jvm/VerifyClass.h"
#include "launcher/Log.h"
#include "launchscript/LaunchScript.h"
#include "platform/PlatformImpl.h"
#include "platform/SubStatusWrapper.h"
#include "platform/TrialLimits.h"
#include "tagfile/TagFile.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr const char* kMagicLine = "1739021872";
constexpr const char* kAnythingFollows = "...";
constexpr std::int32_t kStepsForMissingExe = 2;
constexpr std::int32_t kStepsForRun = 6;

SString macro(const char* tag) {
  return SString(&kTagMark, 1) + tag + kTagMark;
}

// The argument of the class-path function. A path in quotes becomes a string that keeps them.
CommandText quoteClasspath(const CommandText& classpath) {
  if (classpath.shape().startsWith("\"") && classpath.shape().endsWith("\"")) {
    return "\"\"" + classpath + "\"\"";
  }
  return classpath;
}

// Skips what a JVM prints before the magic line (banners, warnings) and leaves `position` after
// that line. False, with the last line read in `line`, when there is none.
bool skipToMagicLine(const SString& output, std::size_t& position, SString& line) {
  while (position < output.size()) {
    line.clear();
    readRawLineFromString(output, position, line);
    if (line == kMagicLine) {
      return true;
    }
  }
  return false;
}

// False for a candidate that had to be ended. One that could not be started has answered nothing,
// and is judged by that. The log tells of both.
bool hasEndedInTime(const ProcessResult& trial, const SString& home) {
  if (trial.isTimedOut) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(kTrialLimits.duration);
    logMessage("The JVM at " + home + " was ended, as it had not finished after " +
                   convertToString(static_cast<std::int32_t>(seconds.count())) + " seconds.",
               LOG_WARNING);
    return false;
  }
  if (!trial.startError.empty()) {
    logMessage(trial.startError, LOG_WARNING);
  }
  return true;
}

bool matchesRequirement(const SString& line, const SString& expected) {
  const std::size_t prefixLength = stringEndsWith(expected, kAnythingFollows);
  return prefixLength == SString::npos
             ? line == expected
             : line.substr(0, prefixLength) == expected.substr(0, prefixLength);
}

}  // namespace

bool JVMFile::hasProperties() const {
  const bool hasThem = !tagValue(tagname::kJVMProperties).empty();
  if (!hasThem) {
    logMessage("Unable to verify " + m_tagFile.getName() + " because the " +
                   tagname::kJVMProperties + " tag was not specified.",
               LOG_WARNING);
  }
  return hasThem;
}

std::unique_ptr<JVMMatch> JVMFile::verify(const VerifyClass& verifyClass) {
  if (!hasProperties()) {
    return nullptr;
  }
  return verify(tagValue(tagname::kJVMHome), verifyClass);
}

std::unique_ptr<JVMMatch> JVMFile::verify(const SString& home, const VerifyClass& verifyClass) {
  const SString exe = getJVMExe();
  if (exe.empty() || home.empty()) {
    return nullptr;
  }
  const SubStatusWrapper subStatus;
  PlatformImpl::setUISubStatus(UI_SUBSTATUS_VERIFYING, getDesc());
  SString path = home;
  appendPathSeparator(path);
  path += exe;
  logMessage("Verifying JVM at " + path + "\n   for JVM: " + getDesc(), LOG_INFO);
  if (!PlatformImpl::fileExists(path)) {
    logMessage(path + " does not exist", LOG_INFO);
    PlatformImpl::advanceUIProgress(kStepsForMissingExe);
    return nullptr;
  }
  if (!performVerify(home, verifyClass)) {
    return nullptr;
  }
  logMessage("Found matching JVM at " + home, LOG_INFO);
  return std::make_unique<JVMMatch>(home, m_tagFile);
}

bool JVMFile::performVerify(const SString& home, const VerifyClass& verifyClass) {
  m_tagFile.setOwnValue(tagname::kJVMHome, home);
  StringPairPtrDeque properties;
  LaunchScript script(buildVerifyCommand(home, verifyClass, properties), true);
  const ProcessResult& trial = script.tryOut(*this, verifyClass.isPacked);
  PlatformImpl::throwIfCanceled();
  const bool isAccepted =
      hasEndedInTime(trial, home) && verifyJVMOutput(trial.output.beginning(), properties);
  PlatformImpl::advanceUIProgress(kStepsForRun);
  return isAccepted;
}

CommandText JVMFile::buildVerifyCommand(const SString& home, const VerifyClass& verifyClass,
                                        StringPairPtrDeque& properties) const {
  const char* const separator = home.endsWith(kPathSeparator) ? "" : kPathSeparator;
  CommandText command = "\"" + CommandText::inserted(home + separator);
  command += macro(tagname::kJVMExe) + "\" %CP%(";
  command += quoteClasspath(verifyClass.classpath);
  command += ")  " + macro(tagname::kReqJavaArgs) + " ";
  command += verifyClass.name;
  addProperties(command, properties);
  return command;
}

// Adds the names to the command and the expected values, for later, to `properties`.
void JVMFile::addProperties(CommandText& command, StringPairPtrDeque& properties) const {
  const long count = m_tagFile.getTagValueCount(tagname::kJVMProperties);
  for (long i = 0; i < count; ++i) {
    const SString line = tagValue(tagname::kJVMProperties, i);
    const std::size_t equalSign = line.find('=');
    if (equalSign == SString::npos) {
      logMessage(
          SString("Invalid ") + tagname::kJVMProperties + " setting (" + line + ") in JVM File ",
          LOG_WARNING);
      continue;
    }
    auto property = std::make_unique<StringPair>();
    property->key = trimmed(line.substr(0, equalSign));
    property->value = trimmed(line.substr(equalSign + 1));
    command += " ";
    command += property->key;
    properties.push_back(std::move(property));
  }
}

bool JVMFile::verifyJVMOutput(const SString& output, const StringPairPtrDeque& properties) const {
  std::size_t position = 0;
  SString line;
  if (!skipToMagicLine(output, position, line)) {
    logMessage("Invalid magic value: " + line + "\n", LOG_ERROR);
    return false;
  }
  // QUIRK(lenient-verify-output): requirements without a line of output are not checked; a JVM that
  // prints only the magic line is accepted.
  for (long i = 0; i < properties.size() && position < output.size(); ++i) {
    line.clear();
    readRawLineFromString(output, position, line);
    if (!matchesRequirement(line, properties[i]->value)) {
      return false;
    }
  }
  return true;
}
