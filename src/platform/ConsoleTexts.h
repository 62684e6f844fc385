// What the console can be asked to show: states of the run, and texts of the message catalogue.
#ifndef CORVANE_PLATFORM_CONSOLETEXTS_H
#define CORVANE_PLATFORM_CONSOLETEXTS_H

// What `setUIStatus` tells the user; see its table in PlatformConsole.cpp.
enum UIStatus {
  UI_STATUS_INITIALIZING = 0,
  UI_STATUS_SEARCHING = 1,
  UI_STATUS_LAUNCH_FAILED = 2,
  UI_STATUS_RUNNING = 3,
  UI_STATUS_PREPARING_JVM = 4
};

enum UISubStatus {
  UI_SUBSTATUS_NONE = 0,
  UI_SUBSTATUS_SEARCHING_FOR = 1,
  UI_SUBSTATUS_SCANNING_DISKS = 2,
  UI_SUBSTATUS_VERIFYING = 3
};

// The catalogue texts that other code asks for; see docs/messages.md.
enum MessageIdentifier {
  MSG_INPUT_FILE_LOAD_FAILED = 0,
  MSG_INSTRUCTIONS_LOAD_FAILED = 1,
  MSG_LAUNCH_SCRIPT_LOAD_FAILED = 2,
  MSG_JVM_FILE_LOAD_FAILED = 3,
  MSG_INVALID_JVM_FILE_ID = 4,
  MSG_INVALID_ACTION = 5,
  MSG_LOG_FILE_NAME_MISSING = 6,
  MSG_EXTRACT_FAILED = 7,
  MSG_FILE_INDEX_LOAD_FAILED = 8,
  MSG_NO_JVM_INSTALLER = 9,
  MSG_INVALID_JVM = 10,
  MSG_INPUT_FILE_NAME_MISSING = 11,
  MSG_NO_SUITABLE_JVM = 12,
  MSG_NO_TEXT = 13,  // the empty text
  MSG_SEARCH_ALL_FAILED = 14,
  MSG_INPUT_FILE_OPEN_FAILED = 15,
  MSG_WRITE_FILE_ERROR = 16,
  MSG_TEMP_SPACE_HINT = 17,
  MSG_CANCELED = 18,
  MSG_TEMP_DIR_MISSING = 19  // holds one %s: the directory
};

#endif
