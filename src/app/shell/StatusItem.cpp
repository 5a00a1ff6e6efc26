#include "app/shell/StatusItem.h"

#include "platform/desktop/StatusArea.h"

#include <QAction>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

namespace tallowby {

StatusItem::StatusItem(StatusArea &area, StatusItemActions actions)
    : m_actions(std::move(actions)) {
    makeMenu();
    if (area.hasAppeared()) {
        show();
    } else {
        connect(&area, &StatusArea::appeared, this, &StatusItem::show, Qt::SingleShotConnection);
    }
}

StatusItem::~StatusItem() = default;

void StatusItem::makeMenu() {
    m_menu = std::make_unique<QMenu>();
    const QAction *settings = m_menu->addAction(tr("Settings…"), Qt::CTRL | Qt::Key_Comma);
    connect(settings, &QAction::triggered, this, m_actions.openSettings);
    const QAction *feedback = m_menu->addAction(tr("Send Feedback…"));
    connect(feedback, &QAction::triggered, this, m_actions.sendFeedback);
    m_menu->addSeparator();
    const QAction *updates = m_menu->addAction(tr("Check for Updates…"));
    connect(updates, &QAction::triggered, this, m_actions.checkForUpdates);
    m_menu->addSeparator();
    const QAction *quit = m_menu->addAction(tr("Quit"), Qt::CTRL | Qt::Key_Q);
    connect(quit, &QAction::triggered, this, m_actions.quit);
}

void StatusItem::show() {
    m_icon = std::make_unique<QSystemTrayIcon>(QIcon(QStringLiteral(":/tallowby/status-item.svg")));
    m_icon->setToolTip(QStringLiteral("Tallowby"));
    m_icon->setContextMenu(m_menu.get());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            m_actions.toggle();
        }
    });
    m_icon->show();
}

} // namespace tallowby
