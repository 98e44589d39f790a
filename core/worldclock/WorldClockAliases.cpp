#include "core/worldclock/WorldClockAliases.h"

namespace FellowCore {

std::span<const std::pair<std::string_view, std::string_view>> worldClockWordAliases() {
    // An abbreviation that several times share means the one that most people live by.
    static constexpr std::pair<std::string_view, std::string_view> aliases[] = {
        {"ACDT", "Australia/Adelaide"},  {"ACST", "Australia/Adelaide"},
        {"ADT", "America/Halifax"},      {"AEDT", "Australia/Sydney"},
        {"AEST", "Australia/Sydney"},    {"AKDT", "America/Anchorage"},
        {"AKST", "America/Anchorage"},   {"ART", "America/Argentina/Buenos_Aires"},
        {"AST", "America/Halifax"},      {"AWST", "Australia/Perth"},
        {"BRT", "America/Sao_Paulo"},    {"BST", "Europe/London"},
        {"Burma", "Asia/Yangon"},        {"Cabo Verde", "Atlantic/Cape_Verde"},
        {"CAT", "Africa/Maputo"},        {"CDT", "America/Chicago"},
        {"CEST", "Europe/Berlin"},       {"CET", "Europe/Berlin"},
        {"COT", "America/Bogota"},       {"CST", "America/Chicago"},
        {"Czechia", "Europe/Prague"},    {"EAT", "Africa/Nairobi"},
        {"EDT", "America/New_York"},     {"EEST", "Europe/Athens"},
        {"EET", "Europe/Athens"},        {"EST", "America/New_York"},
        {"GMT", "Europe/London"},        {"Great Britain", "Europe/London"},
        {"GST", "Asia/Dubai"},           {"HKT", "Asia/Hong_Kong"},
        {"Holland", "Europe/Amsterdam"}, {"HST", "Pacific/Honolulu"},
        {"ICT", "Asia/Bangkok"},         {"IRST", "Asia/Tehran"},
        {"IST", "Asia/Kolkata"},         {"JST", "Asia/Tokyo"},
        {"KST", "Asia/Seoul"},           {"MDT", "America/Denver"},
        {"MSK", "Europe/Moscow"},        {"MST", "America/Denver"},
        {"MYT", "Asia/Kuala_Lumpur"},    {"NDT", "America/St_Johns"},
        {"NPT", "Asia/Kathmandu"},       {"NST", "America/St_Johns"},
        {"NYC", "America/New_York"},     {"NZDT", "Pacific/Auckland"},
        {"NZST", "Pacific/Auckland"},    {"PDT", "America/Los_Angeles"},
        {"PHT", "Asia/Manila"},          {"PKT", "Asia/Karachi"},
        {"PST", "America/Los_Angeles"},  {"SAST", "Africa/Johannesburg"},
        {"SGT", "Asia/Singapore"},       {"Swaziland", "Africa/Mbabane"},
        {"TRT", "Europe/Istanbul"},      {"T\u00FCrkiye", "Europe/Istanbul"},
        {"UAE", "Asia/Dubai"},           {"UK", "Europe/London"},
        {"US", "America/New_York"},      {"USA", "America/New_York"},
        {"UTC", "Atlantic/Reykjavik"}, // the one city that keeps it all year and is widely known to
        {"WAT", "Africa/Lagos"},         {"WEST", "Europe/Lisbon"},
        {"WET", "Europe/Lisbon"},        {"WIB", "Asia/Jakarta"},
    };
    return aliases;
}

} // namespace FellowCore
