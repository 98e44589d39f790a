#include "app/characters/clock/ClockForm.h"

#include "app/characters/clock/ClockCharacter.h"
#include "app/characters/clock/ClockWords.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace DeskSprites {

using FellowCore::WorldClockRow;
using FellowCore::WorldClockState;

namespace {

constexpr int unit = FormMetrics::unit;

/// A city's name, which has a line of its own and a row's end to stand at.
QLabel* makeCity(QWidget* parent) {
    QLabel* const city = makeText({}, TextStyle::body, parent);
    city->setWordWrap(false);
    return city;
}

} // namespace

ClockForm::ClockForm(ClockCharacter& clock, QWidget* parent) : QWidget(parent), clock_(clock) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3 * unit);
    column->addWidget(makeHome());
    column->addWidget(makeFaces());
    column->addWidget(makeBell());
    column->addWidget(makeText(tr("City data from GeoNames (CC BY 4.0)."), TextStyle::help, this));
    connect(&clock_, &ClockCharacter::changed, this, &ClockForm::refresh);
    refresh();
}

QWidget* ClockForm::makeHome() {
    auto* section = new FormSection(tr("Home"), this);
    home_ = makeCity(section);
    homeRow_ = section->addRow(tr("The large dial"), home_);
    follow_ = section->addSwitch(tr("Follow this machine's time zone"),
                                 tr("Home moves along when the machine's zone is changed, as on a journey."));
    connect(follow_, &QCheckBox::toggled, this, &ClockForm::follow);
    return section;
}

QWidget* ClockForm::makeFaces() {
    auto* section = new FormSection(tr("Faces"), this);
    const std::array titles{tr("The left dial"), tr("The right dial")};
    for (std::size_t index = 0; index < sides_.size(); ++index) {
        auto* line = new QWidget(section);
        auto* row = new QHBoxLayout(line);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(2 * unit);
        Side& side = sides_.at(index);
        side.city = makeCity(line);
        side.unpin = new FormButton(tr("Unpin"), line);
        row->addWidget(side.city, 1);
        row->addWidget(side.unpin);
        side.row = section->addRow(titles.at(index), line);
        connect(side.unpin, &QPushButton::clicked, this, [this, index] { unpin(index); });
    }
    auto* buttons = new FormButtons(section);
    section->layout()->addWidget(buttons);
    connect(buttons->add(tr("Open the clocks")), &QPushButton::clicked, this, [this] {
        if (!clock_.isPanelOpen()) {
            clock_.togglePanel();
        }
    });
    return section;
}

QWidget* ClockForm::makeBell() {
    auto* section = new FormSection(tr("Bell"), this);
    hourly_ =
        section->addSwitch(tr("Ring softly on the hour"),
                           tr("One stroke, as loud as the other sounds. Silent while the screen is locked."));
    connect(hourly_, &QCheckBox::toggled, this, [this](bool on) { clock_.setRingsHourly(on); });
    auto* buttons = new FormButtons(section);
    section->layout()->addWidget(buttons);
    connect(buttons->add(tr("Hear the bell")), &QPushButton::clicked, this, [this] { clock_.bell().ring(); });
    return section;
}

void ClockForm::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!clock_.keeper().isWatching()) {
        clock_.keeper().systemTimeChanged(); // nobody has looked since
    }
    clock_.keeper().prepare();
    refresh();
}

void ClockForm::follow(bool system) {
    clock_.change([&](WorldClockState& state) {
        const std::string& zone = clock_.systemTimeZone();
        if (system) {
            state.resetHome(clock_.catalog(), zone);
            return true;
        }
        return state.setHome(state.homeCity(clock_.catalog(), zone).identifier, clock_.catalog(), zone);
    });
    refresh(); // a machine without a named zone has no home to stay at
}

void ClockForm::unpin(std::size_t side) {
    if (const auto row = clock_.sides().at(side)) {
        clock_.change([&](WorldClockState& state) {
            return state.setPinned(row->identifier, false, clock_.catalog(), clock_.systemTimeZone()) ==
                   FellowCore::WorldClockPinResult::unpinned;
        });
    }
}

void ClockForm::refresh() {
    hourly_->setQuietly(clock_.ringsHourly());
    const bool isReady = clock_.keeper().isReady();
    follow_->setEnabled(isReady);
    if (!isReady) { // a blink of an eye, while the city table is read
        return;
    }
    WorldClockRow home = clock_.keeper().faces().front();
    home.isHome = false; // the section says so already
    home_->setText(QString::fromStdString(home.city));
    homeRow_->setHelp(QStringList{ClockWords::region(home), tr("Another home is chosen in the clocks")}.join(
        QStringLiteral(" · ")));
    follow_->setQuietly(!clock_.state().homeTimeZoneIdentifier);
    const auto shown = clock_.sides();
    for (std::size_t index = 0; index < sides_.size(); ++index) {
        const auto& row = shown.at(index);
        const Side& side = sides_.at(index);
        side.city->setText(row ? QString::fromStdString(row->city) : tr("No city"));
        side.row->setHelp(row ? ClockWords::region(*row) : tr("Pin one in the clocks."));
        side.unpin->setVisible(row.has_value());
        side.unpin->setAccessibleName(row ? tr("Unpin %1").arg(QString::fromStdString(row->city))
                                          : QString());
    }
}

} // namespace DeskSprites
