#include "launchscript/CommandText.h"

namespace {

constexpr char kInsertedByte = 'x';  // a letter: it is part of no syntax

}  // namespace

CommandText CommandText::inserted(const SString& value) {
  SString shape;
  shape.append(value.size(), kInsertedByte);
  return {value, shape};
}

CommandText CommandText::insertedInQuotes(const SString& value) {
  return "\"" + inserted(value) + "\"";
}

CommandText& CommandText::append(const CommandText& text) {
  m_bytes.append(text.m_bytes);
  m_shape.append(text.m_shape);
  return *this;
}

CommandText& CommandText::replace(std::size_t pos, std::size_t count, const CommandText& text) {
  m_bytes.replace(pos, count, text.m_bytes);
  m_shape.replace(pos, count, text.m_shape);
  return *this;
}

CommandText& CommandText::erase(std::size_t pos, std::size_t count) {
  m_bytes.erase(pos, count);
  m_shape.erase(pos, count);
  return *this;
}

CommandText CommandText::substr(std::size_t pos, std::size_t count) const {
  return {m_bytes.substr(pos, count), m_shape.substr(pos, count)};
}

void CommandText::stripQuotes() {
  if (m_shape.startsWith("\"")) {
    erase(0, 1);
  }
  if (m_shape.endsWith("\"")) {
    erase(size() - 1);
  }
}

CommandText operator+(CommandText a, const CommandText& b) {
  a.append(b);
  return a;
}
