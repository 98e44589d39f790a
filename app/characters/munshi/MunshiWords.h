#pragma once

#include "app/characters/munshi/MunshiBook.h"

#include <QString>

#include <string>

namespace DeskSprites {

/// How Munshi speaks of days and lines.
namespace MunshiWords {

/// "Today", "Yesterday", "Friday, 20 November", and with its year when that is another than today's. A key
/// that names no day stands for itself.
QString day(const std::string& key, const std::string& today);
/// "since yesterday", "since 18 November"; empty for a line that was written today.
QString carried(const FellowCore::MunshiItem& item, const std::string& today);
/// A line as it is edited: a note begins with its "-".
QString editable(const FellowCore::MunshiItem& item);
/// A short quotation of a line, for sentences about it.
QString quoted(const FellowCore::MunshiItem& item);
/// What became of text that was dropped.
QString added(const MunshiBook::Added& added);

} // namespace MunshiWords

} // namespace DeskSprites
