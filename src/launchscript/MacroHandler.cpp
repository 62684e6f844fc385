#include "launchscript/MacroHandler.h"

#include <algorithm>

#include "platform/PlatformImpl.h"

namespace {

constexpr std::size_t kShortestMacro = 3;  // two delimiters and a character

}  // namespace

bool MacroText::findMacro(char delimiter, std::size_t& start, std::size_t& end) const {
  start = m_buffer.shape().find(delimiter, m_pendingStart);
  if (start == SString::npos || m_buffer.size() - start < kShortestMacro) {
    return false;
  }
  // QUIRK(doubled-delimiter-opens-macro): a doubled delimiter is a literal one only where no later
  // delimiter follows: "a%%b%c" calls a function named "%b".
  end = m_buffer.shape().find(delimiter, start + 2);
  return end != SString::npos;
}

void MacroText::replace(std::size_t start, std::size_t end, const CommandText& value,
                        char delimiter) {
  m_resolved.append(m_buffer.substr(m_pendingStart, start - m_pendingStart));
  if (value.shape().find(delimiter) == SString::npos) {
    m_resolved.append(value);
    m_pendingStart = end + 1;
  } else {
    // QUIRK(value-scanned-again): a value is scanned in its turn, together with what follows it.
    // Written over resolved bytes as far as there is room, it does not move the rest.
    const std::size_t room = std::min(end + 1, value.size());
    m_pendingStart = end + 1 - room;
    m_buffer.replace(m_pendingStart, room, value);
  }
}

CommandText MacroText::finish(char delimiter) const {
  CommandText text = whole();
  // No macro is left, so there are at most two delimiters: a pair is side by side.
  const char pair[] = {delimiter, delimiter, '\0'};
  text.erase(text.shape().find(pair), 1);
  return text;
}

CommandText MacroHandler::resolve(const CommandText& text, char delimiter) const {
  MacroText pending(text);
  std::size_t start = 0;
  std::size_t end = 0;
  while (pending.findMacro(delimiter, start, end)) {
    PlatformImpl::throwIfCanceled();
    const CommandText value = processMacro(pending, delimiter, start, end);
    pending.replace(start, end, value, delimiter);
  }
  return pending.finish(delimiter);
}
