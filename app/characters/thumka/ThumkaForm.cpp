#include "app/characters/thumka/ThumkaForm.h"

#include "app/characters/thumka/ThumkaAbility.h"

#include <QVBoxLayout>

namespace DeskSprites {

ThumkaForm::ThumkaForm(ThumkaAbility& ability, QWidget* parent)
    : QWidget(parent), ability_(ability), status_(makeText({}, TextStyle::body, this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    auto* music = new FormSection(tr("Music"), this);
    column->addWidget(music);
    music->layout()->addWidget(status_);
    music->layout()->addWidget(makeText(
        tr("Thumka follows whichever player or browser tells your desktop what it plays, while she is "
           "on the desktop. Nothing of it is kept or sent anywhere."),
        TextStyle::help, music));
    FormSwitch* titles = music->addSwitch(tr("Say the title when a piece begins"),
                                          tr("It stands beside her for three seconds."));
    titles->setQuietly(ability_.saysTitles());
    connect(titles, &QCheckBox::toggled, this, [this](bool on) { ability_.setSaysTitles(on); });
    connect(&ability_.music(), &NowPlayingService::changed, this, &ThumkaForm::showStatus);
    showStatus();
}

void ThumkaForm::showStatus() {
    status_->setText(ability_.music().isFollowing() ? *ability_.statusOverride()
                                                    : tr("Thumka is not on the desktop."));
}

} // namespace DeskSprites
