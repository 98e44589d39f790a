#pragma once

#include <string_view>

/// The programs that a session stands on, which are never touched wherever they are installed.
namespace FellowCore::DevWatchProtectedNames {

/// Whether a process or program of this name is one of them. Case, blanks, brackets and dashes make no
/// difference.
bool contain(std::string_view name);

} // namespace FellowCore::DevWatchProtectedNames
