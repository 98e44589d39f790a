#include "core/devwatch/DevWatchProtectedNames.h"

#include "core/base/Text.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <string>

namespace FellowCore {

namespace {

// All in the form that `normalized` gives, with a blank on both sides of each.
constexpr std::array<std::string_view, 8> protectedNames{
    " launchd windowserver finder dock ",
    // ourselves
    " deskfellow desksprites fellow fellowhook fellowmedia ",
    // service managers, and the session they keep
    " init systemd systemdexecutor sdpam systemdlogind dinit runit runsvdir s6svscan "
    "gnomesession gnomesessionbinary gnomesessionservice gnomesessionctl ksmserver "
    "plasmasession startplasmax11 startplasmawayland xfce4session matesession cinnamonsession "
    "cinnamonsessionbinary lxqtsession lxsession cosmicsession budgiesession xinit startx "
    "dbusrunsession ",
    // display servers
    " xorg xwayland xvfb xvnc xtigervnc xtightvnc xwaylandsatellite ",
    // compositors, window managers and shells
    " gnomeshell mutter mutterx11frames kwinwayland kwinwaylandwrapper kwinx11 kwin "
    "plasmashell krunner kded5 kded6 kglobalaccel5 kglobalacceld sway swaylock weston labwc "
    "wayfire river hyprland niri cage gamescope cosmiccomp cosmicpanel gala enlightenment "
    "xfwm4 xfce4panel xfdesktop xfsettingsd metacity marco matepanel matesettingsdaemon "
    "muffin cinnamon budgiewm budgiepanel lxqtpanel lxpanel openbox fluxbox blackbox icewm "
    "jwm i3 bspwm awesome dwm xmonad qtile herbstluftwm picom compton nemodesktop waybar "
    "polybar ",
    // the message bus, and the one for those who cannot see the screen
    " dbusdaemon dbusbroker dbusbrokerlaunch dbuslaunch atspibuslauncher atspi2registryd ",
    // logging in, locking and keys
    " login sshd sshdsession sshdauth agetty gdm gdm3 gdmsessionworker gdmxsession "
    "gdmwaylandsession sddm sddmhelper lightdm lxdm xdm greetd ly elogind seatd polkitd "
    "polkitgnomeauthenticationagent1 polkitkdeauthenticationagent1 matepolkit lxpolkit "
    "lxqtpolicykitagent gnomekeyringdaemon kwalletd5 kwalletd6 sshagent gpgagent xscreensaver "
    "i3lock gnomescreensaver lightlocker ",
    // sound and input
    " pipewire pipewirepulse wireplumber pipewiremediasession pulseaudio jackd jackdbus "
    "ibusdaemon ibusx11 fcitx fcitx5 ",
};

/// Lower case and nothing but letters and digits, so that no spelling of a name slips through.
std::string normalized(std::string_view name) {
    const auto lower = icu::UnicodeString::fromUTF8(lowercased(wellFormed(name)));
    icu::UnicodeString kept;
    for (std::int32_t index = 0; index < lower.length(); index = lower.moveIndex32(index, 1)) {
        if (const UChar32 character = lower.char32At(index); u_isalnum(character) != 0) {
            kept.append(character);
        }
    }
    std::string text;
    return kept.toUTF8String(text);
}

} // namespace

bool DevWatchProtectedNames::contain(std::string_view name) {
    const std::string word = " " + normalized(name) + " ";
    return std::ranges::any_of(protectedNames, [&word](std::string_view names) {
        return names.find(word) != std::string_view::npos;
    });
}

} // namespace FellowCore
