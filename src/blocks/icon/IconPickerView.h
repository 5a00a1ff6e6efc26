#pragma once

#include <QQuickItem>
#include <QStringList>

namespace tallowby {

/// The panel in which the symbol of an icon is chosen: a field to search in, the categories, and a grid. It floats over
/// the canvas at its own size, whatever the zoom. The field has the keyboard; what walks the grid comes here from it.
class IconPickerView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// The rectangle beside which the panel stands.
    Q_PROPERTY(QRectF aside READ aside NOTIFY asideChanged)
    Q_PROPERTY(int columns MEMBER m_columns NOTIFY columnsChanged)
    Q_PROPERTY(QStringList categories READ categories CONSTANT)
    /// For each category, the one that stands for it.
    Q_PROPERTY(QStringList categorySymbols READ categorySymbols CONSTANT)
    /// -1 for all.
    Q_PROPERTY(int category READ category WRITE setCategory NOTIFY symbolsChanged)
    /// Looked for in all categories.
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY symbolsChanged)
    /// The names that are offered, in order.
    Q_PROPERTY(QStringList symbols READ symbols NOTIFY symbolsChanged)
    /// That which Return chooses; -1 when none is offered.
    Q_PROPERTY(int current READ current NOTIFY currentChanged)
    Q_PROPERTY(QQuickItem *searchField MEMBER m_searchField NOTIFY searchFieldChanged)

public:
    explicit IconPickerView(QQuickItem *parent = nullptr);

    [[nodiscard]] QRectF aside() const { return m_aside; }
    void setAside(const QRectF &aside);
    [[nodiscard]] static QStringList categories();
    [[nodiscard]] static QStringList categorySymbols();
    [[nodiscard]] int category() const { return m_category; }
    void setCategory(int category);
    [[nodiscard]] const QString &searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    [[nodiscard]] const QStringList &symbols() const { return m_symbols; }
    [[nodiscard]] int current() const { return m_current; }
    /// Puts the choice on a symbol that is offered.
    void setCurrentName(const QString &name);
    [[nodiscard]] QQuickItem *searchField() const { return m_searchField; }

    Q_INVOKABLE void choose(int index);
    /// How a symbol's name is read.
    [[nodiscard]] Q_INVOKABLE static QString spoken(const QString &name);
    /// Where a panel of that size goes.
    [[nodiscard]] Q_INVOKABLE static QPointF placed(QSizeF panel, const QRectF &aside, QSizeF room);

Q_SIGNALS:
    void asideChanged();
    void columnsChanged();
    void symbolsChanged();
    void currentChanged();
    void searchFieldChanged();
    void selected(const QString &name);
    void dismissed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void offer();
    void setCurrent(int index);

    QRectF m_aside;
    int m_columns = 8;
    int m_category = -1;
    QString m_searchText;
    QStringList m_symbols;
    int m_current = -1;
    QQuickItem *m_searchField = nullptr;
};

} // namespace tallowby
