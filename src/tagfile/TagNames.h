// TagNames: the tags of every tag file that the launcher reads or writes.
//
// Constants, since a misspelt literal would read as an empty value: no other file of the launcher
// or of corvane-pack spells a name out (tools/check_tags.py). TagTables says what each tag holds.
#ifndef CORVANE_TAGFILE_TAGNAMES_H
#define CORVANE_TAGFILE_TAGNAMES_H

namespace tagname {

// The instruction script; an input file names one by the same tag.
inline constexpr const char* kInstructions = "INSTRUCTIONS";

// The launch script and the jvm file.
inline constexpr const char* kDesc = "DESC";

// The launch script.
inline constexpr const char* kCommand = "COMMAND";
inline constexpr const char* kArchive = "ARCHIVE";
inline constexpr const char* kAutoSetWorkingDir = "AUTO_SET_WORKING_DIR";
inline constexpr const char* kDisplayConsole = "DISPLAY_CONSOLE";

// The jvm file.
inline constexpr const char* kJVMExe = "JVM_EXE";
inline constexpr const char* kJVMProperties = "JVM_PROPERTIES";
inline constexpr const char* kPlatformHint = "PLATFORM_HINT";
inline constexpr const char* kPathHint = "PATH_HINT";
inline constexpr const char* kSearchAll = "SEARCH_ALL";
inline constexpr const char* kJVMHome = "JVM_HOME";
inline constexpr const char* kJVMFile = "JVM_FILE";
inline constexpr const char* kJVMTemp = "JVM_TEMP";
inline constexpr const char* kReqJavaArgs = "REQ_JAVA_ARGS";
inline constexpr const char* kClasspath = "CLASSPATH";
inline constexpr const char* kClasspathSeparator = "CLASSPATH_SEPARATOR";
inline constexpr const char* kJVMClasspath = "JVM_CLASSPATH";
inline constexpr const char* kUseCPEnvVar = "USE_CP_ENV_VAR";
inline constexpr const char* kCPEnvVar = "CP_ENV_VAR";
inline constexpr const char* kSystem = "SYSTEM";
inline constexpr const char* kSystemSeparator = "SYSTEM_SEPARATOR";
inline constexpr const char* kSetEnvForWizard = "SET_ENV_FOR_WIZARD";

// The JVM message.
inline constexpr const char* kMessage = "MESSAGE";

// The input file.
inline constexpr const char* kAction = "ACTION";
inline constexpr const char* kLogFile = "LOGFILE";
inline constexpr const char* kShowProgress = "SHOW_PROGRESS";
inline constexpr const char* kShowFailMsg = "SHOW_FAIL_MSG";
inline constexpr const char* kLaunchScript = "LAUNCHSCRIPT";
inline constexpr const char* kJVM = "JVM";
inline constexpr const char* kJVMMessage = "JVMMESSAGE";
inline constexpr const char* kUITitle = "UI_TITLE";
inline constexpr const char* kVerifyClasspath = "VERIFY_CLASSPATH";
inline constexpr const char* kVerifyClassName = "VERIFY_CLASS_NAME";
inline constexpr const char* kVerifyJVMFile = "VERIFY_JVM_FILE";
inline constexpr const char* kVerifyJVMHome = "VERIFY_JVM_HOME";
inline constexpr const char* kInstallJVMExe = "INSTALL_JVM_EXE";
inline constexpr const char* kInstallJVMDest = "INSTALL_JVM_DEST";

}  // namespace tagname

// The values of ACTION in an input file.
namespace actionname {

inline constexpr const char* kRunInstructions = "RUN_INSTRUCTIONS";
inline constexpr const char* kSearch = "SEARCH";
inline constexpr const char* kSearchAll = "SEARCH_ALL";
inline constexpr const char* kVerifyJVM = "VERIFY_JVM";
inline constexpr const char* kInstallJVM = "INSTALL_JVM";

}  // namespace actionname

#endif
