#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

namespace DeskSprites {

/// Fills a small plate for words that stand over the desktop.
void paintSnakePlate(QPainter& painter, const QRect& rect, const DialoguePalette& palette);

/// A word and a number: the score, or the best one.
class SnakeCountPlate : public QWidget {
    Q_OBJECT

public:
    explicit SnakeCountPlate(const QString& word, QWidget* parent);
    void setDialoguePalette(const DialoguePalette& palette);
    /// A number that stands out is drawn in the accent.
    void setCount(int count, bool standsOut);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString word_;
    int count_ = 0;
    bool standsOut_ = false;
    DialoguePalette palette_;
};

/// A line of words, as the keys under the board.
class SnakeWordsPlate : public QWidget {
    Q_OBJECT

public:
    explicit SnakeWordsPlate(QWidget* parent);
    void setDialoguePalette(const DialoguePalette& palette);
    void setWords(const QString& words);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString words_;
    DialoguePalette palette_;
};

/// The speed's title and level, shown for a moment after it was nudged.
class SnakeSpeedPlate : public QWidget {
    Q_OBJECT

public:
    static constexpr int shownMilliseconds = 900;
    static constexpr int fadeMilliseconds = 240;

    explicit SnakeSpeedPlate(QWidget* parent);
    void setDialoguePalette(const DialoguePalette& palette);
    /// Without motion it goes all at once.
    void flash(const QString& title, int level, bool fades);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void leave();

    QString title_;
    int level_ = 1;
    bool fades_ = true;
    DialoguePalette palette_;
    QTimer shown_;
    QVariantAnimation fading_;
};

} // namespace DeskSprites
