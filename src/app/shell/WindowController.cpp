#include "app/shell/WindowController.h"

#include "app/shell/MainMenu.h"
#include "platform/Log.h"
#include "platform/desktop/Presentation.h"
#include "platform/scene/SceneGraph.h"

#include <QQmlComponent>
#include <QQuickWindow>
#include <QScreen>

namespace tallowby {

WindowController::WindowController(const WindowServices &services, const QString &view)
    : m_services(services)
    , m_view(view) {}

WindowController::~WindowController() = default;

void WindowController::show() {
    if (!m_window && !makeWindow()) {
        return;
    }
    if (!m_window->isVisible()) {
        prepareToShow();
        if (const QScreen *screen = m_window->screen()) {
            QRect frame(QPoint(), m_window->size());
            frame.moveCenter(screen->availableGeometry().center());
            m_window->setPosition(frame.topLeft());
        }
        m_window->show();
    }
    m_window->raise();
    m_window->requestActivate();
    m_services.presentation.activateIgnoringOtherApps(*m_window);
}

bool WindowController::makeWindow() {
    QQmlComponent component(&m_services.qml, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/App/%1.qml").arg(m_view)));
    std::unique_ptr<QObject> made(component.createWithInitialProperties(
        {{QStringLiteral("controller"), QVariant::fromValue<QObject *>(this)},
         {QStringLiteral("mainMenu"), QVariant::fromValue<QObject *>(&m_services.mainMenu)}}));
    auto *window = qobject_cast<QQuickWindow *>(made.get());
    if (!window) {
        logLine(QStringLiteral("[%1] ❌ Not opened: %2").arg(m_view, component.errorString()));
        return false;
    }
    watchSceneGraph(*window);
    std::ignore = made.release();
    m_window.reset(window);
    return true;
}

} // namespace tallowby
