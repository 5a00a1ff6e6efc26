#pragma once

#include <QKeySequence>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>

#include <functional>

class QQuickItem;

namespace tallowby {

/// A row of one of the menus of the program's windows.
struct MainMenuItem {
    Q_GADGET
    QML_VALUE_TYPE(mainMenuItem)
    Q_PROPERTY(QString title MEMBER title)
    /// As it is written.
    Q_PROPERTY(QString keys READ keys)
    Q_PROPERTY(bool startsGroup MEMBER startsGroup)

public:
    [[nodiscard]] QString keys() const { return shortcut.toString(QKeySequence::NativeText); }

    QString title;
    QKeySequence shortcut;
    bool startsGroup = false;
    std::function<void()> action;
};

/// What can be done while one of the program's windows is active: the items of the program, whose keys work in all of
/// them and over the canvas, and those of editing, which go to the text of that window that had the keyboard last. Main
/// thread only.
class MainMenu : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QList<tallowby::MainMenuItem> applicationItems READ applicationItems CONSTANT)
    Q_PROPERTY(QList<tallowby::MainMenuItem> editItems READ editItems CONSTANT)

public:
    explicit MainMenu(QList<MainMenuItem> applicationItems);
    ~MainMenu() override;

    /// Makes the keys of the program's items work.
    void install(QQmlEngine &qml);

    [[nodiscard]] const QList<MainMenuItem> &applicationItems() const { return m_applicationItems; }
    [[nodiscard]] const QList<MainMenuItem> &editItems() const { return m_editItems; }

    Q_INVOKABLE void chooseApplicationItem(int index) const;
    Q_INVOKABLE void chooseEditItem(int index) const;

private:
    void edit(const char *operation) const;

    const QList<MainMenuItem> m_applicationItems;
    const QList<MainMenuItem> m_editItems;
    /// An open menu has the keyboard itself.
    QPointer<QQuickItem> m_text;
    std::unique_ptr<QObject> m_keys;
};

} // namespace tallowby
