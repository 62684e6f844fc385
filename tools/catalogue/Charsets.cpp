#include "Charsets.h"

#include <algorithm>

#include "platform/CharsetTables.h"

namespace catalogue {
namespace {

// The ranges of a charset's two bytes; zero lead bytes for charsets of one byte.
struct Shape {
  std::uint8_t firstLead;
  std::uint8_t lastLead;
  std::uint8_t columns;
};

constexpr Shape kOneByte = {0, 0, 128};
constexpr Shape kEuc = {0xA1, 0xFE, 94};
constexpr Shape kGb = {0xA1, 0xF7, 94};
constexpr Shape kBig5 = {0xA1, 0xF9, 157};

// Of GBK only the part laid out like GB2312 is written, with two other punctuation marks; GB18030
// has the same characters there. Of EUC-JP and EUC-TW only the first set is written.
constexpr struct {
  const char* name;
  const char* encoding;
  const char* tableOf;
  Shape shape;
} kCharsets[] = {
    {"iso88591", "ISO-8859-1", nullptr, kOneByte},
    {"iso88592", "ISO-8859-2", nullptr, kOneByte},
    {"iso88593", "ISO-8859-3", nullptr, kOneByte},
    {"iso88594", "ISO-8859-4", nullptr, kOneByte},
    {"iso88595", "ISO-8859-5", nullptr, kOneByte},
    {"iso88596", "ISO-8859-6", nullptr, kOneByte},
    {"iso88597", "ISO-8859-7", nullptr, kOneByte},
    {"iso88598", "ISO-8859-8", nullptr, kOneByte},
    {"iso88599", "ISO-8859-9", nullptr, kOneByte},
    {"iso885910", "ISO-8859-10", nullptr, kOneByte},
    {"iso885911", "ISO-8859-11", nullptr, kOneByte},
    {"iso885913", "ISO-8859-13", nullptr, kOneByte},
    {"iso885914", "ISO-8859-14", nullptr, kOneByte},
    {"iso885915", "ISO-8859-15", nullptr, kOneByte},
    {"iso885916", "ISO-8859-16", nullptr, kOneByte},
    {"koi8r", "KOI8-R", nullptr, kOneByte},
    {"koi8u", "KOI8-U", nullptr, kOneByte},
    {"koi8t", "KOI8-T", nullptr, kOneByte},
    {"cp1250", "CP1250", nullptr, kOneByte},
    {"cp1251", "CP1251", nullptr, kOneByte},
    {"cp1252", "CP1252", nullptr, kOneByte},
    {"cp1253", "CP1253", nullptr, kOneByte},
    {"cp1254", "CP1254", nullptr, kOneByte},
    {"cp1257", "CP1257", nullptr, kOneByte},
    {"tis620", "TIS-620", nullptr, kOneByte},
    {"armscii8", "ARMSCII-8", nullptr, kOneByte},
    {"georgianps", "GEORGIAN-PS", nullptr, kOneByte},
    {"pt154", "PT154", nullptr, kOneByte},
    {"eucjp", "EUC-JP", nullptr, kEuc},
    {"euckr", "EUC-KR", nullptr, kEuc},
    {"euctw", "EUC-TW", nullptr, kEuc},
    {"big5", "BIG5", nullptr, kBig5},
    {"gb2312", "GB2312", nullptr, kGb},
    {"euccn", "GB2312", nullptr, kGb},
    {"gbk", "GBK", nullptr, kGb},
    {"gb18030", "GB18030", "GBK", kGb},
};

char byteOf(unsigned number) {
  return static_cast<char>(static_cast<unsigned char>(number));
}

// The bytes of the character at `index` of the table.
std::string bytesAt(std::uint8_t firstLead, std::uint8_t columns, std::size_t index) {
  const unsigned row = static_cast<unsigned>(index / columns);
  const int column = static_cast<int>(index % columns);
  if (firstLead == 0) return {byteOf(0x80U + static_cast<unsigned>(column))};
  return {byteOf(firstLead + row), byteOf(trailByte(columns, column))};
}

// The character of the basic plane that these bytes alone stand for, else 0.
std::uint16_t characterOf(const std::string& bytes, Encoder& decoder, Encoder& encoder) {
  const std::optional<std::string> utf8 = decoder.encode(bytes);
  if (!utf8 || charactersOf(*utf8).size() != 1) return 0;
  const char32_t character = codePointOf(*utf8);
  const bool isPlain = character >= 0x80 && character <= 0xFFFF && encoder.encode(*utf8) == bytes;
  return isPlain ? static_cast<std::uint16_t>(character) : std::uint16_t{0};
}

// Where the character or its older form stands; the table's size when it does not.
std::size_t placeOf(const Charset& charset, char32_t character) {
  const auto& all = charset.characters;
  auto place = std::find(all.begin(), all.end(), character);
  if (place == all.end() && olderLetter(character) != 0)
    place = std::find(all.begin(), all.end(), olderLetter(character));
  return static_cast<std::size_t>(place - all.begin());
}

}  // namespace

std::vector<Charset> makeCharsets() {
  std::vector<Charset> charsets;
  for (const auto& row : kCharsets) {
    const char* source = row.tableOf != nullptr ? row.tableOf : row.encoding;
    Encoder decoder("UTF-8", source);
    Encoder encoder(source);
    Charset charset{row.name, row.encoding, row.shape.firstLead, row.shape.columns, {}};
    const std::size_t rows = std::size_t{row.shape.lastLead} - row.shape.firstLead + 1;
    for (std::size_t i = 0; i < rows * row.shape.columns; ++i) {
      const std::string bytes = bytesAt(charset.firstLead, charset.columns, i);
      charset.characters.push_back(characterOf(bytes, decoder, encoder));
    }
    charsets.push_back(std::move(charset));
  }
  return charsets;
}

bool canShow(const Charset& charset, Encoder& encoder, std::string_view text) {
  const auto characters = charactersOf(text);
  return std::all_of(characters.begin(), characters.end(), [&](std::string_view character) {
    const char32_t number = codePointOf(character);
    const std::size_t place = placeOf(charset, number);
    return number < 0x80 ||
           (place != charset.characters.size() &&
            encoder.encode(character) == bytesAt(charset.firstLead, charset.columns, place));
  });
}

}  // namespace catalogue
