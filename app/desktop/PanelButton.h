#pragma once

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/PanelPressable.h"
#include "app/desktop/QuickAction.h"

namespace DeskSprites {

/// A button in the house look. Enter and Space press it. The focus ring shows only for a focus that the
/// keyboard gave.
class PanelButton : public PanelPressable {
    Q_OBJECT

public:
    enum class Shape {
        row,  ///< the icon, when there is one, before the word
        tile, ///< the icon above the word, in smaller type
        icon, ///< the icon alone; the word is the accessible name and the tool tip
    };

    explicit PanelButton(Shape shape = Shape::row, QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    void setTitle(const QString& title);
    QString title() const { return title_; }
    void setEmphasis(Emphasis emphasis);
    void setPixelIcon(std::optional<PixelIcon> icon);
    /// A mark that a press opens a menu.
    void setOpensMenu(bool opens);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Colours {
        QColor ground;
        QColor edge;
        QColor lip; ///< the lower edge, which gives the button its thickness
        QColor text;
    };
    Colours colours() const;
    QFont textFont() const;
    QSize contentsSize() const;
    void paintContents(QPainter& painter, const QRect& inside, const QColor& colour) const;

    Shape shape_;
    DialoguePalette palette_;
    QString title_;
    Emphasis emphasis_ = Emphasis::plain;
    std::optional<PixelIcon> icon_;
    bool opensMenu_ = false;
};

} // namespace DeskSprites
