#include "app/characters/clock/ClockFaces.h"
#include "app/desktop/PixelLetters.h"
#include "core/worldclock/WorldClockCatalog.h"
#include "tests/support/TemporaryFolder.h"

#include <QPainter>

#include <gmock/gmock.h>

#include <set>

namespace {

using namespace DeskSprites;
using FellowCore::Calendar;
using FellowCore::Instant;

constexpr FellowCore::CharacterManifest::Grid grid{125, 202};
const ClockFaces::Face noon{Instant::fromUnix(12 * 3600), Calendar::utc()};

/// The pixels of the rows from `top` on that anything is drawn in.
QRect drawnBelow(const QImage& picture, int top) {
    QRect drawn;
    for (int y = top; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) != 0) {
                drawn |= QRect(x, y, 1, 1);
            }
        }
    }
    return drawn;
}

ClockFaces::Look named(const ClockFaces& faces, const char* left, const char* right) {
    ClockFaces::Look look;
    const std::array names{left, right};
    for (std::size_t side = 0; side < names.size(); ++side) {
        if (names[side] != nullptr) {
            look.sides[side] = {faces.sideHands(side, noon), QString::fromUtf8(names[side])};
        }
    }
    return look;
}

TEST(ClockFaces, PlatesStayOnTheStepsAndApart) {
    const ClockFaces faces(DESKFELLOW_DATA "/characters/clock", grid);
    const QRect steps(3, 183, 119, 13);
    struct Case {
        const char* name;
        const char* left;
        const char* right;
    };
    const Case cases[] = {
        {"short", "Rome", "Pune"},
        {"a long one beside a short one", "Wā", "Ciudad de México"},
        {"two that just fit", "Los Angeles", "San Francisco"},
        {"two that are too long", "Gustavo Adolfo Madero", "Thiruvananthapuram"},
        {"one that no plate could hold", "Llanfairpwllgwyngyllgogerychwyrndrobwll", "Rio de Janeiro"},
        {"one alone", nullptr, "Santiago de los Caballeros de la Vega"},
        {"one of another script", "東京", "Seoul"},
        {"without a name", "", "Seoul"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        const QRect both = drawnBelow(faces.compose(named(faces, each.left, each.right)), 183);
        const QRect left = drawnBelow(faces.compose(named(faces, each.left, nullptr)), 183);
        EXPECT_TRUE(steps.contains(both));
        EXPECT_EQ(both.right(), drawnBelow(faces.compose(named(faces, nullptr, each.right)), 183).right());
        EXPECT_TRUE(left.isEmpty() || left.left() == both.left());
        const QImage picture = faces.compose(named(faces, each.left, each.right));
        bool hasGap = false;
        for (int x = 19; x < 106; ++x) {
            hasGap = hasGap || drawnBelow(picture.copy(x, 0, 1, picture.height()), 183).isEmpty();
        }
        EXPECT_TRUE(hasGap || each.left == nullptr) << "the plates touch";
    }
}

TEST(ClockFaces, PlacesThatAreNoneDrawNothingThere) {
    const std::string_view dial = R"({"column":62,"row":155,"radius":16})";
    const std::string many = R"({"column":99999999999,"row":-7,"radius":5000000})";
    const auto places = [&](std::string_view large, const std::string& names) {
        return R"({"leftDial":)" + many + R"(,"rightDial":)" + many + R"(,"largeDial":)" +
               std::string(large) + R"(,"names":)" + names + "}";
    };
    const std::string cases[] = {
        "",
        "[]",
        "{}",
        R"({"largeDial":7})",
        places(dial, R"({"left":0,"top":0,"right":"x","bottom":1})"),
        places(many, R"({"left":-2000000000,"top":5,"right":2000000000,"bottom":4})"),
        places(dial, R"({"left":120,"top":190,"right":122,"bottom":191})"),
    };
    for (const std::string& text : cases) {
        SCOPED_TRACE(text);
        const TestSupport::TemporaryFolder folder;
        TestSupport::writeBytes(folder / "places.json", text);
        const ClockFaces faces(folder.path(), grid);
        ClockFaces::Look look = named(faces, "London", "Tokyo");
        look.home = faces.homeHands(noon);
        EXPECT_EQ(faces.compose(look).size(), QSize(125, 202));
    }
}

TEST(PixelLetters, WriteTheNameOfEveryCity) {
    const FellowCore::WorldClockCatalog catalog;
    for (const auto& entry : catalog.entries()) {
        const QString name = QString::fromStdString(entry.city.name);
        ASSERT_TRUE(PixelLetters::canWrite(name)) << entry.city.name;
        EXPECT_LE(PixelLetters::width(PixelLetters::fitted(name, 50)), 50) << entry.city.name;
    }
    EXPECT_FALSE(PixelLetters::canWrite(QString::fromUtf8("東京")));
    EXPECT_FALSE(PixelLetters::canWrite(QString()));
    EXPECT_FALSE(PixelLetters::canWrite(QString(QChar(0x0301)))) << "an accent of nothing";
    EXPECT_EQ(PixelLetters::fitted(QStringLiteral("Pune"), 50), QStringLiteral("Pune"));
}

TEST(PixelLetters, TellLettersApartByTheirAccents) {
    const auto written = [](const QString& text) {
        QImage picture(24, PixelLetters::height + 8, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        PixelLetters::paint(painter, {4, 4}, text, Qt::black);
        painter.end();
        const QRect within(4, 4, PixelLetters::width(text), PixelLetters::height);
        // An accent may be a pixel wider than its letter.
        EXPECT_TRUE(within.adjusted(-2, 0, 2, 0).contains(drawnBelow(picture, 0))) << text.toStdString();
        return QByteArray(reinterpret_cast<const char*>(picture.constBits()),
                          static_cast<qsizetype>(picture.sizeInBytes()));
    };
    for (const QString& group : {QString::fromUtf8("aàáâãäåāăạ"), QString::fromUtf8("IÍÎİĪı"),
                                 QString::fromUtf8("sśşšș"), QString::fromUtf8("OÓÔÕÖŌ")}) {
        std::set<QByteArray> forms;
        for (const QChar letter : group) {
            EXPECT_TRUE(forms.insert(written(QString(letter))).second) << QString(letter).toStdString();
        }
    }
}

} // namespace
