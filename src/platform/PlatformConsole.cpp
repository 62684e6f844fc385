// PlatformImpl: what the user sees. Status lines, progress, messages, title, prompt.
#include <cstdint>
#include <cstdio>

#include "platform/Console.h"
#include "platform/MessageCatalogue.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr std::int32_t kProgressPerRow = 70;
constexpr int kNoText = -1;

// What setUIStatus shows: `lead`, where there is one, and `text` in one line. `text` may hold the
// title.
struct StatusRow {
  UIStatus status;
  int lead;
  int text;
};

constexpr StatusRow kStatusRows[] = {
    {UI_STATUS_INITIALIZING, kNoText, kCatalogueInitializing},
    {UI_STATUS_SEARCHING, kNoText, kCatalogueSearching},
    {UI_STATUS_LAUNCH_FAILED, kCatalogueNoJVM, kCatalogueNotLaunched},
    {UI_STATUS_RUNNING, kNoText, kCatalogueRunning},
    {UI_STATUS_PREPARING_JVM, kNoText, kCataloguePreparingJVM},
};

// The catalogue indexes of the identifiers, in their order.
constexpr int kMessageIndexes[] = {
    19,       // MSG_INPUT_FILE_LOAD_FAILED
    20,       // MSG_INSTRUCTIONS_LOAD_FAILED
    21,       // MSG_LAUNCH_SCRIPT_LOAD_FAILED
    22,       // MSG_JVM_FILE_LOAD_FAILED
    23,       // MSG_INVALID_JVM_FILE_ID
    24,       // MSG_INVALID_ACTION
    25,       // MSG_LOG_FILE_NAME_MISSING
    26,       // MSG_EXTRACT_FAILED
    27,       // MSG_FILE_INDEX_LOAD_FAILED
    28,       // MSG_NO_JVM_INSTALLER
    29,       // MSG_INVALID_JVM
    30,       // MSG_INPUT_FILE_NAME_MISSING
    31,       // MSG_NO_SUITABLE_JVM
    kNoText,  // MSG_NO_TEXT
    32,       // MSG_SEARCH_ALL_FAILED
    33,       // MSG_INPUT_FILE_OPEN_FAILED
    36,       // MSG_WRITE_FILE_ERROR
    37,       // MSG_TEMP_SPACE_HINT
    38,       // MSG_CANCELED
    39,       // MSG_TEMP_DIR_MISSING
};
static_assert(std::size(kMessageIndexes) == MSG_TEMP_DIR_MISSING + 1);

// Progress is a 32-bit number that wraps around.
std::int32_t addWrapping(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

// QUIRK(launch-failed-runs-together): nothing stands between the two texts of a failed launch.
void showStatus(const StatusRow& row) {
  writeLine("");
  if (row.lead != kNoText) {
    write(get_msg(row.lead, nullptr).get());
  }
  writeLine(get_msg(row.text, g_console.g_title.c_str()).get());
}

}  // namespace

void PlatformImpl::setUIStatus(UIStatus status) {
  if (g_console.m_silent) {
    return;
  }
  for (const StatusRow& row : kStatusRows) {
    if (row.status == status) {
      showStatus(row);
    }
  }
}

// QUIRK(sub-status-never-shown): no line is written for a sub-status, and the sub-status is
// UI_SUBSTATUS_NONE afterwards.
void PlatformImpl::setUISubStatus(UISubStatus, const SString& data) {
  if (g_console.m_silent) {
    return;
  }
  g_console.m_subStatus = UI_SUBSTATUS_NONE;
  g_console.m_subStatusData = data;
}

// QUIRK(progress-rows-stay-closed): the number of closed rows never decreases. After the progress
// was set back, dots continue the open row without a line break.
void PlatformImpl::setUIProgress(std::int32_t progress) {
  if (g_console.m_silent) {
    return;
  }
  g_console.ui_progress = progress;
  const std::int32_t block = progress / kProgressPerRow;
  if (g_console.g_enableOutput && block > g_console.ui_progressBlock) {
    writeLine("");
    g_console.ui_progressBlock = block;
  }
}

// QUIRK(progress-counts-double): n steps write n dots and advance the progress by 2n, so a row of
// single steps ends after 35 dots.
void PlatformImpl::advanceUIProgress(std::int32_t steps) {
  if (g_console.m_silent) {
    return;
  }
  g_console.ui_progress = addWrapping(g_console.ui_progress, steps);
  if (g_console.g_enableOutput) {
    const auto dot = get_msg(kCatalogueDot, nullptr);
    for (std::int32_t i = 0; i < steps; ++i) {
      write(dot.get());
    }
  }
  setUIProgress(addWrapping(g_console.ui_progress, steps));
}

UISubStatus PlatformImpl::getUISubStatus() {
  return g_console.m_subStatus;
}

const SString& PlatformImpl::getUISubStatusData() {
  return g_console.m_subStatusData;
}

void PlatformImpl::setSilent(bool silent) {
  g_console.m_silent = silent;
}

void PlatformImpl::showUI() {
  g_console.g_enableOutput = !g_console.m_silent;
}

void PlatformImpl::hideUI(std::int16_t) {
  g_console.g_enableOutput = false;
}

bool PlatformImpl::isUIVisible() {
  return g_console.g_enableOutput;
}

// QUIRK(messages-show-while-hidden): a hidden console hides status and progress, but not messages.
void PlatformImpl::showUIMessage(const SString& text) {
  if (!g_console.m_silent) {
    std::puts(text.c_str());
  }
}

void PlatformImpl::setUITitle(const SString& title) {
  const SString converted = wideToMultiByte(convertToUnicode(title).get());
  if (!converted.empty() || title.empty()) {
    g_console.g_title = converted;
  }
  if (!g_console.m_silent) {
    writeLine(g_console.g_title);
  }
}

SString PlatformImpl::getMessageText(MessageIdentifier id) {
  const int number = id;
  if (number < 0 || number > MSG_TEMP_DIR_MISSING || kMessageIndexes[number] == kNoText) {
    return {};
  }
  return get_msg(kMessageIndexes[number], nullptr).get();
}

SString PlatformImpl::promptJVMDestinationDirectory() {
  if (g_console.m_silent) {
    return {};
  }
  writeLine(get_msg(kCatalogueAskDestination, nullptr).get());
  std::fflush(stdout);  // the user must see the question before the answer, in a pipe too
  // A signal that came before does not end the wait, and the next one would end us without
  // clean-up.
  return isCanceled() ? SString() : getLine();
}
