#pragma once

#include <QObject>

#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace tallowby {

/// The program's item in the desktop's tray, with its menu. A click on the item itself asks for the canvas.
class StatusItem : public QObject {
    Q_OBJECT

public:
    StatusItem();
    ~StatusItem() override;

Q_SIGNALS:
    void toggleRequested();
    void settingsRequested();
    void quitRequested();

private:
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace tallowby
