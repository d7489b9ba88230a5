#include "scenery/scenery_row.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/paths.h"

namespace skv {

namespace {

// A separator within a value would make two of it.
std::string joined(const std::vector<std::string>& values) {
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) text += valueSeparator;
    const std::size_t start = text.size();
    text += values[i];
    std::replace(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), valueSeparator,
                 ' ');
  }
  return text;
}

std::vector<std::string> valuesIn(const std::string& text) {
  return text.empty() ? std::vector<std::string>() : split(text, valueSeparator);
}

std::vector<std::string> subItems(SceneryRow&& row) {
  std::vector<std::string> items;
  items.reserve(sceneryColumn::Exclude);
  for (std::string* item : {&row.Folder, &row.Area, &row.Layer, &row.SortLayer, &row.RemPath,
                            &row.Texture_ID, &row.Flatten, &row.Exclude})
    items.push_back(std::move(*item));
  return items;
}

}  // namespace

SceneryRow rowOfArea(const SceneryArea& area) {
  const std::string number = std::to_string(area.number);
  return {.Name = area.Title,
          .Folder = area.Local,
          .Area = sortLayer(number),
          .Layer = area.Layer,
          .SortLayer = sortLayer(area.Layer),
          .RemPath = area.Remote,
          .Texture_ID = area.Texture_ID,
          .Flatten = joined(area.Flatten),
          .Exclude = joined(area.Exclude),
          .active = area.Active};
}

SceneryArea areaOfRow(SceneryRow row) {
  return {.number = 0,
          .Title = std::move(row.Name),
          .Layer = std::move(row.Layer),
          .Local = std::move(row.Folder),
          .Active = row.active,
          .Remote = std::move(row.RemPath),
          .Texture_ID = std::move(row.Texture_ID),
          .Flatten = valuesIn(row.Flatten),
          .Exclude = valuesIn(row.Exclude)};
}

SceneryRow rowAt(const ui::ListView& list, int row) {
  const auto item = [&](int index) { return list.subItem(row, index); };
  return {.Name = list.text(row),
          .Folder = item(sceneryColumn::Folder),
          .Area = item(sceneryColumn::Area),
          .Layer = item(sceneryColumn::Layer),
          .SortLayer = item(sceneryColumn::SortLayer),
          .RemPath = item(sceneryColumn::RemPath),
          .Texture_ID = item(sceneryColumn::Texture_ID),
          .Flatten = item(sceneryColumn::Flatten),
          .Exclude = item(sceneryColumn::Exclude),
          .active = list.checked(row)};
}

int addRow(ui::ListView& list, SceneryRow row) {
  std::string name = std::move(row.Name);
  return list.add(std::move(name), subItems(std::move(row)));
}

void insertRow(ui::ListView& list, SceneryRow row, int position) {
  std::string name = std::move(row.Name);
  list.insert(position, std::move(name), subItems(std::move(row)));
}

int rowOfLeaf(const ui::ListView& list, const std::string& leaf) {
  for (int row = 1; row <= list.count(); ++row)
    if (equalsIgnoringCase(leafOf(list.subItem(row, sceneryColumn::Folder)), leaf)) return row;
  return 0;
}

std::string sortLayer(const std::string& layer) {
  const double number = std::round(val(layer));
  const std::string digits = std::isfinite(number) ? decimal(std::fabs(number)) : "0";
  return (number < 0 ? "-" : "") + std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') +
         digits;
}

void sortByLayer(ui::ListView& list) {
  list.sort(sceneryColumn::SortLayer, ui::SortOrder::descending);
}

bool IsBuiltInArea(const SceneryRow& row) {
  const std::string folder = upper(row.Folder);
  return folder.starts_with("SCENEDB") || folder == "SCENERY" ||
         upper(row.RemPath).find("\\SCENEDB") != std::string::npos;
}

std::string leafOf(const std::string& Folder) { return fileName(Folder); }

}  // namespace skv
