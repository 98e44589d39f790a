#include "app/characters/dhiru/DhiruSections.h"

#include "app/characters/dhiru/DhiruFilter.h"
#include "app/characters/dhiru/DhiruWords.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <map>
#include <tuple>

namespace DeskSprites::DhiruSections {

using DhiruWords::clean;
using DhiruWords::percent;
using DhiruWords::plain;
using FellowCore::DevWatchProcess;
using FellowCore::DevWatchProcessIdentity;
using FellowCore::DevWatchProcessListState;

namespace {

QString identityKey(const DevWatchProcessIdentity& identity) {
    return QStringLiteral("%1/%2").arg(identity.pid).arg(identity.startedAtMicroseconds);
}

QString pidWords(const DevWatchProcess& process) {
    return DhiruWords::words("PID %1").arg(process.identity.pid);
}

QString projectOf(const DevWatchProcess& process, const Asked& asked) {
    const auto project = FellowCore::DevWatchPresentation::project(process.workingDirectory, asked.home);
    return project ? clean(*project) : QString();
}

/// The words that are there, with a dot between them.
QString dotted(QStringList parts) {
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" · "));
}

QString spoken(QStringList parts) {
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QString useWords(const std::optional<double>& cpuPercent) {
    return cpuPercent ? DhiruWords::words("CPU %1").arg(percent(*cpuPercent)) : QString();
}

void addAct(DhiruLine& line, DevWatchStage stage, DhiruAct polite, DhiruAct forced) {
    if (stage == DevWatchStage::running) {
        line.acts.push_back(polite);
    } else if (stage == DevWatchStage::forceable) {
        line.acts.push_back(forced);
    }
}

/// What became of the last request, or else why there is no button.
QString noteOf(const QString& note, const std::optional<FellowCore::DevWatchSafetyRefusal>& refusal) {
    const bool saysRefusal = note.isEmpty() && refusal;
    return saysRefusal ? plain(FellowCore::DevWatchPresentation::sentence(*refusal)) : note;
}

std::optional<DhiruLine> line(const DevWatchServerRow& row, const DhiruFilter& filter, const Asked& asked) {
    const DevWatchProcess& process = row.listener.process;
    const QString name = clean(process.name);
    const QString port = QString::number(row.listener.port);
    const QString project = projectOf(process, asked);
    if (!filter.matches({name, project, port, QString::number(process.identity.pid)})) {
        return std::nullopt;
    }
    const QString meta =
        plain(FellowCore::DevWatchPresentation::serverMeta(process.uptime(asked.now), row.quiet));
    const QString kind = plain(FellowCore::DevWatchPresentation::title(row.kind));
    DhiruLine line{.key = key(row), .title = name, .mark = QLatin1Char(':') + port};
    line.aside = kind;
    line.detail = dotted({project, meta, useWords(row.cpuPercent)});
    line.note = noteOf(row.note, row.refusal);
    line.isNews = !row.note.isEmpty();
    line.lamp = row.hog ? DhiruLamp::alarm : row.quiet ? DhiruLamp::quiet : DhiruLamp::lit;
    line.called = DhiruWords::words("%1, port %2").arg(name, port);
    line.spoken =
        spoken({line.called, project.isEmpty() ? QString() : DhiruWords::words("project %1").arg(project),
                meta, kind, useWords(row.cpuPercent)});
    if (row.url) {
        line.acts.push_back(DhiruAct::open);
    }
    if (!row.refusal) {
        addAct(line, row.stage, DhiruAct::stop, DhiruAct::force);
    }
    return line;
}

std::optional<DhiruLine> line(const DevWatchProcessRow& row, const DhiruFilter& filter, const Asked& asked) {
    const QString name = clean(row.process.name);
    const QString project = projectOf(row.process, asked);
    if (!filter.matches({name, project, QString::number(row.process.identity.pid)})) {
        return std::nullopt;
    }
    const QString kind = plain(FellowCore::DevWatchPresentation::title(row.kind));
    const QString hog = row.hog ? DhiruWords::words("high for two minutes") : QString();
    DhiruLine line{.key = key(row), .title = name};
    line.aside = project;
    line.detail = dotted({hog, kind, pidWords(row.process)});
    line.value = percent(row.cpuPercent);
    line.lamp = row.hog ? DhiruLamp::alarm : DhiruLamp::quiet;
    line.spoken = spoken({name, kind, useWords(row.cpuPercent), hog,
                          project.isEmpty() ? QString() : DhiruWords::words("project %1").arg(project)});
    return line;
}

std::optional<DhiruLine> line(const DevWatchAppRow& row, const DhiruFilter& filter) {
    const QString name = clean(row.app.name);
    const QString pid = QString::number(row.app.identity.pid);
    if (!filter.matches({name, pid})) {
        return std::nullopt;
    }
    DhiruLine line{.key = key(row), .title = name};
    line.detail = dotted({DhiruWords::words("PID %1").arg(pid), useWords(row.cpuPercent)});
    line.note = noteOf(row.note, row.refusal);
    line.isNews = !row.note.isEmpty();
    line.called = name;
    line.spoken = spoken({name, useWords(row.cpuPercent)});
    if (!row.refusal) {
        addAct(line, row.stage, DhiruAct::quit, DhiruAct::forceQuit);
    }
    return line;
}

/// The name of the project folder; empty for a container of none.
QString projectOf(const DevWatchContainerRow& row) {
    const auto& folder = row.entry.container.projectDirectory;
    return folder ? clean(FellowCore::devWatchLastComponent(*folder)) : QString();
}

QString portWords(const FellowCore::DevWatchDockerContainer& container) {
    QStringList ports;
    for (const std::uint16_t port : container.ports) {
        ports.push_back(QLatin1Char(':') + QString::number(port));
    }
    return ports.join(QLatin1Char(' '));
}

std::optional<DhiruLine> line(const DevWatchContainerRow& row, const DhiruFilter& filter) {
    const auto& container = row.entry.container;
    const QString name = clean(container.name);
    const QString image = clean(container.image);
    const QString ports = portWords(container);
    const QString project = projectOf(row);
    if (!filter.matches({name, image, ports, project, QString::fromStdString(container.id.substr(0, 12))})) {
        return std::nullopt;
    }
    DhiruLine line{.key = key(row), .title = name, .mark = ports, .detail = image};
    line.note = row.note;
    line.isNews = !row.note.isEmpty();
    line.lamp = DhiruLamp::lit;
    line.called = name;
    line.spoken = spoken(
        {name, DhiruWords::words("image %1").arg(image),
         ports.isEmpty() ? QString() : DhiruWords::words("ports %1").arg(ports),
         project.isEmpty() ? DhiruWords::words("no project") : DhiruWords::words("project %1").arg(project)});
    if (url(row)) {
        line.acts.push_back(DhiruAct::open);
    }
    if (row.stage == DevWatchStage::running) {
        line.acts.push_back(DhiruAct::stopContainer);
    } else if (row.stage == DevWatchStage::sending) {
        line.acts.push_back(DhiruAct::withdraw);
    }
    return line;
}

/// By project, those of none last; within one as they came.
std::vector<DevWatchContainerRow> grouped(std::vector<DevWatchContainerRow> rows) {
    const auto order = [](const DevWatchContainerRow& row) {
        const QString project = projectOf(row);
        return std::tuple(project.isEmpty(), project.toCaseFolded(),
                          row.entry.container.projectDirectory.value_or(""));
    };
    std::ranges::stable_sort(rows, {}, order);
    return rows;
}

DhiruLines containerLines(const DevWatchView& view, const DhiruFilter& filter) {
    DhiruLines made;
    std::optional<std::string> group; // the folder of the one above
    for (const DevWatchContainerRow& row : grouped(view.containers)) {
        if (auto shown = line(row, filter)) {
            const std::string folder = row.entry.container.projectDirectory.value_or("");
            if (group != folder) {
                const QString project = projectOf(row);
                shown->heading = project.isEmpty() ? DhiruWords::words("No project") : project;
                group = folder;
            }
            made.lines.push_back(std::move(*shown));
        }
    }
    return made;
}

template <class Row, class... More>
DhiruLines rowLines(const std::vector<Row>& rows, const DhiruFilter& filter, const More&... more) {
    DhiruLines made;
    for (const Row& row : rows) {
        if (auto shown = line(row, filter, more...)) {
            made.lines.push_back(std::move(*shown));
        }
    }
    return made;
}

void keepTop(DhiruLines& made) {
    if (made.count <= mostProcesses) {
        return;
    }
    made.lines.resize(mostProcesses);
    made.words = DhiruWords::words("The busiest %1 of %2. The filter finds the others.")
                     .arg(QLocale().toString(mostProcesses), QLocale().toString(made.count));
}

QString emptyWords(DhiruSection section, const DevWatchView& view, const DhiruFilter& filter) {
    if (section == DhiruSection::containers) {
        return !view.containers.empty() ? DhiruWords::words("Nothing matches") : view.containersNote;
    }
    // Use is known from the second reading on.
    const bool isEarly = section == DhiruSection::processes && !view.systemCPUPercent;
    if (view.list == DevWatchProcessListState::available && isEarly) {
        return plain(emptyTitle(DevWatchProcessListState::reading));
    }
    const bool hasRows = section == DhiruSection::servers     ? !view.servers.empty()
                         : section == DhiruSection::processes ? !view.processes.empty()
                                                              : !view.applications.empty();
    return hasRows && !filter.isEmpty() ? DhiruWords::words("Nothing matches") : plain(emptyTitle(view.list));
}

} // namespace

QString key(const DevWatchServerRow& row) {
    return QStringLiteral("server/%1/%2")
        .arg(identityKey(row.listener.process.identity))
        .arg(row.listener.port);
}

QString key(const DevWatchProcessRow& row) {
    return QStringLiteral("process/") + identityKey(row.process.identity);
}

QString key(const DevWatchAppRow& row) {
    return QStringLiteral("app/") + identityKey(row.app.identity);
}

QString key(const DevWatchContainerRow& row) {
    return containerPrefix + QString::fromStdString(row.entry.container.id);
}

std::optional<std::string> url(const DevWatchContainerRow& row) {
    for (const std::uint16_t port : row.entry.container.ports) {
        if (auto found = FellowCore::DevWatchKind::httpURL(port)) {
            return found;
        }
    }
    return std::nullopt;
}

QString title(DhiruSection section) {
    switch (section) {
    case DhiruSection::servers:
        return DhiruWords::words("Servers");
    case DhiruSection::processes:
        return DhiruWords::words("Processes");
    case DhiruSection::applications:
        return DhiruWords::words("Applications");
    case DhiruSection::containers:
        break;
    }
    return DhiruWords::words("Containers");
}

DhiruLines lines(DhiruSection section, const DevWatchView& view, const Asked& asked) {
    const DhiruFilter filter(asked.filter);
    DhiruLines made = section == DhiruSection::servers        ? rowLines(view.servers, filter, asked)
                      : section == DhiruSection::processes    ? rowLines(view.processes, filter, asked)
                      : section == DhiruSection::applications ? rowLines(view.applications, filter)
                                                              : containerLines(view, filter);
    made.count = static_cast<int>(made.lines.size());
    if (made.lines.empty()) {
        made.words = emptyWords(section, view, filter);
    } else if (section == DhiruSection::processes) {
        keepTop(made);
    }
    return made;
}

} // namespace DeskSprites::DhiruSections
