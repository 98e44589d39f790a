#pragma once

namespace FellowHook {

/// What Claude Code's status line does: saves the limits on standard input for Pump, and then shows what
/// would have been shown without it. Arguments: the file to save to, and the user's own command, if any,
/// which takes this process's place with the same input; without one the model's name is printed. The
/// program's exit status, when no command took its place.
int showStatusLine(int count, char** values);

} // namespace FellowHook
