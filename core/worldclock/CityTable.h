#pragma once

#include <string_view>

namespace FellowCore {

/// The gazetteer that is part of this library: lines of seven columns separated by tabs, by falling
/// population. The columns are name, plain ASCII name (empty when it is the same), first-level region,
/// country, IANA time zone, population in thousands, and alternate names separated by "|". Adapted from
/// GeoNames, CC BY 4.0; see NOTICE.
std::string_view builtInCityTable();

} // namespace FellowCore
