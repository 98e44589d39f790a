#pragma once

#include "core/worldclock/WorldClockPresentation.h"

#include <QString>

namespace DeskSprites::ClockWords {

/// "Pune, Maharashtra, India"; a region that is called like its city is not said again.
QString place(const FellowCore::WorldClockRow& row);
/// "Home · Maharashtra, India", or the region of a city elsewhere.
QString region(const FellowCore::WorldClockRow& row);
/// "Tomorrow, Sat Nov 22 · +5:30"; home differs from nothing.
QString day(const FellowCore::WorldClockRow& row);
/// The same and the time as a screen reader says them.
QString spoken(const FellowCore::WorldClockRow& row);

} // namespace DeskSprites::ClockWords
