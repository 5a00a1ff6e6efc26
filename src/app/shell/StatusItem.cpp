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
    m_problemRow = new QAction(m_menu.get());
    m_problemRow->setEnabled(false);
    m_problemSeparator = new QAction(m_menu.get());
    m_problemSeparator->setSeparator(true);
    m_firstRow = m_menu->addAction(tr("Settings…"), Qt::CTRL | Qt::Key_Comma);
    connect(m_firstRow, &QAction::triggered, this, m_actions.openSettings);
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
    m_icon->setContextMenu(m_menu.get());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            m_actions.toggle();
        }
    });
    updateProblem();
    m_icon->show();
}

void StatusItem::setProblem(const QString &text) {
    if (m_problem == text) {
        return;
    }
    const bool isNew = m_problem.isEmpty();
    m_problem = text;
    updateProblem();
    // Over the canvas, which says it too, nothing else is seen; on the desktop this is all there is.
    if (isNew && m_icon && QSystemTrayIcon::supportsMessages()) {
        m_icon->showMessage(QStringLiteral("Tallowby"), m_problem, QSystemTrayIcon::Warning);
    }
}

void StatusItem::updateProblem() {
    m_problemRow->setText(m_problem);
    // Taken out and not only hidden: some panels show what is hidden.
    if (m_problem.isEmpty()) {
        m_menu->removeAction(m_problemRow);
        m_menu->removeAction(m_problemSeparator);
    } else {
        m_menu->insertActions(m_firstRow, {m_problemRow, m_problemSeparator});
    }
    if (m_icon) {
        m_icon->setToolTip(m_problem.isEmpty() ? QStringLiteral("Tallowby") : u"Tallowby · "_qs + m_problem);
    }
}

} // namespace tallowby
