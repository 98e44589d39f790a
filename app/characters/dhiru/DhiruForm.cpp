#include "app/characters/dhiru/DhiruForm.h"

#include "app/characters/dhiru/DhiruAwake.h"
#include "core/containers/DevWatchDockerSocketPolicy.h"

#include <QVBoxLayout>

namespace DeskSprites {

DhiruForm::DhiruForm(DhiruAwake& awake, const FellowCore::SupportFolders& folders, QWidget* parent)
    : QWidget(parent), awake_(awake) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3 * FormMetrics::unit);
    column->addWidget(makeAwake());
    column->addWidget(makeReading(folders));
    column->addWidget(makeSafety());
    connect(&awake_, &DhiruAwake::changed, this, &DhiruForm::showAwake);
    showAwake();
}

FormSection* DhiruForm::makeAwake() {
    auto* section = new FormSection(tr("This machine"), this);
    keep_ = section->addSwitch(tr("Keep awake"),
                               tr("While Dhiru is on the desktop, the machine does not fall asleep and the "
                                  "screen does not go dark by itself."));
    connect(keep_, &QCheckBox::toggled, this, [this](bool on) { awake_.setWanted(on); });
    state_ = makeText({}, TextStyle::body, section);
    section->layout()->addWidget(state_);
    return section;
}

FormSection* DhiruForm::makeReading(const FellowCore::SupportFolders& folders) {
    auto* section = new FormSection(tr("What Dhiru reads"), this);
    const auto say = [section](const QString& words, TextStyle style) {
        section->layout()->addWidget(makeText(words, style, section));
    };
    say(tr("While he is on the desktop: your own processes, their folders, the ports they listen on, and how "
           "busy they are. While his panel is open also the programs with windows, and your containers. "
           "Nothing of it is kept, and nothing leaves this machine."),
        TextStyle::body);
    say(tr("He asks for containers at these sockets of yours, and at no other:"), TextStyle::body);
    const auto runtime = folders.runtime();
    const auto sockets = FellowCore::DevWatchDockerSocketPolicy::sockets(
        folders.home().string(), runtime ? std::optional(runtime->string()) : std::nullopt);
    QStringList places;
    for (const std::string& socket : sockets) {
        places << QString::fromStdString(folders.shortened(socket));
    }
    say(places.join(QLatin1Char('\n')), TextStyle::help);
    return section;
}

FormSection* DhiruForm::makeSafety() {
    auto* section = new FormSection(tr("What Dhiru never does"), this);
    section->layout()->addWidget(
        makeText(tr("He ends nothing that you have not confirmed, and looks once more, right before, that it "
                    "is still the same. He leaves alone what belongs to the system, to other users and to "
                    "your desktop session. He never kills a container."),
                 TextStyle::body, section));
    return section;
}

void DhiruForm::showAwake() {
    keep_->setQuietly(awake_.isWanted());
    state_->setText(awake_.words());
    state_->setVisible(!awake_.words().isEmpty());
}

} // namespace DeskSprites
