#include "core/agents/PumpAgentHook.h"

#include "core/agents/PumpAgentLog.h"

namespace FellowCore {

namespace {

/// What runs where Apple's scripting is; that system's script and this one's program do the same steps.
constexpr std::string_view appleBody = R"sh(umask 077
DF_DIR="$HOME/Library/Application Support/Deskfellow"
/bin/mkdir -p "$DF_DIR" 2>/dev/null || exit 0
# A short bounded lock protects append + trim across overlapping sessions.
DF_LOCK="$DF_DIR/agent-events.lock"
df_try=0
while ! /bin/mkdir "$DF_LOCK" 2>/dev/null; do
    df_try=$((df_try + 1))
    [ "$df_try" -ge 20 ] && exit 0
    df_owner=$(/bin/cat "$DF_LOCK/pid" 2>/dev/null)
    if [ -n "$df_owner" ] && ! kill -0 "$df_owner" 2>/dev/null; then
        /bin/rm -f "$DF_LOCK/pid" 2>/dev/null
        /bin/rmdir "$DF_LOCK" 2>/dev/null
    elif [ -z "$df_owner" ]; then
        df_modified=$(/usr/bin/stat -f '%m' "$DF_LOCK" 2>/dev/null)
        df_now=$(/bin/date +%s)
        if [ -n "$df_modified" ] && [ $((df_now - df_modified)) -gt 10 ]; then
            /bin/rmdir "$DF_LOCK" 2>/dev/null
        fi
    fi
    /bin/sleep 0.025
done
printf '%s\n' "$$" > "$DF_LOCK/pid"
trap '/bin/rm -f "$DF_LOCK/pid"; /bin/rmdir "$DF_LOCK" 2>/dev/null' EXIT
trap 'exit 0' HUP INT TERM
df_pid=$PPID
DF_PARENT_PIDS=''
DF_TTY=''
df_depth=0
while [ -n "$df_pid" ] && [ "$df_pid" -gt 1 ] && [ "$df_depth" -lt 16 ]; do
    DF_PARENT_PIDS="$DF_PARENT_PIDS $df_pid"
    if [ "$DF_PROJECT" = '1' ] && [ -z "$DF_TTY" ]; then
        df_tty=$(/bin/ps -p "$df_pid" -o tty= 2>/dev/null | /usr/bin/tr -d ' ')
        case "$df_tty" in /dev/tty*) DF_TTY="${df_tty#/dev/}" ;; tty*) DF_TTY="$df_tty" ;; esac
    fi
    df_pid=$(/bin/ps -p "$df_pid" -o ppid= 2>/dev/null | /usr/bin/tr -d ' ')
    df_depth=$((df_depth + 1))
done
export DF_AGENT DF_PROJECT DF_DIR DF_PARENT_PIDS DF_TTY
/usr/bin/osascript -l JavaScript -e '
ObjC.import("Foundation"); ObjC.import("AppKit");
function run() {
    try {
        const env = $.NSProcessInfo.processInfo.environment;
        const get = k => { const v = env.objectForKey(k); return v.isNil() ? "" : v.js; };
        const raw = $.NSFileHandle.fileHandleWithStandardInput.readDataOfLength(1048577);
        if (Number(raw.length) > 1048576) return;
        const input = JSON.parse($.NSString.alloc.initWithDataEncoding(raw, $.NSUTF8StringEncoding).js);
        let event;
        switch (input.hook_event_name) {
            case "UserPromptSubmit": event = "working"; break;
            case "PermissionRequest": if (get("DF_AGENT") === "codex") event = "needs_you"; break;
            case "Notification":
                // Only a permission request blocks the agent; idle_prompt is "finished, waiting for your next message".
                if (get("DF_AGENT") === "claude" && input.notification_type === "permission_prompt") event = "needs_you";
                else if (get("DF_AGENT") === "claude" && input.notification_type === "idle_prompt") event = "done";
                break;
            case "Stop": case "Interrupt": event = "done"; break;
        }
        // Read only metadata fields. Never dereference transcript_path or prompt/message/tool_input.
        const session = input.session_id;
        if (!event || typeof session !== "string" || !/^[A-Za-z0-9_.:-]{1,128}$/.test(session)) return;
        let bundle = "";
        for (const pid of get("DF_PARENT_PIDS").trim().split(/\s+/)) {
            const app = $.NSRunningApplication.runningApplicationWithProcessIdentifier(Number(pid));
            if (!app.isNil() && !app.bundleIdentifier.isNil()) { bundle = app.bundleIdentifier.js; break; }
        }
        if (!bundle) {
            const terminals = { "Apple_Terminal": "com.apple.Terminal", "iTerm.app": "com.googlecode.iterm2", "WezTerm": "com.github.wez.wezterm", "ghostty": "com.mitchellh.ghostty", "vscode": "com.microsoft.VSCode" };
            bundle = terminals[get("TERM_PROGRAM")] || "";
        }
        const out = { agent: get("DF_AGENT"), event: event, session_id: session, ts: Date.now() / 1000 };
        for (const base of ["com.microsoft.VSCode", "com.microsoft.VSCodeInsiders", "com.todesktop.230313mzl4w4u92", "com.exafunction.windsurf"]) {
            if (bundle === base || bundle.indexOf(base + ".") === 0) { bundle = base; break; }
        }
        if (/^[A-Za-z0-9_.-]{1,160}$/.test(bundle) && bundle.indexOf(".") >= 0) out.terminal_bundle_id = bundle;
        if (get("DF_PROJECT") === "1" && typeof input.cwd === "string") {
            const cwd = input.cwd;
            if (cwd.charAt(0) === "/" && Number($(cwd).lengthOfBytesUsingEncoding($.NSUTF8StringEncoding)) <= 1024 && !/[\u0000-\u001f\u007f-\u009f]/.test(cwd)) out.cwd = cwd;
        }
        if (get("DF_PROJECT") === "1" && /^tty[A-Za-z0-9]{1,32}$/.test(get("DF_TTY"))) out.tty = "/dev/" + get("DF_TTY");
        const path = get("DF_DIR") + "/agent-events.jsonl";
        const fm = $.NSFileManager.defaultManager;
        // Atomic replacement (bounded 200 records), while holding the shell lock.
        let lines = [];
        if (fm.fileExistsAtPath(path)) {
            const attrs = fm.attributesOfItemAtPathError(path, $());
            if (Number(ObjC.unwrap(attrs.objectForKey($.NSFileSize))) <= 409600) {
                const text = $.NSString.stringWithContentsOfFileEncodingError(path, $.NSUTF8StringEncoding, $());
                if (!text.isNil()) lines = text.js.split("\n").filter(x => x.length && x.length <= 2048).slice(-199);
            }
        }
        const line = JSON.stringify(out);
        if (Number($(line).lengthOfBytesUsingEncoding($.NSUTF8StringEncoding)) > 2048) return;
        lines.push(line);
        $(lines.join("\n") + "\n").writeToFileAtomicallyEncodingError(path, true, $.NSUTF8StringEncoding, $());
    } catch (e) {} // Fail open: logging must never change agent behavior.
}
' >/dev/null 2>&1
exit 0
)sh";

std::string heading(PumpProvider agent, PumpProjectConsent consent) {
    return "#!/bin/sh\nDF_AGENT='" + std::string(rawValue(agent)) + "'\nDF_PROJECT='" +
           (consent == PumpProjectConsent::included ? "1" : "0") + "'\n";
}

/// Signals end the script quietly, and whatever the program does, the agent sees success and no output.
constexpr std::string_view linuxBody = R"sh(trap 'exit 0' HUP INT TERM
[ -x "$DF_HOOK" ] || exit 0
"$DF_HOOK" event "$DF_AGENT" "$DF_PROJECT" "$DF_DIR" "$PPID" >/dev/null 2>&1
exit 0
)sh";

} // namespace

std::string PumpAgentHook::script(PumpProvider agent, PumpProjectConsent consent) {
    return heading(agent, consent).append(appleBody);
}

std::string PumpAgentHook::script(PumpProvider agent, PumpProjectConsent consent, const LinuxPlaces& places) {
    return heading(agent, consent) + "DF_DIR=" + shellQuoted(places.supportFolder.string()) +
           "\nDF_HOOK=" + shellQuoted(places.program.string()) + "\n" + std::string(linuxBody);
}

std::string PumpAgentHook::shellQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char byte : text) {
        if (byte == '\'') {
            quoted += R"('"'"')";
        } else {
            quoted.push_back(byte);
        }
    }
    return quoted + "'";
}

} // namespace FellowCore
