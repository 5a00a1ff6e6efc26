#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QAction;
class QMenu;
class QSystemTrayIcon;

namespace tallowby {

class StatusArea;

/// What a click on the item and the rows of its menu do.
struct StatusItemActions {
    std::function<void()> toggle;
    std::function<void()> openSettings;
    std::function<void()> sendFeedback;
    std::function<void()> checkForUpdates;
    std::function<void()> quit;
};

/// The program's item in the desktop's status area, with its menu; it comes as soon as there is such an area. A click
/// on the item itself asks for the canvas.
class StatusItem : public QObject {
    Q_OBJECT

public:
    StatusItem(StatusArea &area, StatusItemActions actions);
    ~StatusItem() override;

    /// Stands at the top of the menu and in the tip, and is told once by the desktop; empty when all is well.
    void setProblem(const QString &text);

private:
    void makeMenu();
    void show();
    void updateProblem();

    const StatusItemActions m_actions;
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
    QString m_problem;
    QAction *m_firstRow = nullptr;
    QAction *m_problemRow = nullptr;
    QAction *m_problemSeparator = nullptr;
};

} // namespace tallowby
