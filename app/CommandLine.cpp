#include "app/CommandLine.h"

#include "app/services/InterfaceAudio.h"

#include <QSet>

namespace DeskSprites {

namespace {

const char* const usage = "usage: deskfellow [SWITCH ...] [deskfellow:// LINK]\n"
                          "\n"
                          "Starts Deskfellow. When it runs already, the running one is told instead.\n"
                          "\n"
                          "  --library        open the settings window\n"
                          "  --controls       bring Batti out and open its quick actions\n"
                          "  --mira-controls, --intern-controls\n"
                          "                   the same for Mira and for Intern Nimit\n"
                          "  --mira-settings  open the settings window on Mira\n"
                          "  --toggle         hide everyone, or show them again\n"
                          "  --swap-back      put the character that was swapped out last back in its place\n"
                          "  --quit           end the running program\n"
                          "  --mute-interface-for-testing   make no sound\n"
                          "  --version        print the version\n"
                          "  --help           print this\n";

} // namespace

CommandLine::CommandLine(const QStringList& arguments) {
    static const QSet<QString> known{QStringLiteral("--library"),         QStringLiteral("--controls"),
                                     QStringLiteral("--mira-controls"),   QStringLiteral("--mira-settings"),
                                     QStringLiteral("--intern-controls"), QStringLiteral("--toggle"),
                                     QStringLiteral("--swap-back"),       QStringLiteral("--quit")};
    const QString mute =
        QString::fromUtf8(InterfaceAudio::muteSwitch.data(), InterfaceAudio::muteSwitch.size());
    for (const QString& argument : arguments) {
        if (argument == QLatin1String("--help")) {
            answer = usage;
        } else if (argument == QLatin1String("--version")) {
            answer = "deskfellow " DESKFELLOW_VERSION "\n";
        } else if (argument == mute) {
            muted = true;
        } else if (known.contains(argument) || argument.startsWith(QLatin1String("deskfellow:"))) {
            forwarded.push_back(argument);
        } else {
            answer = "deskfellow: unknown argument \"" + argument.toStdString() + "\"\n" + usage;
            status = 2;
            return;
        }
    }
}

} // namespace DeskSprites
