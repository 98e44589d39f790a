#pragma once

#include "app/characters/snake/SnakeAbility.h"
#include "app/settings/FormKit.h"

namespace DeskSprites {

/// A piece of desktop with a snake on it, as dark as the game will make it.
class SnakeDimPreview : public QWidget {
    Q_OBJECT

public:
    explicit SnakeDimPreview(QWidget* parent);
    void setDim(double dim);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    FellowCore::SnakeGame game_;
    double dim_ = 0;
};

/// The game's settings. Every edit is kept at once, and what is changed elsewhere shows here.
class SnakeForm : public FormSection {
    Q_OBJECT

public:
    /// The store outlives the form; `notice` tells of its changes.
    SnakeForm(FellowCore::SnakeStore& store, SnakePreferencesNotice& notice, QWidget* parent);

private:
    void addSettings();
    void addBest();
    void showStored();
    void showAsking(bool asks);

    FellowCore::SnakeStore& store_;
    FormSlider* speed_;
    FormSwitch* ramp_;
    FormSwitch* sounds_;
    FormSlider* dim_;
    SnakeDimPreview* preview_;
    QLabel* best_;
    QPushButton* forget_;
    QPushButton* confirm_;
    QPushButton* keep_;
};

} // namespace DeskSprites
