#include "app/characters/clock/ClockPanel.h"
#include "app/characters/clock/ClockList.h"
#include "app/characters/clock/ClockSearch.h"
#include "app/characters/clock/ClockSearchModel.h"
#include "app/characters/clock/ClockTravelBar.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelMessage.h"
#include "tests/app/ClockHarness.h"
#include "tests/app/KitHarness.h"

#include <QClipboard>
#include <QListView>
#include <QMenu>

namespace {

using namespace ClockHarness;
using KitHarness::key;
using testing::HasSubstr;

constexpr const char* homeZone = "Asia/Kolkata";

/// Ghanta Ghar at home in Kolkata, with his panel open.
class OpenPanel : public ClockDesk {
public:
    explicit OpenPanel(const std::vector<std::string>& zones, std::size_t pins) : ClockDesk(homeZone) {
        choose(zones, pins);
        EXPECT_TRUE(comeOut());
        clock->togglePanel();
    }
    /// With three cities, the search ready, and the keyboard in the field.
    OpenPanel() : OpenPanel({"Asia/Tokyo", "Europe/Paris", "Africa/Cairo"}, 2) {
        EXPECT_TRUE(KitHarness::activate(panel()));
        EXPECT_TRUE(waitUntil([this] { return clock->searchIsReady(); }, 20000));
        panel().field().setFocus();
    }
    ~OpenPanel() { EXPECT_TRUE(told.empty()) << told.front(); }

    ClockPanel& panel() { return *clock->panel(); }
    std::string names() {
        std::string all;
        for (const auto& row : clock->rows()) {
            all += (all.empty() ? "" : " ") + row.city + (row.isPinned ? "*" : "");
        }
        return all;
    }
    std::string found() {
        const auto& model = *panel().search().view().model();
        std::string all;
        for (int row = 0; row < std::min(3, model.rowCount()); ++row) {
            all += (all.empty() ? "" : "|") + model.index(row, 0).data().toString().toStdString();
        }
        return all;
    }
    void type(const QString& letters) {
        panel().field().setFocus();
        panel().field().setText(letters);
    }
    QWidget& stop(std::size_t index) { return *panel().list().rows().at(index)->stop(); }
    void stand(std::size_t index) { stop(index).setFocus(Qt::TabFocusReason); }
    /// Whose row has the keyboard.
    std::string standsAt() {
        const auto rows = clock->rows();
        for (std::size_t index = 0; index < rows.size(); ++index) {
            if (stop(index).hasFocus()) {
                return rows[index].city;
            }
        }
        return KitHarness::focused();
    }
    std::string message() { return panel().message().sentence().toStdString(); }
    std::string travelText() { return panel().travel().findChild<PanelText*>()->text().toStdString(); }
    /// Takes an entry of the menu of the row that has the keyboard.
    void chooseInMenu(const char* title) {
        key(panel(), Qt::Key_Return);
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr) << "Enter opens no menu";
        for (QAction* action : menu->actions()) {
            if (action->text().startsWith(QString::fromUtf8(title)) && action->isEnabled()) {
                menu->close();
                action->trigger();
                return;
            }
        }
        menu->close();
        ADD_FAILURE() << "no entry " << title;
    }
};

TEST(ClockPanelTest, SearchIsDrivenByKeysFromTheField) {
    struct Case {
        const char* fault;
        std::vector<Qt::Key> keys;
        int taken; ///< of the cities found; -1 for none
    };
    const Case cases[] = {
        {"Enter without a choice does not take the first", {Qt::Key_Return}, 0},
        {"the first Down does not lead to the second", {Qt::Key_Down, Qt::Key_Return}, 1},
        {"Up does not stop at the first", {Qt::Key_Down, Qt::Key_Up, Qt::Key_Up, Qt::Key_Enter}, 0},
        {"a page does not move on", {Qt::Key_PageDown, Qt::Key_Return}, 4},
        {"Escape takes a city or closes the panel", {Qt::Key_Escape}, -1},
    };
    for (const Case& test : cases) {
        OpenPanel at;
        at.type(QStringLiteral("san"));
        auto& model = static_cast<ClockSearchModel&>(*at.panel().search().view().model());
        const std::string wanted = test.taken < 0 ? "" : " " + model.city(test.taken).name;
        const std::string before = at.names();
        for (const Qt::Key code : test.keys) {
            key(at.panel(), code);
        }
        EXPECT_EQ(at.names(), before + wanted) << test.fault;
        EXPECT_TRUE(at.panel().field().hasFocus() && at.panel().field().text().isEmpty()) << test.fault;
        EXPECT_TRUE(at.panel().list().isVisible()) << test.fault;
    }
    OpenPanel at;
    key(at.panel(), Qt::Key_Escape);
    EXPECT_FALSE(at.panel().isPresented()) << "Escape without words leaves the panel open";
}

TEST(ClockPanelTest, WordsTypedBeforeTheSearchIsReadyAreAnsweredThen) {
    OpenPanel at({}, 0);
    at.type(QStringLiteral("lima"));
    ASSERT_FALSE(at.clock->searchIsReady()) << "nothing is seen here of waiting";
    EXPECT_EQ(at.found(), "");
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.names(), "Kolkata");
    EXPECT_TRUE(waitUntil([&] { return !at.found().empty(); }, 20000)) << "the words wait for ever";
    EXPECT_THAT(at.found(), testing::StartsWith("Lima"));
}

TEST(ClockPanelTest, AddsACityOnceAndLeadsToTheOneThatIsThere) {
    OpenPanel at;
    at.type(QStringLiteral("san"));
    key(at.panel(), Qt::Key_Down);
    at.type(QStringLiteral("sao")); // which forgets what was chosen of the others
    EXPECT_THAT(at.found(), testing::StartsWith("São Paulo|"));
    EXPECT_THAT(at.panel().field().accessibleDescription().toStdString(), HasSubstr("São Paulo"))
        << "whoever cannot see does not hear what Enter takes";
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo São Paulo");
    at.type(QStringLiteral("sao"));
    auto& model = static_cast<ClockSearchModel&>(*at.panel().search().view().model());
    EXPECT_TRUE(model.isAdded(0) && !model.isAdded(1));
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo São Paulo") << "twice, or another one in its place";
    EXPECT_EQ(at.standsAt(), "São Paulo");
}

TEST(ClockPanelTest, AThirdFaceIsRefusedAndOfferedInPlaceOfTheOldest) {
    OpenPanel at;
    at.stand(3);
    key(at.panel(), Qt::Key_Space);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo");
    EXPECT_EQ(at.message(), "Both small faces are taken. Show Cairo instead of Tokyo?");
    EXPECT_FALSE(static_cast<ClockRowStop&>(at.stop(3)).isChecked()) << "the row shows what is not so";
    at.panel().message().button()->setFocus(Qt::TabFocusReason);
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.names(), "Kolkata Tokyo Paris* Cairo*");
    EXPECT_TRUE(static_cast<ClockRowStop&>(at.stop(3)).isChecked());
    EXPECT_EQ(at.standsAt(), "Cairo") << "the keyboard is lost with the button";
    EXPECT_EQ(at.message(), "");
    key(at.panel(), Qt::Key_Space);
    EXPECT_EQ(at.names(), "Kolkata Tokyo Paris* Cairo");
}

TEST(ClockPanelTest, RowsAreChangedByKeyboardAlone) {
    OpenPanel at;
    key(at.panel(), Qt::Key_Down);
    EXPECT_EQ(at.standsAt(), "Kolkata");
    for (const Qt::Key code : {Qt::Key_Delete, Qt::Key_Space}) {
        key(at.panel(), code);
    }
    key(at.panel(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo") << "home was removed, pinned or moved";
    key(at.panel(), Qt::Key_Down);
    key(at.panel(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo") << "a city stands before home";
    key(at.panel(), Qt::Key_Down, Qt::AltModifier);
    key(at.panel(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(at.names(), "Kolkata Paris* Cairo Tokyo*");
    EXPECT_EQ(at.standsAt(), "Tokyo") << "the moved row lost the keyboard";
    key(at.panel(), Qt::Key_Up);
    key(at.panel(), Qt::Key_Up);
    key(at.panel(), Qt::Key_Delete);
    EXPECT_EQ(at.names(), "Kolkata Cairo Tokyo*");
    EXPECT_EQ(at.standsAt(), "Cairo") << "the keyboard went with the row";
    key(at.panel(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(at.names(), "Kolkata Paris* Cairo Tokyo*") << "the undo forgot the place or the face";
    EXPECT_EQ(at.standsAt(), "Paris");
    key(at.panel(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
              FellowCore::WorldClockPresentation::text(at.clock->rows()[1]));
    EXPECT_EQ(at.message(), "The time in Paris is copied.");
}

TEST(ClockPanelTest, TheMenuOfARowMovesHomeAndBack) {
    OpenPanel at;
    at.stand(1);
    at.chooseInMenu("Make home");
    EXPECT_EQ(at.names(), "Tokyo Kolkata Paris* Cairo") << "the former home is lost";
    EXPECT_EQ(at.standsAt(), "Tokyo");
    at.chooseInMenu("Home is where the system is");
    EXPECT_EQ(at.names(), "Kolkata Paris* Cairo");
    at.stand(2);
    at.chooseInMenu("Move up");
    at.chooseInMenu("Show on the tower");
    EXPECT_EQ(at.names(), "Kolkata Cairo* Paris*");
    at.chooseInMenu("Remove");
    EXPECT_EQ(at.names(), "Kolkata Paris*");
}

TEST(ClockPanelTest, RowsAreDraggedBelowHome) {
    OpenPanel at;
    const auto drag = [&](std::size_t from, std::size_t to, double share) {
        QWidget& row = at.stop(from);
        const QPoint end = row.mapFromGlobal(
            at.stop(to).mapToGlobal(QPoint(120, static_cast<int>(at.stop(to).height() * share))));
        KitHarness::mouse(row, QEvent::MouseButtonPress, QPointF(120, row.height() / 2.0));
        KitHarness::mouse(row, QEvent::MouseMove, end);
        KitHarness::mouse(row, QEvent::MouseButtonRelease, end);
    };
    drag(1, 3, 0.9);
    EXPECT_EQ(at.names(), "Kolkata Paris* Cairo Tokyo*");
    drag(3, 0, 0.1);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo") << "a city was dropped above home";
    drag(0, 3, 0.9);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo") << "home was dragged away";
    QWidget& row = at.stop(1);
    const QPointF far(120, row.height() * 2.4);
    KitHarness::mouse(row, QEvent::MouseButtonPress, QPointF(120, row.height() / 2.0));
    KitHarness::mouse(row, QEvent::MouseMove, far);
    KitHarness::mouse(row, QEvent::MouseButtonPress, far, Qt::RightButton);
    KitHarness::mouse(row, QEvent::MouseButtonRelease, far);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo") << "another button does not give the drag up";
}

TEST(ClockPanelTest, AFullListSaysSoAndKeepsItsRowsInSight) {
    std::vector<std::string> cities;
    const FellowCore::WorldClockCatalog catalog;
    for (std::size_t index = 0; index < WorldClockState::mostCities; ++index) {
        cities.push_back(catalog.entries()[index + 100].city.identifier);
    }
    OpenPanel at(cities, 2);
    EXPECT_TRUE(KitHarness::activate(at.panel()));
    EXPECT_TRUE(waitUntil([&] { return at.clock->searchIsReady(); }, 20000));
    const auto isInSight = [&](std::size_t index) {
        const QWidget& view = *at.panel().list().viewport();
        return view.rect().contains(QRect(at.stop(index).mapTo(&view, QPoint(0, 0)), at.stop(index).size()));
    };
    at.stand(0);
    for (std::size_t index = 1; index < 6; ++index) {
        key(at.panel(), Qt::Key_Down);
        EXPECT_TRUE(isInSight(index)) << index;
    }
    key(at.panel(), Qt::Key_Space);
    ASSERT_THAT(at.message(), HasSubstr("Both small faces are taken"));
    Testing::runFor(20);
    EXPECT_TRUE(isInSight(5)) << "the row with the keyboard is behind what is said";
    at.type(QStringLiteral("reykjavik"));
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.clock->state().cityIdentifiers, cities);
    EXPECT_EQ(at.message(), "The list holds 100 cities. Remove one to make room.");
}

TEST(ClockPanelTest, TheSliderWalksAllClocksThroughTheDayAndBack) {
    OpenPanel at;
    PanelSlider& slider = at.panel().travel().slider();
    const auto now = at.clock->rows();
    const int live = at.clock->travel()->minute(at.clock->shownDate());
    ASSERT_NE(live % 15, 0) << "the clock of this test stands at a quarter, where rounding shows nothing";
    EXPECT_EQ(slider.maximum(), at.clock->travel()->maximumMinute);
    EXPECT_EQ(slider.value(), live);
    EXPECT_THAT(at.travelText(), testing::StartsWith("Now it is"));
    EXPECT_FALSE(at.panel().travel().now().isEnabled());

    slider.setFocus(Qt::TabFocusReason);
    struct Step {
        Qt::Key key;
        int minute;
    };
    key(at.panel(), Qt::Key_PageUp);
    EXPECT_EQ(slider.value(), (live + 60 + 7) / 15 * 15) << "an hour on does not stop at a quarter";
    slider.setValue(live);
    const int next = (live / 15 + 1) * 15;
    for (const Step& step :
         {Step{Qt::Key_Right, next}, Step{Qt::Key_PageUp, next + 60}, Step{Qt::Key_PageDown, next},
          Step{Qt::Key_Left, next - 15}, Step{Qt::Key_Home, 0}, Step{Qt::Key_End, slider.maximum()}}) {
        key(at.panel(), step.key);
        EXPECT_EQ(at.clock->shownDate(), at.clock->travel()->date(step.minute)) << step.key;
        EXPECT_EQ(slider.value(), step.minute) << step.key;
    }
    EXPECT_THAT(at.travelText(), testing::StartsWith("When it is")) << "nothing says that this is not now";
    EXPECT_NE(at.clock->rows(), now);
    key(at.panel(), Qt::Key_Tab);
    at.panel().travel().now().setFocus(Qt::TabFocusReason);
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.clock->rows(), now);
    EXPECT_TRUE(slider.hasFocus()) << "the keyboard is lost with the button";
    key(at.panel(), Qt::Key_Right);
    EXPECT_TRUE(at.clock->isPreviewing());
    at.panel().dismiss();
    EXPECT_FALSE(at.clock->isPreviewing()) << "the tower goes wrong behind a closed panel";
}

TEST(ClockPanelTest, ChangesFromElsewhereDisturbNothing) {
    OpenPanel at;
    at.stand(2);
    QWidget* const paris = &at.stop(2);
    at.clock->change([&](WorldClockState& state) {
        state.removeCity(state.cityIdentifiers[0]);
        return state.addCity("America/Lima", at.clock->catalog(), homeZone);
    });
    EXPECT_EQ(at.names(), "Kolkata Paris* Cairo Lima");
    EXPECT_EQ(&at.stop(1), paris);
    EXPECT_EQ(at.standsAt(), "Paris");

    at.type(QStringLiteral("cairo"));
    key(at.panel(), Qt::Key_Down);
    const int chosen = at.panel().search().view().currentIndex().row();
    auto& model = static_cast<ClockSearchModel&>(*at.panel().search().view().model());
    ASSERT_TRUE(model.isAdded(0));
    at.clock->change([](WorldClockState& state) { return state.removeCity(state.cityIdentifiers[1]); });
    EXPECT_FALSE(model.isAdded(0)) << "the mark of a removed city stays";
    EXPECT_EQ(at.panel().search().view().currentIndex().row(), chosen);
    key(at.panel(), Qt::Key_Up);
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.names(), "Kolkata Paris* Lima Cairo");
}

TEST(ClockPanelTest, HostileQueriesAreAnswered) {
    struct Case {
        const char* fault;
        QString query;
        bool searches;
    };
    const Case cases[] = {
        {"only spaces are no words", QStringLiteral("  \u00a0\u2003 "), false},
        {"ten thousand letters", QString(10000, QLatin1Char('a')), true},
        {"ten thousand marks", QStringLiteral("a") + QString(10000, QChar(0x301)), true},
        {"half an emoji", QString(QChar(0xd83d)), true},
        {"an emoji", QStringLiteral("😀"), true},
        {"controls and the other direction", QStringLiteral("\u202e\u0007 zz"), true},
    };
    OpenPanel at;
    for (const Case& test : cases) {
        at.type(test.query);
        EXPECT_EQ(at.panel().search().isSearching(), test.searches) << test.fault;
        EXPECT_EQ(at.panel().list().isVisible(), !test.searches) << test.fault;
        EXPECT_LE(at.panel().field().text().size(), 100) << test.fault;
        EXPECT_LE(at.panel().search().view().model()->rowCount(), 50) << test.fault;
    }
    at.type(QStringLiteral("zzzz"));
    EXPECT_THAT(at.panel().field().accessibleDescription().toStdString(), HasSubstr("No city matches"));
    key(at.panel(), Qt::Key_Down);
    key(at.panel(), Qt::Key_Return);
    EXPECT_EQ(at.names(), "Kolkata Tokyo* Paris* Cairo");
}

TEST(ClockPanelTest, ScreenReadersHearEveryRow) {
    OpenPanel at;
    EXPECT_EQ(KitHarness::spokenName(&at.stop(1)), "Tokyo, Japan");
    const std::string heard = at.stop(1).accessibleDescription().toStdString();
    for (const std::string& part : {at.clock->rows()[1].time, std::string("3 hours 30 minutes ahead of home"),
                                    std::string("A face of the tower")}) {
        EXPECT_THAT(heard, HasSubstr(part));
    }
    EXPECT_THAT(at.stop(0).accessibleDescription().toStdString(), HasSubstr("Home"));
    EXPECT_EQ(KitHarness::spokenName(&at.panel().field()), "Add a city");
}

} // namespace
