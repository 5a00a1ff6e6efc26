#include "app/StatusItem.h"

#include <QAction>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

namespace tallowby {

StatusItem::StatusItem()
    : m_menu(std::make_unique<QMenu>())
    , m_icon(std::make_unique<QSystemTrayIcon>(QIcon(QStringLiteral(":/tallowby/status-item.svg")))) {
    QAction *settings = m_menu->addAction(tr("Settings…"));
    settings->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    connect(settings, &QAction::triggered, this, &StatusItem::settingsRequested);
    m_menu->addSeparator();
    QAction *quit = m_menu->addAction(tr("Quit"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(quit, &QAction::triggered, this, &StatusItem::quitRequested);

    m_icon->setToolTip(QStringLiteral("Tallowby"));
    m_icon->setContextMenu(m_menu.get());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            Q_EMIT toggleRequested();
        }
    });
    m_icon->show();
}

StatusItem::~StatusItem() = default;

} // namespace tallowby
