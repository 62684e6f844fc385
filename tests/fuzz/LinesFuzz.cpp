// Any bytes as lines: the three ways to read them agree.
#include "fuzz/Fuzzing.h"
#include "tagfile/TextUtils.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::toText(data, size);
  const SString whole(text);
  const FilePtr file = fuzz::openBytes(text);
  const FilePtr ahead = fuzz::openBytes(text);
  LineReader reader(ahead.get(), 0);
  std::size_t position = 0;
  while (!isAtEnd(file.get()) && !reader.isAtEnd()) {
    SString fromStream;
    readLineFromStream(file.get(), fromStream);
    SString fromText;
    readLineFromString(whole, position, fromText);
    fuzz::require(fromStream == fromText);
    fuzz::require(fromStream.view() == withoutBlanks(reader.next()));
    fuzz::require(static_cast<std::size_t>(reader.position()) == std::min(position, text.size()));
  }
  fuzz::require(isAtEnd(file.get()) == reader.isAtEnd() && position >= text.size());
  return 0;
}
