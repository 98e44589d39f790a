#include "app/CommandLine.h"

#include <gmock/gmock.h>

namespace DeskSprites {
namespace {

struct CommandCase {
    QStringList given;
    QStringList forwarded;
    bool muted = false;
    int status = 0;
    const char* answer = nullptr; ///< what the answer begins with; null for none
};

TEST(CommandLineTest, SortsWhatItIsGiven) {
    const auto words = [](const char* text) {
        return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    const CommandCase cases[] = {
        {{}, {}},
        {words("--toggle --library"), words("--toggle --library")},
        {words("deskfellow://select/mira --mute-interface-for-testing --quit"),
         words("deskfellow://select/mira --quit"), true},
        {words("--help"), {}, false, 0, "usage: "},
        {words("--version"), {}, false, 0, "deskfellow " DESKFELLOW_VERSION "\n"},
        {words("--tog"), {}, false, 2, "deskfellow: unknown argument \"--tog\"\nusage: "},
        {words("--help --nonsense --toggle"), {}, false, 2, "deskfellow: unknown argument \"--nonsense\""},
        {words("--TOGGLE"), {}, false, 2, "deskfellow: unknown"},
        {words("https://example.org"), {}, false, 2, "deskfellow: unknown"},
        {{QString()}, {}, false, 2, "deskfellow: unknown argument \"\""},
    };
    for (const CommandCase& row : cases) {
        const CommandLine read(row.given);
        const std::string what = row.given.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(read.forwarded, row.forwarded) << what;
        EXPECT_EQ(read.muted, row.muted) << what;
        EXPECT_EQ(read.status, row.status) << what;
        EXPECT_EQ(read.answer.has_value(), row.answer != nullptr) << what;
        EXPECT_TRUE(!row.answer || read.answer->starts_with(row.answer)) << *read.answer;
    }
}

} // namespace
} // namespace DeskSprites
