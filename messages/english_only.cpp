// English alone, until the catalogue is generated from the translations.
#include "platform/MessageCatalogue.h"

namespace {

const char* const kEnglish[] = {
    "en",
    "Initializing %s...",
    "Searching %s...",
    "Verifying %s",
    "No Java(tm) Virtual Machine was found.",
    "%s could not be launched.",
    "A compatible JVM can be downloaded from %s",
    "Running %s...",
    "Preparing Java(tm) Virtual Machine...",
    "Searching for Java(tm) Virtual Machine...",
    "Searching for %s",
    "Error creating temporary directory %s",
    "Error creating temporary file %s",
    "LauncherMain",
    "Invalid platform hint: %s",
    "Execution of Child Process Failed",
    "Scanning disk(s) for a Java(tm) Virtual Machine...",
    "Supply the destination directory for the Java Virtual Machine:",
    ".",
    "Could not load the input file.",
    "Error loading instructions file.",
    "Error loading launch script.",
    "Error loading JVM file.",
    "Invalid JVM file id.",
    "Invalid action in input file: ",
    "A log file name must be specified after the -log option on the command line.",
    "Unable to extract embedded files from the launcher. ",
    "Unable to load the launcher file index. ",
    "No JVM installer was included in the launcher.",
    "The JVM is not valid.",
    "An input file name must follow the '-in' command line option.",
    "A suitable JVM could not be found. Please run the program again using the option -cv:javahome "
    "<JAVA HOME DIR>",
    "Unable to search for all JVMs.",
    "Unable to open input file specified on the command line after the -in option.",
    "Choose the JVM Destination Directory",
    "Corvane(R) is preparing the Corvane Wizard, which\\nwill guide you through the rest of the "
    "setup process.\\nPlease wait...",
    "Error writing file = ",
    " There may not be enough temporary disk space. Try using -cv:tempdir to use a temporary "
    "directory on a partition with more disk space.",
    "Canceled by the user.",
    "Cannot use %s as the temp directory because it does not exist. Please run the program again "
    "using the option -cv:tempdir <temp dir> to specify a different directory to use.",
    nullptr};

}  // namespace

const char* const* const msg_locale_table[] = {
    kEnglish, kEnglish, kEnglish, kEnglish, kEnglish, kEnglish, kEnglish,
    kEnglish, kEnglish, kEnglish, kEnglish, kEnglish, kEnglish, kEnglish,
    kEnglish, kEnglish, kEnglish, kEnglish, kEnglish, kEnglish, kEnglish,
    kEnglish, kEnglish, kEnglish, kEnglish, kEnglish, kEnglish, nullptr};
