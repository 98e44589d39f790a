#include "app/characters/pump/PumpPresentation.h"
#include "app/characters/pump/PumpFace.h"

#include <QLocale>

#include <gmock/gmock.h>

#include <cmath>

namespace DeskSprites {
namespace {

using FellowCore::Instant;
using FellowCore::PumpClaudeUsage;
using FellowCore::PumpCodexUsage;
using FellowCore::PumpSourceState;
using FellowCore::PumpUsageSnapshot;
using PumpPresentation::Certainty;
using testing::HasSubstr;

constexpr Instant now{800000000};

class PumpPresentationTest : public testing::Test {
protected:
    PumpPresentationTest() {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        qputenv("TZ", "UTC");
    }
    ~PumpPresentationTest() override { QLocale::setDefault(QLocale::system()); }

    PumpPresentation::Row claude(const PumpClaudeUsage& usage,
                                 PumpSourceState source = PumpSourceState::ready) const {
        return PumpPresentation::rows({.at = now, .claude = usage, .claudeSource = source}, now)[0];
    }
    PumpPresentation::Row codex(const std::optional<PumpCodexUsage>& usage,
                                PumpSourceState source = PumpSourceState::ready) const {
        return PumpPresentation::rows({.at = now, .codex = usage, .codexSource = source}, now)[1];
    }
};

PumpClaudeUsage estimate(double used) {
    return {.blockTokens = 16720,
            .weekTokens = 88000,
            .resetsAt = now + 3600,
            .usedPercent = used,
            .hasLogs = true};
}

TEST_F(PumpPresentationTest, SaysWhatTheGaugeSaysAndNeverMore) {
    const struct {
        const char* fault;
        double used;
        const char* value;
        const char* usage;
    } cases[] = {
        {"whole figures have no decimals", 38, "62% left · estimate", "38% used"},
        {"99.99 left must not read as 100", 0.01, "99.9% left · estimate", "0.1% used"},
        {"the noise of a division is no tenth", 16720 / 44000.0 * 100, "62% left · estimate", "38% used"},
        {"over the budget nothing is left", 132.44, "0% left · estimate", "132.5% used"},
        {"no number is no figure", std::nan(""), "Unavailable left · estimate", "Unavailable used"},
    };
    for (const auto& each : cases) {
        const auto row = claude(estimate(each.used));
        EXPECT_EQ(row.value.toStdString(), each.value) << each.fault;
        EXPECT_THAT(row.usage.toStdString(), HasSubstr(each.usage)) << each.fault;
        EXPECT_EQ(row.certainty, Certainty::estimate);
    }
}

TEST_F(PumpPresentationTest, TellsAnEstimateFromAnExactReading) {
    const auto counted = claude(estimate(38));
    EXPECT_THAT(counted.usage.toStdString(), HasSubstr("38% used · reset ≈ May 9"));
    EXPECT_EQ(counted.detail, QStringLiteral("16,720 tokens · week 88,000 tokens"));
    EXPECT_EQ(counted.window, QStringLiteral("5-hour block · estimate"));
    PumpClaudeUsage idle = estimate(0);
    idle.resetsAt.reset();
    EXPECT_EQ(claude(idle).usage, QStringLiteral("0% used · no active block"));
    PumpClaudeUsage told = estimate(38);
    told.weekUsedPercent = 61;
    const auto exact = claude(told);
    EXPECT_EQ(exact.certainty, Certainty::exact);
    EXPECT_EQ(exact.value, QStringLiteral("62% left"));
    EXPECT_THAT(exact.usage.toStdString(), testing::Not(HasSubstr("≈")));
    EXPECT_EQ(exact.detail, QStringLiteral("Week 61% used · the week is nearer its limit"));
    EXPECT_FALSE(PumpPresentation::couldBeExact({.at = now, .claude = told}));
    EXPECT_TRUE(PumpPresentation::couldBeExact({.at = now, .claude = estimate(38)}));
}

TEST_F(PumpPresentationTest, TheSampleOfCodexIsAsOldAsItsLine) {
    PumpCodexUsage sample{.usedPercent = 24,
                          .windowMinutes = 300,
                          .resetsAt = now + 60,
                          .planType = "plus",
                          .observedAt = now - 700};
    EXPECT_EQ(codex(sample).value, QStringLiteral("76% left"));
    EXPECT_THAT(codex(sample).usage.toStdString(), HasSubstr("24% used · 300 min · reset May 9"));
    EXPECT_EQ(codex(sample).updated, QStringLiteral("Updated 11 min ago"));
    sample.resetsAt = now;
    EXPECT_EQ(codex(sample).value, QStringLiteral("Awaiting update"));
    EXPECT_EQ(codex(sample).left, std::nullopt) << "no level for a figure that holds no more";
}

TEST_F(PumpPresentationTest, EachStateSaysWhatToDo) {
    const struct {
        PumpSourceState state;
        const char* claudeValue;
        const char* claudeUsage;
        const char* codexValue;
        const char* codexUsage;
    } cases[] = {
        {PumpSourceState::loading, "Reading…", "Reading local history…", "Reading…",
         "Reading local history…"},
        {PumpSourceState::missing, "No usage logs", "Use Claude Code to log usage", "No limit logged",
         "Use Codex to record a limit"},
        {PumpSourceState::unreadable, "Logs unavailable", "Read .claude/projects", "Logs unavailable",
         "Read .codex/sessions"},
        {PumpSourceState::partial, "Partial logs", "Waiting for token count", "Partial log",
         "Waiting for token count"},
        {PumpSourceState::ready, "No usage logs", "Use Claude Code to log usage", "No limit logged",
         "Use Codex to record a limit"}, // logs without a figure in them
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(rawValue(each.state));
        EXPECT_EQ(claude({}, each.state).value.toStdString(), each.claudeValue);
        EXPECT_EQ(claude({}, each.state).usage.toStdString(), each.claudeUsage);
        EXPECT_EQ(codex({}, each.state).value.toStdString(), each.codexValue);
        EXPECT_EQ(codex({}, each.state).usage.toStdString(), each.codexUsage);
        EXPECT_EQ(claude({}, each.state).certainty, Certainty::none);
    }
}

TEST_F(PumpPresentationTest, NamesTheLimitThatBinds) {
    PumpUsageSnapshot both{.at = now,
                           .codex =
                               PumpCodexUsage{.usedPercent = 38, .windowMinutes = 300, .observedAt = now},
                           .claude = estimate(38),
                           .codexSource = PumpSourceState::ready,
                           .claudeSource = PumpSourceState::ready};
    EXPECT_TRUE(PumpPresentation::rows(both, now)[1].binds) << "Codex on a tie";
    EXPECT_EQ(PumpPresentation::status(both), QStringLiteral("Codex · 62% left"));
    both.claude.usedPercent = 39;
    EXPECT_EQ(PumpPresentation::nearest(both), QStringLiteral("Claude is nearest its limit"));
    EXPECT_EQ(PumpPresentation::status(PumpUsageSnapshot{.at = now}), QStringLiteral("No usage known yet"));
}

/// The pixels of one place of the figure, counted by colour.
int pixelsOf(const QImage& picture, const QRect& place, bool (*counts)(const QColor&)) {
    int found = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            found += counts(picture.pixelColor(x, y)) ? 1 : 0;
        }
    }
    return found;
}

TEST(PumpFaceTest, FillsTheTankOfTheRealArtAndNothingBesideIt) {
    PumpFace face(std::filesystem::path(DESKFELLOW_DATA) / "characters" / "pump", {104, 156});
    const QRect tank(34, 101, 24, 25);
    const QRect digits(34, 83, 28, 11);
    const auto opaque = [](const QColor& colour) { return colour.alpha() == 255; };
    const auto drawn = [&](PumpFace::Look look, int scale) {
        QImage canvas(104 * scale, 156 * scale, QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        face.draw(painter, QRectF(0, 0, 104 * scale, 156 * scale), look);
        return canvas;
    };
    const struct {
        std::optional<double> left;
        int rows;
    } cases[] = {{std::nullopt, 0}, {0, 0}, {0.1, 1}, {50, 13}, {100, 25}};
    for (const auto& each : cases) {
        PumpFace::Look look;
        look.gauge = FellowCore::PumpGauge(each.left);
        const QImage canvas = drawn(look, 1);
        EXPECT_EQ(pixelsOf(canvas, tank, opaque), each.rows * tank.width()) << each.left.value_or(-1);
        EXPECT_EQ(pixelsOf(canvas, canvas.rect(), opaque),
                  each.rows * tank.width() + pixelsOf(canvas, digits, opaque));
        EXPECT_EQ(pixelsOf(drawn(look, 3), QRect(3 * tank.topLeft(), 3 * tank.size()), opaque),
                  9 * each.rows * tank.width())
            << "every art pixel is a whole square";
    }
    PumpFace::Look lit;
    lit.lamp = "lamp-red";
    EXPECT_GT(pixelsOf(drawn(lit, 1), QRect(40, 4, 16, 14), opaque), 50);
}

TEST(PumpFaceTest, DigitsRollInFromBelowWithinTheirPanel) {
    PumpFace face(std::filesystem::path(DESKFELLOW_DATA) / "characters" / "pump", {104, 156});
    const auto drawn = [&](int rows) {
        PumpFace::Look look;
        look.gauge = FellowCore::PumpGauge(1.0);
        look.gauge.tankFraction = 0;
        look.oldDigits = QStringLiteral("  8");
        look.digits = QStringLiteral("  1");
        look.rows = rows;
        QImage canvas(104, 156, QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        face.draw(painter, QRectF(0, 0, 104, 156), look);
        painter.end();
        return canvas;
    };
    EXPECT_NE(drawn(0), drawn(3));
    EXPECT_NE(drawn(3), drawn(7));
    const auto opaque = [](const QColor& colour) { return colour.alpha() == 255; };
    for (const int rows : {0, 3, 7}) {
        const QImage canvas = drawn(rows);
        EXPECT_EQ(pixelsOf(canvas, QRect(34, 83, 28, 11), opaque), pixelsOf(canvas, canvas.rect(), opaque));
    }
}

} // namespace
} // namespace DeskSprites
