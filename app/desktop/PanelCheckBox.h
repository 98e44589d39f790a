#pragma once

#include "app/desktop/DialoguePalette.h"
#include "app/desktop/FocusRing.h"

#include <QAbstractButton>

namespace DeskSprites {

/// A check box before its words, which wrap, with a quieter line of detail below when there is one. Only the
/// box takes the mouse; Space checks it. Checked words are quiet and struck through when they are a task.
class PanelCheckBox : public QAbstractButton {
    Q_OBJECT

public:
    /// What stands before the words.
    enum class Mark {
        box,
        dash, ///< the words cannot be checked, but line up with others that can
    };

    explicit PanelCheckBox(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    void setTitle(const QString& title);
    QString title() const { return title_; }
    void setDetail(const QString& detail);
    QString detail() const { return detail_; }
    void setMark(Mark mark);
    Mark mark() const { return mark_; }
    /// Whether checked words are struck through.
    void setStrikesChecked(bool strikes);
    /// Where the words stand, for an editor to take their place.
    QRect wordsRect() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    bool hitButton(const QPoint& at) const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect boxRect() const;
    QFont wordsFont() const;
    QFont detailFont() const;
    int wordsHeight(int width) const;
    void paintBox(QPainter& painter) const;
    void paintDash(QPainter& painter) const;
    void relay();

    DialoguePalette palette_;
    QString title_;
    QString detail_;
    Mark mark_ = Mark::box;
    bool strikes_ = false;
    FocusRing focusRing_;
    mutable int knownWidth_ = -1; ///< for which `knownHeight_` is the height of the words
    mutable int knownHeight_ = 0;
};

} // namespace DeskSprites
