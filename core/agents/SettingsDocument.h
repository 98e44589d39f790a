#pragma once

#include "core/base/Json.h"

#include <string>
#include <string_view>

namespace FellowCore {

/// Another program's settings, read so strictly that nothing of them is lost when they are written again.
namespace SettingsDocument {

/// The largest settings file that is read, in bytes; a longer one is none that a person keeps.
constexpr std::size_t maximumBytes = std::size_t{16} * 1024 * 1024;

/// The object that the bytes hold; no bytes at all are an empty object. Throws `JsonError`: notJson for what
/// is no JSON (comments, a byte order mark, anything nested deeper than 64), wrongType when it is no object,
/// outOfRange for what writing would change (a key given twice in one object, a number with more digits than
/// a double holds).
Json parsed(std::string_view bytes);

/// Pretty printed with two spaces and a newline at the end, keys sorted, slashes not escaped.
std::string text(const Json& object);

} // namespace SettingsDocument

} // namespace FellowCore
