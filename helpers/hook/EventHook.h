#pragma once

namespace FellowHook {

/// What an agent's hook does: reads what the agent says on standard input and adds one line to the events
/// file. Arguments: the agent ("claude", "codex"), "1" when the folder and the terminal may be recorded, the
/// support folder, and the process that the agent's ancestors are counted from. Tells nobody of any failure:
/// logging must never change what an agent does.
void recordEvent(int count, char** values);

} // namespace FellowHook
