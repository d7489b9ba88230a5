#include "scenery/scenery_list_files.h"

#include <algorithm>
#include <array>

#include "core/list_store.h"

namespace skv {

namespace {

using Field = std::string SceneryRow::*;
constexpr std::array<Field, 9> fieldsOfRow{
    &SceneryRow::Name,       &SceneryRow::Folder,    &SceneryRow::Area,
    &SceneryRow::Layer,      &SceneryRow::SortLayer, &SceneryRow::RemPath,
    &SceneryRow::Texture_ID, &SceneryRow::Flatten,   &SceneryRow::Exclude};

// `first`: the place of the name in the line.
SceneryRow rowOfLine(const std::vector<std::string_view>& line, std::size_t first,
                     const CodePage& codePage) {
  SceneryRow row;
  for (std::size_t i = 0; i < fieldsOfRow.size() && first + i < line.size(); ++i)
    row.*fieldsOfRow[i] = codePage.decode(line[first + i]);
  return row;
}

// Appends the row as a line. False when something of it would break the format and became a blank.
bool appendRow(std::string& text, const SceneryRow& row) {
  bool exact = true;
  for (std::size_t i = 0; i < fieldsOfRow.size(); ++i) {
    if (i > 0) text += fieldSeparator;
    const std::string& field = row.*fieldsOfRow[i];
    const std::size_t start = text.size();
    text += field;
    exact = keepInOneField(text, start) && exact;
  }
  text += "\r\n";
  return exact;
}

}  // namespace

SceneryCache parseSceneryCache(std::string_view bytes, const CodePage& codePage) {
  SceneryCache cache;
  bool stampRead = false;
  for (const auto& line : listLines(bytes)) {
    if (!stampRead) {
      cache.stamp = val(line.front());
      stampRead = true;
      continue;
    }
    SceneryRow row = rowOfLine(line, 1, codePage);
    row.active = line.front() == "True";
    cache.rows.push_back(std::move(row));
  }
  return cache;
}

std::string sceneryCacheBytes(const SceneryCache& cache, const CodePage& codePage) {
  std::string text;
  bool exact = true;
  for (const SceneryRow& row : cache.rows) {
    text += row.active ? "True" : "False";
    text += fieldSeparator;
    exact = appendRow(text, row) && exact;
  }
  exact = exact && codePage.holds(text);
  return codePage.encode(text.insert(0, decimal(exact ? cache.stamp : 0) + "\r\n"));
}

std::vector<SceneryRow> parseSceneryLibrary(std::string_view bytes, const CodePage& codePage) {
  std::vector<SceneryRow> rows;
  for (const auto& line : listLines(bytes)) rows.push_back(rowOfLine(line, 0, codePage));
  return rows;
}

std::string sceneryLibraryBytes(const std::vector<SceneryRow>& rows, const CodePage& codePage) {
  std::string text;
  for (const SceneryRow& row : rows) appendRow(text, row);
  return codePage.encode(text);
}

}  // namespace skv
