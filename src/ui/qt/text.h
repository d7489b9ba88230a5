// The program's UTF-8 text and Qt's.
#pragma once

#include <QString>
#include <string>

#include "ui/qt/language.h"

namespace skv::ui::qt {

inline QString shown(const std::string& text) { return QString::fromStdString(text); }
inline std::string typed(const QString& text) { return text.toStdString(); }

// What a screen reader says for a caption: without the mnemonic's mark and a closing colon.
inline QString spoken(const std::string& caption) {
  QString text = captioned(caption).remove(QLatin1Char('&'));
  if (text.endsWith(QLatin1Char(':'))) text.chop(1);
  return text;
}

}  // namespace skv::ui::qt
