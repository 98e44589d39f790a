#pragma once

#include "app/settings/LibraryActions.h"
#include "app/settings/LibraryState.h"
#include "app/settings/SettingsForms.h"

#include <QWidget>

class QStackedWidget;

namespace DeskSprites {

class LibraryList;
class LibraryPane;

/// The settings window itself: the list and, beside it, the chosen pane. A pane is built when it is first
/// chosen. The window destroys itself when it is closed.
class LibraryWindow : public QWidget {
    Q_OBJECT
public:
    /// State, actions and forms belong to the controller and must outlive the window.
    LibraryWindow(const LibraryState& state, const LibraryActions& actions, const SettingsFormFactory& forms);

    /// Brings the whole window in line with the state.
    void refresh();
    /// The same for one pane, if it has been built.
    void refreshPane(const std::string& pane);
    /// Opens a pane without telling anyone; false when there is no such pane.
    bool showPane(const std::string& pane);
    std::string pane() const;

Q_SIGNALS:
    void paneChosen(const QString& pane);
    /// Once, before the window goes.
    void closing();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    LibraryPane* paneFor(const std::string& pane);
    void dropPanes();
    void takePalette();

    const LibraryState& state_;
    const LibraryActions& actions_;
    const SettingsFormFactory& forms_;
    LibraryList* list_;
    QStackedWidget* stack_;
    std::map<std::string, LibraryPane*> panes_;
};

} // namespace DeskSprites
