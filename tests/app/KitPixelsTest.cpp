#include "app/desktop/PixelDigits.h"
#include "app/desktop/PixelFrame.h"
#include "app/desktop/PixelIcon.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace {

using namespace DeskSprites;

/// What a painter draws into a picture of `size` points at a scale.
QImage drawn(const QSize& size, int scale, const std::function<void(QPainter&)>& draw) {
    QImage image(size * scale, QImage::Format_ARGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter);
    painter.end();
    image.setDevicePixelRatio(1);
    return image;
}

QImage digitsImage(const QString& text, PixelDigits::Face face, int pixel = 2, int scale = 1) {
    const PixelDigits digits(face, pixel);
    return drawn(digits.size(text), scale,
                 [&](QPainter& painter) { digits.paint(painter, QPoint(0, 0), text, Qt::black); });
}

QImage iconImage(PixelIcon icon, bool mirrored = false) {
    return drawn(QSize(pixelIconSide, pixelIconSide) * 2, 1, [&](QPainter& painter) {
        paintPixelIcon(painter, QPoint(0, 0), icon, Qt::black, 2, mirrored);
    });
}

std::set<QRgb> coloursOf(const QImage& image) {
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            colours.insert(image.pixel(x, y));
        }
    }
    return colours;
}

bool isEmpty(const QImage& image) {
    return coloursOf(image) == std::set<QRgb>{qRgba(0, 0, 0, 0)};
}

const PixelDigits::Face faces[] = {PixelDigits::Face::small, PixelDigits::Face::large};

TEST(KitPixels, ARunningClockNeverChangesWidth) {
    for (const PixelDigits::Face face : faces) {
        const PixelDigits digits(face);
        const QSize size = digits.size(u"00:00");
        for (const QStringView text : {u"11:11", u"24:59", u"18:07", u" 8:47", u"77:77"}) {
            EXPECT_EQ(digits.size(text), size) << text.toString().toStdString();
        }
        EXPECT_EQ(digits.size(u""), QSize(0, size.height()));
    }
    EXPECT_EQ(PixelDigits(PixelDigits::Face::large, 0).size(u"1"),
              PixelDigits(PixelDigits::Face::large, 1).size(u"1"));
}

TEST(KitPixels, EveryGlyphIsItsOwnAndFitsItsSize) {
    for (const PixelDigits::Face face : faces) {
        std::vector<QImage> seen;
        for (const QChar character : QStringLiteral("0123456789:%.- ")) {
            const QImage image = digitsImage(QString(character), face);
            EXPECT_EQ(isEmpty(image), character == u' ') << QString(character).toStdString();
            EXPECT_EQ(std::count(seen.begin(), seen.end(), image), 0) << QString(character).toStdString();
            seen.push_back(image);
        }
        EXPECT_EQ(digitsImage(QStringLiteral("\u0967x"), face), digitsImage(QStringLiteral("  "), face))
            << "other characters are spaces";
    }
}

TEST(KitPixels, PixelsStayWholeAndHard) {
    for (const PixelDigits::Face face : faces) {
        const QImage single = digitsImage(QStringLiteral("24:59 87%"), face, 2, 1);
        EXPECT_EQ(coloursOf(single), (std::set<QRgb>{qRgba(0, 0, 0, 0), qRgb(0, 0, 0)}));
        EXPECT_EQ(digitsImage(QStringLiteral("24:59 87%"), face, 2, 2), single.scaled(single.size() * 2));
        EXPECT_EQ(digitsImage(QStringLiteral("24:59 87%"), face, 4, 1), single.scaled(single.size() * 2));
    }
}

TEST(KitPixels, IconsAreDistinctAndOnlyThoseWithADirectionTurn) {
    std::vector<QImage> seen;
    for (int index = 0; index <= static_cast<int>(PixelIcon::undo); ++index) {
        const auto icon = static_cast<PixelIcon>(index);
        const QImage image = iconImage(icon);
        EXPECT_FALSE(isEmpty(image)) << index;
        EXPECT_EQ(std::count(seen.begin(), seen.end(), image), 0) << index;
        seen.push_back(image);
    }
    EXPECT_EQ(iconImage(PixelIcon::skip, true), iconImage(PixelIcon::skip).mirrored(true, false));
    EXPECT_EQ(iconImage(PixelIcon::play, true), iconImage(PixelIcon::play)) << "media controls never turn";
}

const QSize frameSize(120, 90);

PixelFrame frameWith(PixelFrame::Side side, double y) {
    return PixelFrame(frameSize, PixelFrame::Pointer{side, y});
}

/// The height of the pointer's tip above the frame's bottom, or -1 without one.
double tipAbove(const QRegion& silhouette, PixelFrame::Side side) {
    const QRect all = silhouette.boundingRect();
    const int column = side == PixelFrame::Side::left ? all.left() : all.right();
    const QRect tip = (silhouette & QRect(column, 0, 1, all.height())).boundingRect();
    return tip.isEmpty() ? -1 : frameSize.height() - (tip.top() + tip.height() / 2.0);
}

TEST(KitPixels, ThePointerStandsWhereItIsAskedAndNeverOnACorner) {
    struct Case {
        const char* fault;
        double wanted;
        double least;
        double most;
    };
    const Case cases[] = {
        {"in the middle, within one art pixel", 45, 43, 47},    {"low, but clear of the corner", 24, 22, 26},
        {"at the bottom it stops above the corner", 0, 18, 24}, {"below the frame", -400, 18, 24},
        {"at the top it stops below the corner", 90, 70, 78},   {"above the frame", 4000, 70, 78},
    };
    for (const Case& row : cases) {
        for (const PixelFrame::Side side : {PixelFrame::Side::left, PixelFrame::Side::right}) {
            const double tip = tipAbove(frameWith(side, row.wanted).silhouette(), side);
            EXPECT_GE(tip, row.least) << row.fault;
            EXPECT_LE(tip, row.most) << row.fault;
        }
    }
}

TEST(KitPixels, TheBodyHasOneSizeOnEitherSideAndRoomForThePointer) {
    const PixelFrame left = frameWith(PixelFrame::Side::left, 45);
    const PixelFrame right = frameWith(PixelFrame::Side::right, 45);
    EXPECT_EQ(left.body().size(), right.body().size());
    EXPECT_EQ(PixelFrame::frameSize(left.body().size()), frameSize);
    EXPECT_EQ(left.body().left(), PixelFrame::pointerLength);
    EXPECT_EQ(right.body().left(), 0);
    EXPECT_EQ(left.silhouette().boundingRect().left(), 0);
    const int room = frameSize.width() - 1 - right.silhouette().boundingRect().right();
    EXPECT_EQ(room, PixelFrame::dropLength) << "only the drop edge lies beyond the tip";
    for (const QPoint& corner : {left.body().topLeft(), left.body().bottomRight()}) {
        EXPECT_FALSE(left.silhouette().contains(corner)) << "corners are cut";
    }
}

TEST(KitPixels, AFrameIsTheSamePictureAtEveryWholeScale) {
    for (const DesktopTheme theme : {DesktopTheme::light, DesktopTheme::dark}) {
        const DialoguePalette palette = DialoguePalette::forAccent({0.77, 0.38, 0.25}, theme);
        const auto paint = [&](QPainter& painter) {
            frameWith(PixelFrame::Side::left, 45).paint(painter, palette);
        };
        const QImage single = drawn(frameSize, 1, paint);
        EXPECT_EQ(drawn(frameSize, 2, paint), single.scaled(frameSize * 2));
        EXPECT_LE(coloursOf(single).size(), 6U) << "no smoothing may add colours";
        const QPoint contour(frameSize.width() / 2, 0);
        EXPECT_EQ(single.pixelColor(contour), palette.contour());
        EXPECT_EQ(single.pixelColor(frameSize.width() / 2, 30), palette.paper);
        EXPECT_EQ(single.pixelColor(0, 0).alpha(), 0);
    }
}

} // namespace
