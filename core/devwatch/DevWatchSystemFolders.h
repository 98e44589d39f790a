#pragma once

#include <string_view>

/// Where an operating system keeps the programs that run it.
namespace FellowCore::DevWatchSystemFolders {

/// Whether a path is or lies in a folder whose programs may never be touched.
bool isProtected(std::string_view path);
/// Whether a path lies in a folder of system programs, which are sorted apart but not all protected.
bool holds(std::string_view path);

} // namespace FellowCore::DevWatchSystemFolders
