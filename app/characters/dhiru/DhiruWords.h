#pragma once

#include "app/characters/dhiru/DevWatchRows.h"

#include <QString>

#include <string_view>

namespace DeskSprites::DhiruWords {

/// A text of Dhiru's own in the user's language.
QString words(const char* source);
/// Text of the system's, made one clean line.
QString clean(std::string_view text);
/// A sentence of the core's.
QString plain(std::string_view text);
/// "3%", of whole percents in the user's digits.
QString percent(double value);
/// "3 servers"; what is the matter where the list cannot be believed; and the reason when something lasts.
QString status(const DevWatchView& view);
/// "CPU 34% · CPU busy for one minute", as far as each is known.
QString machine(const DevWatchView& view);

} // namespace DeskSprites::DhiruWords
