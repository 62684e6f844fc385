// Calls only stdio and the text helpers.
#include "launcher/LauncherFacts.h"

#include <cstdio>

#include "archive/LauncherFileFormat.h"
#include "launcher/LauncherState.h"
#include "launcher/ScriptVariables.h"
#include "tagfile/Paths.h"
#include "tagfile/StreamUtils.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kInvalidStringVariable = "Invalid string variable number: ";
constexpr const char* kInvalidNumericVariable = "Invalid numeric variable number: ";

// -1 when the file cannot be opened or is too short.
std::int32_t readPurpose(const FilePtr& file) {
  if (file == nullptr || std::fseek(file.get(), -kPurposeOffsetFromEnd, SEEK_END) != 0) {
    return -1;
  }
  return std::fgetc(file.get());
}

void requireVariable(bool isValid, const char* message, std::int32_t number) {
  if (!isValid) {
    throw LauncherException(message + convertToString(number));
  }
}

}  // namespace

SString LauncherFacts::getLauncherFileName() {
  return g_launcher.m_launcherFileName;
}

FilePtr LauncherFacts::openLauncherFile() {
  return g_launcher.m_launcherFile.open(g_launcher.m_launcherFileName);
}

SString LauncherFacts::getOriginalLauncherFileName() {
  return g_launcher.m_origLauncherFileName;
}

SString& LauncherFacts::getUserJavaHome() {
  return g_launcher.m_userJavaHome;
}

SString& LauncherFacts::getUserJavaHomeAsGiven() {
  return g_launcher.m_userJavaHomeAsGiven;
}

SString& LauncherFacts::getPrependClasspath() {
  return g_launcher.m_prependClasspath;
}

SString& LauncherFacts::getAppendClasspath() {
  return g_launcher.m_appendClasspath;
}

SString& LauncherFacts::getErrOutput() {
  return g_launcher.m_errOutput;
}

SString LauncherFacts::getOriginalLauncherDir() {
  return directoryOf(g_launcher.m_origLauncherFileName, kEitherSeparator);
}

std::int32_t LauncherFacts::getLauncherPurpose(const char* file) {
  const bool isOurs = g_launcher.m_launcherFileName == file;
  if (isOurs && g_launcher.m_launcherPurpose != -1) {
    return g_launcher.m_launcherPurpose;
  }
  const std::int32_t purpose = readPurpose(isOurs ? openLauncherFile() : openFile(file, "rb"));
  if (isOurs) {
    g_launcher.m_launcherPurpose = purpose;
  }
  return purpose;
}

bool LauncherFacts::isQuietPurpose() {
  const std::int32_t purpose = getLauncherPurpose(g_launcher.m_launcherFileName.c_str());
  return purpose == 0 || purpose == 2;
}

bool LauncherFacts::isValidStringVariable(std::int32_t number) {
  return number >= 1 && number <= kStringVariables;
}

bool LauncherFacts::isValidLongVariable(std::int32_t number) {
  return number >= 1 && number <= kNumericVariables;
}

SString LauncherFacts::getStringVariable(std::int32_t number) {
  requireVariable(isValidStringVariable(number), kInvalidStringVariable, number);
  return g_launcher.m_stringVariables[number - 1];
}

void LauncherFacts::setStringVariable(std::int32_t number, const SString& value) {
  requireVariable(isValidStringVariable(number), kInvalidStringVariable, number);
  g_launcher.m_stringVariables[number - 1] = value;
}

std::int32_t LauncherFacts::getLongVariable(std::int32_t number) {
  requireVariable(isValidLongVariable(number), kInvalidNumericVariable, number);
  return g_launcher.m_numericVariables[number - 1];
}

void LauncherFacts::setLongVariable(std::int32_t number, std::int32_t value) {
  requireVariable(isValidLongVariable(number), kInvalidNumericVariable, number);
  g_launcher.m_numericVariables[number - 1] = value;
}

bool LauncherFacts::hasWizardRun() {
  return g_launcher.m_wizardHasRun;
}
