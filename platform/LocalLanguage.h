#pragma once

#include <cstdlib>
#include <string>
#include <string_view>

namespace Platform {

/// The locale in which the machine's user reads times and dates, as the environment tells it (LC_ALL,
/// LC_TIME, LANG, the first that is set: locale(7)), in ICU's form: "en_IN". Where it asks for no language at
/// all, as "C" does, it is English with a day of 24 hours.
inline std::string localTimeLocale() {
    std::string_view named;
    for (const char* const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        if (const char* const value = std::getenv(variable); value != nullptr && *value != '\0') {
            named = value;
            break;
        }
    }
    named = named.substr(0, named.find_first_of(".@")); // the character set, and what ICU calls otherwise
    return named.empty() || named == "C" || named == "POSIX" ? "en-u-hc-h23" : std::string(named);
}

} // namespace Platform
