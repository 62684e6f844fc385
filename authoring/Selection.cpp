#include "authoring/Selection.h"

#include <algorithm>

#include "authoring/AuthoringError.h"
#include "authoring/FileTypes.h"
#include "authoring/NearestName.h"

namespace authoring {
namespace {

constexpr const char* kShowThem = "; `corvane-pack list` shows what there is";

std::vector<std::string> allNames(const LauncherFile& launcher) {
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(launcher.index.size()));
  for (long i = 0; i < launcher.index.size(); ++i) {
    names.emplace_back(launcher.index.at(i)->getFileName().view());
  }
  return names;
}

template <class Value>
bool holds(const std::vector<Value>& list, const Value& value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

template <class Value>
bool asksFor(const std::vector<Value>& list, const Value& value) {
  return list.empty() || holds(list, value);
}

bool isMeant(const FileIndexEntry& entry, const Selection& selection) {
  return asksFor(selection.names, std::string(entry.getFileName().view())) &&
         asksFor(selection.ids, entry.getFileId()) &&
         asksFor(selection.types, std::string(fileTypeName(entry.getFileType())));
}

void checkNames(const LauncherFile& launcher, const std::vector<std::string>& wanted) {
  const std::vector<std::string> names = allNames(launcher);
  const std::vector<std::string_view> views(names.begin(), names.end());
  for (const std::string& name : wanted) {
    if (!holds(names, name)) {
      const std::string near = printable(nearestName(name, views));
      throw AuthoringError("no file is stored as " + quotedText(printable(name)) +
                           (near.empty() ? kShowThem : "; did you mean " + near + "?"));
    }
  }
}

void checkIds(const LauncherFile& launcher, const std::vector<std::int32_t>& wanted) {
  for (const std::int32_t id : wanted) {
    if (launcher.index.findId(id) == nullptr) {
      throw AuthoringError("no file has the number " + std::to_string(id) + kShowThem);
    }
  }
}

void checkTypes(const LauncherFile& launcher, const std::vector<std::string>& wanted) {
  for (const std::string& name : wanted) {
    const auto type = fileTypeFromName(name);
    if (!type) {
      throw AuthoringError(quotedText(printable(name)) + " is no file type; the types are " +
                           allFileTypeNames());
    }
    if (launcher.index.findType(*type) == nullptr) {
      throw AuthoringError("no file is of the type " + name + kShowThem);
    }
  }
}

}  // namespace

std::vector<long> select(const LauncherFile& launcher, const Selection& selection) {
  checkNames(launcher, selection.names);
  checkIds(launcher, selection.ids);
  checkTypes(launcher, selection.types);
  std::vector<long> positions;
  for (long i = 0; i < launcher.index.size(); ++i) {
    if (isMeant(*launcher.index.at(i), selection)) {
      positions.push_back(i);
    }
  }
  if (positions.empty() && !selection.isAll()) {
    throw AuthoringError("no file has the name, number and type together" + std::string(kShowThem));
  }
  return positions;
}

}  // namespace authoring
