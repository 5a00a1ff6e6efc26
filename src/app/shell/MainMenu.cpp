#include "app/shell/MainMenu.h"

#include "platform/Log.h"

#include <QGuiApplication>
#include <QQmlComponent>

namespace tallowby {

namespace {

/// Texts and their editors have these operations under these names, whether typed into or not.
std::function<void()> sendToFocus(const char *operation) {
    return [operation] {
        QObject *focus = QGuiApplication::focusObject();
        const QByteArray signature = QByteArray(operation) + "()";
        if (focus && focus->metaObject()->indexOfMethod(signature.constData()) >= 0) {
            QMetaObject::invokeMethod(focus, operation);
        }
    };
}

void choose(const QList<MainMenuItem> &items, int index) {
    if (index >= 0 && index < items.size()) {
        items.at(index).action();
    }
}

} // namespace

MainMenu::MainMenu(QList<MainMenuItem> applicationItems)
    : m_applicationItems(std::move(applicationItems))
    , m_editItems{{tr("Undo"), Qt::CTRL | Qt::Key_Z, false, sendToFocus("undo")},
                  {tr("Redo"), Qt::CTRL | Qt::SHIFT | Qt::Key_Z, false, sendToFocus("redo")},
                  {tr("Cut"), Qt::CTRL | Qt::Key_X, true, sendToFocus("cut")},
                  {tr("Copy"), Qt::CTRL | Qt::Key_C, false, sendToFocus("copy")},
                  {tr("Paste"), Qt::CTRL | Qt::Key_V, false, sendToFocus("paste")},
                  {tr("Select All"), Qt::CTRL | Qt::Key_A, false, sendToFocus("selectAll")}} {}

MainMenu::~MainMenu() = default;

void MainMenu::install(QQmlEngine &qml) {
    QQmlComponent component(&qml, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/App/MainMenuKeys.qml")));
    m_keys.reset(component.createWithInitialProperties({{QStringLiteral("menu"), QVariant::fromValue(this)}}));
    if (!m_keys) {
        logLine(QStringLiteral("[MainMenu] ❌ Keys not installed: %1").arg(component.errorString()));
    }
}

void MainMenu::chooseApplicationItem(int index) const {
    choose(m_applicationItems, index);
}

void MainMenu::chooseEditItem(int index) const {
    choose(m_editItems, index);
}

} // namespace tallowby
