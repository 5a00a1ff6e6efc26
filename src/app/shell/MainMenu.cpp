#include "app/shell/MainMenu.h"

#include "platform/Log.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>

namespace tallowby {

namespace {

/// Texts and their editors have the operations of the menu under these names.
bool isText(const QObject &object) {
    return object.metaObject()->indexOfMethod("selectAll()") >= 0;
}

void choose(const QList<MainMenuItem> &items, int index) {
    if (index >= 0 && index < items.size()) {
        items.at(index).action();
    }
}

} // namespace

MainMenu::MainMenu(QList<MainMenuItem> applicationItems)
    : m_applicationItems(std::move(applicationItems))
    , m_editItems{{tr("Undo"), Qt::CTRL | Qt::Key_Z, false, [this] { edit("undo"); }},
                  {tr("Redo"), Qt::CTRL | Qt::SHIFT | Qt::Key_Z, false, [this] { edit("redo"); }},
                  {tr("Cut"), Qt::CTRL | Qt::Key_X, true, [this] { edit("cut"); }},
                  {tr("Copy"), Qt::CTRL | Qt::Key_C, false, [this] { edit("copy"); }},
                  {tr("Paste"), Qt::CTRL | Qt::Key_V, false, [this] { edit("paste"); }},
                  {tr("Select All"), Qt::CTRL | Qt::Key_A, false, [this] { edit("selectAll"); }}} {
    connect(qGuiApp, &QGuiApplication::focusObjectChanged, this, [this](QObject *focus) {
        if (focus && isText(*focus)) {
            m_text = qobject_cast<QQuickItem *>(focus);
        }
    });
}

MainMenu::~MainMenu() = default;

void MainMenu::install(QQmlEngine &qml) {
    QQmlComponent component(&qml, QUrl(QStringLiteral("qrc:/qt/qml/Tallowby/App/MainMenuKeys.qml")));
    m_keys.reset(component.createWithInitialProperties({{QStringLiteral("menu"), QVariant::fromValue(this)}}));
    if (!m_keys) {
        logLine(QStringLiteral("[MainMenu] ❌ Keys not installed: %1").arg(component.errorString()));
    }
}

void MainMenu::edit(const char *operation) const {
    if (m_text && m_text->window() == QGuiApplication::focusWindow()) {
        QMetaObject::invokeMethod(m_text, operation);
    }
}

void MainMenu::chooseApplicationItem(int index) const {
    choose(m_applicationItems, index);
}

void MainMenu::chooseEditItem(int index) const {
    choose(m_editItems, index);
}

} // namespace tallowby
