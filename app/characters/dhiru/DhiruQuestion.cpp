#include "app/characters/dhiru/DhiruQuestion.h"

#include "app/characters/dhiru/DevWatchController.h"
#include "app/characters/dhiru/DhiruSections.h"
#include "app/characters/dhiru/DhiruWords.h"

#include <QCoreApplication>

#include <algorithm>

namespace DeskSprites {

using DhiruWords::clean;
using DhiruWords::plain;
using FellowCore::DevWatchProcessConfirmation;

namespace {

template <class Row>
const Row* rowOf(const std::vector<Row>& rows, const QString& key) {
    const auto found =
        std::ranges::find_if(rows, [&](const Row& row) { return DhiruSections::key(row) == key; });
    return found == rows.end() ? nullptr : &*found;
}

QString goneWords(const QString& name) {
    return DhiruWords::words("%1 has gone. There is nothing to stop.").arg(name);
}

DhiruQuestion serverQuestion(DevWatchController& controller, const DevWatchServerRow& row, DhiruAct act) {
    const DevWatchProcessConfirmation confirmed(row.listener);
    const QString name = clean(confirmed.name());
    const bool isForced = act == DhiruAct::force;
    DhiruQuestion question{.key = DhiruSections::key(row), .act = act};
    question.title =
        isForced ? DhiruWords::words("Force %1 to end?").arg(name) : DhiruWords::words("Stop %1?").arg(name);
    question.details = plain(confirmed.displayDetails());
    question.body = isForced ? DhiruWords::words("It ends at once and gets no chance to tidy up.")
                             : DhiruWords::words("It is asked to end, and may finish what it is doing.");
    question.answer = isForced ? DhiruWords::words("Force") : DhiruWords::words("Stop");
    question.gone = goneWords(name);
    question.onAnswer = [&controller, confirmed, isForced] {
        isForced ? controller.force(confirmed) : controller.stop(confirmed);
    };
    return question;
}

DhiruQuestion appQuestion(DevWatchController& controller, const DevWatchAppRow& row, DhiruAct act) {
    const FellowCore::DevWatchApp app = row.app;
    const QString name = clean(app.name);
    const bool isForced = act == DhiruAct::forceQuit;
    DhiruQuestion question{.key = DhiruSections::key(row), .act = act};
    question.title =
        isForced ? DhiruWords::words("Force %1 to quit?").arg(name) : DhiruWords::words("Quit %1?").arg(name);
    question.details = DhiruWords::words("PID %1 · %2").arg(app.identity.pid).arg(clean(app.bundlePath));
    question.body =
        isForced ? plain(FellowCore::DevWatchPresentation::quitWarning)
                 : DhiruWords::words("Its windows are closed as you would close them. It may ask to save.");
    question.answer = isForced ? DhiruWords::words("Force quit") : DhiruWords::words("Quit");
    question.gone = goneWords(name);
    question.onAnswer = [&controller, app, isForced] {
        isForced ? controller.forceQuit(app) : controller.quit(app);
    };
    return question;
}

DhiruQuestion containerQuestion(DevWatchController& controller, const DevWatchContainerRow& row) {
    const FellowCore::DevWatchDockerEngines::Entry entry = row.entry;
    const FellowCore::DevWatchDockerContainer& container = entry.container;
    const QString name = clean(container.name);
    QStringList ports;
    for (const std::uint16_t port : container.ports) {
        ports.push_back(QString::number(port));
    }
    DhiruQuestion question{.key = DhiruSections::key(row), .act = DhiruAct::stopContainer};
    question.title = DhiruWords::words("Stop the container %1?").arg(name);
    question.details = DhiruWords::words("%1 · id %2")
                           .arg(clean(container.image), QString::fromStdString(container.id.substr(0, 12)));
    if (!ports.isEmpty()) {
        question.details += DhiruWords::words(" · ports %1").arg(ports.join(QStringLiteral(", ")));
    }
    question.body =
        DhiruWords::words("It is asked to end, and takes the time it needs. Dhiru never kills a container.");
    question.answer = DhiruWords::words("Stop");
    question.gone = DhiruWords::words("%1 is not in the list any more.").arg(name);
    question.onAnswer = [&controller, entry] { controller.stopContainer(entry); };
    return question;
}

} // namespace

std::optional<DhiruQuestion> dhiruQuestion(DevWatchController& controller, const QString& key, DhiruAct act) {
    const DevWatchView& view = controller.view();
    switch (act) {
    case DhiruAct::stop:
    case DhiruAct::force: {
        const DevWatchServerRow* row = rowOf(view.servers, key);
        return row ? std::optional(serverQuestion(controller, *row, act)) : std::nullopt;
    }
    case DhiruAct::quit:
    case DhiruAct::forceQuit: {
        const DevWatchAppRow* row = rowOf(view.applications, key);
        return row ? std::optional(appQuestion(controller, *row, act)) : std::nullopt;
    }
    case DhiruAct::stopContainer: {
        const DevWatchContainerRow* row = rowOf(view.containers, key);
        return row ? std::optional(containerQuestion(controller, *row)) : std::nullopt;
    }
    case DhiruAct::open:
    case DhiruAct::withdraw:
        break;
    }
    return std::nullopt;
}

bool hasLine(const DevWatchView& view, const QString& key) {
    const bool hasRow =
        rowOf(view.servers, key) || rowOf(view.applications, key) || rowOf(view.containers, key);
    const bool isKnown = view.list == FellowCore::DevWatchProcessListState::available;
    return hasRow || (!isKnown && !key.startsWith(DhiruSections::containerPrefix));
}

QString urlOf(const DevWatchView& view, const QString& key) {
    if (const DevWatchServerRow* server = rowOf(view.servers, key)) {
        return plain(server->url.value_or(""));
    }
    const DevWatchContainerRow* container = rowOf(view.containers, key);
    return container ? plain(DhiruSections::url(*container).value_or("")) : QString();
}

} // namespace DeskSprites
