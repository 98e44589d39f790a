#include "app/characters/pump/PumpForm.h"

#include "app/characters/pump/PumpAbility.h"
#include "app/characters/pump/PumpConnectForm.h"
#include "app/characters/pump/PumpUsageForm.h"
#include "app/settings/FormKit.h"

#include <QVBoxLayout>

namespace DeskSprites {

PumpForm::PumpForm(PumpAbility& ability, QWidget* parent) : QWidget(parent), ability_(ability) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3 * FormMetrics::unit);
    column->addWidget(new PumpUsageForm(ability.usage(), ability.clock(), this));
    column->addWidget(new PumpConnectForm(ability.connections(), ability.agents(), this));
}

PumpForm::~PumpForm() {
    inspect(false);
}

void PumpForm::inspect(bool inspected) {
    ability_.usage().setInspected(inspected);
    ability_.agents().setInspected(inspected);
}

void PumpForm::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    inspect(true);
    ability_.connections().look();
}

void PumpForm::hideEvent(QHideEvent* event) {
    inspect(false);
    QWidget::hideEvent(event);
}

} // namespace DeskSprites
