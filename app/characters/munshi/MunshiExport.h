#pragma once

#include "app/desktop/DesktopServices.h"

#include <QString>

#include <functional>
#include <string>

class QWidget;

namespace DeskSprites::MunshiExport {

/// Gets one sentence on what came of it.
using Report = std::function<void(const QString& sentence)>;

/// Puts a day's Markdown on the clipboard.
void copy(const std::string& markdown, const Report& report);
/// Asks where, and saves a day's Markdown there, in the background. `key` is the day's, for the file's name;
/// `report` is dropped when `parent` goes. Returns at once.
void save(QWidget& parent, DesktopServices& services, const std::string& key, const std::string& markdown,
          const Report& report);

} // namespace DeskSprites::MunshiExport
