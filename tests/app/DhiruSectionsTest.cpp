#include "app/characters/dhiru/DhiruSections.h"

#include "app/characters/dhiru/DhiruWords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace DeskSprites;
using FellowCore::DevWatchKind;
using FellowCore::DevWatchProcessListState;
using FellowCore::DevWatchSafetyRefusal;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr FellowCore::Instant now{800000000};
const std::string home = "/home/asha";

DevWatchServerRow server(const std::string& name, std::uint16_t port, const std::string& folder) {
    DevWatchServerRow row;
    row.listener.process.identity = {1000 + port, 1000,
                                     static_cast<std::uint64_t>((now.toUnix() - 18060) * 1e6)};
    row.listener.process.name = name;
    row.listener.process.workingDirectory = folder;
    row.listener.port = port;
    row.kind.kind = DevWatchKind::Case::devServer;
    return row;
}

DevWatchContainerRow container(const std::string& name, std::optional<std::string> folder) {
    FellowCore::DevWatchDockerContainer made{
        std::string(64, 'a'), name, "img:1", {8080, 8443}, std::move(folder)};
    made.id.replace(0, name.size(), name);
    return {{FellowCore::DevWatchDockerClient(home), made}, DevWatchStage::running, {}};
}

DevWatchView view() {
    DevWatchView view;
    view.list = DevWatchProcessListState::available;
    view.systemCPUPercent = 12;
    return view;
}

DhiruLines linesOf(DhiruSection section, const DevWatchView& view, const QString& filter = {}) {
    return DhiruSections::lines(section, view, {filter, now, home});
}

std::vector<std::string> titles(const DhiruLines& lines) {
    std::vector<std::string> found;
    for (const DhiruLine& line : lines.lines) {
        found.push_back(line.title.toStdString());
    }
    return found;
}

TEST(DhiruSections, AServerIsToldInWholeWords) {
    DevWatchView shown = view();
    shown.servers = {server("node", 5173, "/home/asha/shop")};
    shown.servers[0].cpuPercent = 2.6;
    const DhiruLine line = linesOf(DhiruSection::servers, shown).lines.at(0);
    EXPECT_EQ(line.spoken, QStringLiteral("node, port 5173, project shop, up 5h, Dev server, CPU 3%"));
    EXPECT_EQ(line.detail, QStringLiteral("shop · up 5h · CPU 3%"));
    shown.servers[0].quiet = true;
    shown.servers[0].cpuPercent.reset();
    shown.servers[0].listener.process.workingDirectory = home;
    EXPECT_EQ(linesOf(DhiruSection::servers, shown).lines.at(0).spoken,
              QStringLiteral("node, port 5173, quiet 2h+, Dev server"));
}

TEST(DhiruSections, NothingFromOutsideBreaksALineOrTurnsItsDirection) {
    DevWatchView shown = view();
    shown.servers = {server("no\nde\u202egpj.exe", 5173, "/home/asha/a\tb")};
    shown.containers = {container("we\rb", "/srv/x\u2066y")};
    for (const DhiruSection section : {DhiruSection::servers, DhiruSection::containers}) {
        const DhiruLine line = linesOf(section, shown).lines.at(0);
        for (const QString& text : {line.title, line.detail, line.heading, line.spoken, line.called}) {
            for (const QChar character : text) {
                EXPECT_TRUE(character.isPrint()) << text.toStdString();
            }
        }
    }
}

struct ActsCase {
    const char* fault;
    DevWatchStage stage;
    std::optional<DevWatchSafetyRefusal> refusal;
    std::vector<DhiruAct> server;
    std::vector<DhiruAct> app;
    std::vector<DhiruAct> container;
};

TEST(DhiruSections, OnlyWhatMayBeDoneNowIsOffered) {
    using enum DhiruAct;
    const ActsCase cases[] = {
        {"a stop is missing", DevWatchStage::running, {}, {open, stop}, {quit}, {open, stopContainer}},
        {"asked twice", DevWatchStage::sending, {}, {open}, {}, {open, withdraw}},
        {"forced within its time", DevWatchStage::waiting, {}, {open}, {}, {open}},
        {"no force after its time", DevWatchStage::forceable, {}, {open, force}, {forceQuit}, {open}},
        {"a protected one is offered",
         DevWatchStage::running,
         DevWatchSafetyRefusal::protectedProcess,
         {open},
         {},
         {open, stopContainer}},
        {"a protected one is forced",
         DevWatchStage::forceable,
         DevWatchSafetyRefusal::anotherUser,
         {open},
         {},
         {open}},
    };
    for (const ActsCase& each : cases) {
        DevWatchView shown = view();
        shown.servers = {server("node", 5173, "/srv/shop")};
        shown.servers[0].url = "http://localhost:5173";
        shown.servers[0].stage = each.stage;
        shown.servers[0].refusal = each.refusal;
        DevWatchAppRow app;
        app.app.name = "Editor";
        app.stage = each.stage;
        app.refusal = each.refusal;
        shown.applications = {app};
        shown.containers = {container("web", std::nullopt)};
        shown.containers[0].stage = each.stage;
        const DhiruLine line = linesOf(DhiruSection::servers, shown).lines.at(0);
        EXPECT_EQ(line.acts, each.server) << each.fault;
        EXPECT_EQ(line.note.isEmpty(), !each.refusal) << each.fault << ": a refusal is told in words";
        EXPECT_EQ(linesOf(DhiruSection::applications, shown).lines.at(0).acts, each.app) << each.fault;
        EXPECT_EQ(linesOf(DhiruSection::containers, shown).lines.at(0).acts, each.container) << each.fault;
    }
}

TEST(DhiruSections, TheFilterFindsByEachOfItsWords) {
    DevWatchView shown = view();
    shown.servers = {server("node", 5173, "/srv/Café"), server("postgres", 5432, "/srv/db")};
    shown.containers = {container("web", "/srv/shop"), container("cache", std::nullopt)};
    struct Case {
        const char* filter;
        std::vector<std::string> servers;
        std::vector<std::string> containers;
    };
    const Case cases[] = {
        {"", {"node", "postgres"}, {"web", "cache"}},
        {"  NODE ", {"node"}, {}},
        {"cafe", {"node"}, {}},
        {"54 post", {"postgres"}, {}},
        {"node 5432", {}, {}},
        {"6173", {"node"}, {}}, // its PID
        {"img", {}, {"web", "cache"}},
        {"shop", {}, {"web"}},
    };
    for (const Case& each : cases) {
        const QString filter = QString::fromUtf8(each.filter);
        EXPECT_EQ(titles(linesOf(DhiruSection::servers, shown, filter)), each.servers) << each.filter;
        EXPECT_EQ(titles(linesOf(DhiruSection::containers, shown, filter)), each.containers) << each.filter;
    }
    EXPECT_EQ(linesOf(DhiruSection::servers, shown, QStringLiteral("zzz")).words,
              QStringLiteral("Nothing matches"));
}

TEST(DhiruSections, ProcessesEndAtTheBusiestButCountThemAll) {
    DevWatchView shown = view();
    for (int index = 0; index < 200; ++index) {
        DevWatchProcessRow row;
        row.process.identity.pid = 1000 + index;
        row.process.name = index == 150 ? "needle" : "straw";
        shown.processes.push_back(row);
    }
    const DhiruLines all = linesOf(DhiruSection::processes, shown);
    EXPECT_EQ(all.lines.size(), 40U);
    EXPECT_EQ(all.count, 200);
    EXPECT_THAT(all.words.toStdString(), testing::HasSubstr("40 of 200"));
    EXPECT_EQ(linesOf(DhiruSection::processes, shown, QStringLiteral("needle")).count, 1)
        << "the filter sees beyond the busiest";
}

TEST(DhiruSections, ContainersStandByProjectAndThoseOfNoneLast) {
    DevWatchView shown = view();
    shown.containers = {container("alone", std::nullopt), container("b", "/srv/shop"),
                        container("c", "/srv/Api"), container("d", "/srv/shop"), container("e", "/old/shop")};
    const DhiruLines lines = linesOf(DhiruSection::containers, shown);
    EXPECT_THAT(titles(lines), ElementsAre("c", "e", "b", "d", "alone"));
    std::vector<std::string> headings;
    for (const DhiruLine& line : lines.lines) {
        headings.push_back(line.heading.toStdString());
    }
    EXPECT_THAT(headings, ElementsAre("Api", "shop", "shop", "", "No project"));
    EXPECT_EQ(linesOf(DhiruSection::containers, shown, QStringLiteral("d :8443")).lines.at(0).heading,
              QStringLiteral("shop"))
        << "the first that is left begins its group";
}

TEST(DhiruSections, ABrowserIsSentToNoDatabaseOfAContainer) {
    DevWatchView shown = view();
    shown.containers = {container("db", std::nullopt)};
    auto& ports = shown.containers[0].entry.container.ports;
    ports = {5432};
    EXPECT_THAT(linesOf(DhiruSection::containers, shown).lines.at(0).acts,
                ElementsAre(DhiruAct::stopContainer));
    EXPECT_EQ(DhiruSections::url(shown.containers[0]), std::nullopt);
    ports = {5432, 8080};
    EXPECT_THAT(linesOf(DhiruSection::containers, shown).lines.at(0).acts,
                ElementsAre(DhiruAct::open, DhiruAct::stopContainer));
    EXPECT_EQ(DhiruSections::url(shown.containers[0]), "http://localhost:8080");
}

TEST(DhiruSections, AnEmptyListSaysWhy) {
    struct Case {
        DevWatchProcessListState list;
        std::optional<double> cpu;
        const char* servers;
        const char* processes;
        const char* status;
    };
    const Case cases[] = {
        {DevWatchProcessListState::reading,
         {},
         "Reading your processes…",
         "Reading your processes…",
         "Reading your processes…"},
        {DevWatchProcessListState::available, {}, "Nothing running", "Reading your processes…", "No servers"},
        {DevWatchProcessListState::available, 3, "Nothing running", "Nothing running", "No servers"},
        {DevWatchProcessListState::unavailable,
         {},
         "Process list unavailable",
         "Process list unavailable",
         "Process list unavailable"},
    };
    for (const Case& each : cases) {
        DevWatchView shown;
        shown.list = each.list;
        shown.systemCPUPercent = each.cpu;
        shown.containersNote = QStringLiteral("Docker unavailable");
        EXPECT_EQ(linesOf(DhiruSection::servers, shown).words.toStdString(), each.servers);
        EXPECT_EQ(linesOf(DhiruSection::processes, shown).words.toStdString(), each.processes);
        EXPECT_EQ(linesOf(DhiruSection::containers, shown).words, shown.containersNote);
        EXPECT_EQ(DhiruWords::status(shown).toStdString(), each.status);
    }
    DevWatchView busy = view();
    busy.servers = {server("node", 1, "/")};
    EXPECT_EQ(DhiruWords::status(busy), QStringLiteral("1 server"));
    busy.activity = FellowCore::DevWatchActivityState::hog;
    EXPECT_EQ(DhiruWords::status(busy), QStringLiteral("Process CPU high for two minutes"));
    EXPECT_EQ(DhiruWords::machine(busy), QStringLiteral("CPU 12% · Process CPU high for two minutes"));
}

} // namespace
