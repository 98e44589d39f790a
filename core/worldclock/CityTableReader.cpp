#include "core/worldclock/CityTableReader.h"

#include <charconv>
#include <system_error>

namespace FellowCore {

std::string_view takeField(std::string_view& rest, char separator) {
    const std::size_t end = rest.find(separator);
    const std::string_view field = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    return field;
}

std::optional<CityTableRow> CityTableRow::parse(std::string_view line) {
    constexpr std::size_t columns = 7;
    std::array<std::string_view, columns> cells;
    for (std::size_t column = 0; column < columns; ++column) {
        if (column + 1 < columns && line.find('\t') == std::string_view::npos) {
            return std::nullopt;
        }
        cells[column] = takeField(line, '\t');
    }
    std::int64_t population = 0;
    const char* const end = cells[5].data() + cells[5].size();
    const auto [stop, error] = std::from_chars(cells[5].data(), end, population);
    if (error != std::errc() || stop != end || cells[0].empty() || cells[4].empty()) {
        return std::nullopt;
    }
    return CityTableRow{cells[0], cells[1], cells[2], cells[3], cells[4], population, cells[6]};
}

} // namespace FellowCore
