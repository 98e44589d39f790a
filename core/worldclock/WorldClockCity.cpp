#include "core/worldclock/WorldClockCity.h"

namespace FellowCore {

std::optional<Calendar> WorldClockCity::timeZone() const {
    return Calendar::inTimeZone(zoneOf(identifier));
}

std::string_view WorldClockCity::zoneOf(std::string_view identifier) {
    return identifier.substr(0, identifier.find('|'));
}

} // namespace FellowCore
