#pragma once

#include "app/characters/dhiru/DevWatchRows.h"
#include "app/characters/dhiru/DhiruLine.h"
#include "core/base/Instant.h"

#include <array>
#include <optional>
#include <string>

namespace DeskSprites {

/// The lists of Dhiru's panel, in the order of their tabs.
enum class DhiruSection { servers, processes, applications, containers };
inline constexpr std::array<DhiruSection, 4> allDhiruSections{
    DhiruSection::servers, DhiruSection::processes, DhiruSection::applications, DhiruSection::containers};

/// Turns what was read into the lines of the lists.
namespace DhiruSections {

/// So many processes are listed at most; the filter finds the others.
inline constexpr int mostProcesses = 40;

/// What lines depend on besides the reading.
struct Asked {
    QString filter; ///< each of its words has to occur somewhere in a line, whatever their case
    FellowCore::Instant now;
    std::string home; ///< which is nobody's project
};

/// What a list shows of the reading: those that match the filter, or why there are none.
DhiruLines lines(DhiruSection section, const DevWatchView& view, const Asked& asked);
/// The words on a list's tab.
QString title(DhiruSection section);
/// Where a browser finds a container: at its first port that no database uses; nothing without one.
std::optional<std::string> url(const DevWatchContainerRow& row);

/// What the keys of containers begin with.
inline constexpr QLatin1String containerPrefix{"container/"};
/// What tells a row from every other, as its line's key.
QString key(const DevWatchServerRow& row);
QString key(const DevWatchProcessRow& row);
QString key(const DevWatchAppRow& row);
QString key(const DevWatchContainerRow& row);

} // namespace DhiruSections

} // namespace DeskSprites
