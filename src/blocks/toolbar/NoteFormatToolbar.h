#pragma once

#include "canvas/overlay/toolbar/BlockToolbar.h"

#include <QVariantList>

namespace tallowby {

/// The paper of sticky notes.
class NoteFormatToolbar : public tallowby::BlockToolbar {
    Q_OBJECT
    QML_ELEMENT
    /// Of `PencilColor`.
    Q_PROPERTY(QVariantList papers READ papers NOTIFY papersChanged)
    /// The place in the list of what all notes have; -1 for none.
    Q_PROPERTY(int paper READ paper NOTIFY changed)

public:
    explicit NoteFormatToolbar(QQuickItem *parent = nullptr);

    [[nodiscard]] static QVariantList papers();
    [[nodiscard]] int paper() const;
    Q_INVOKABLE void choosePaper(int place);

Q_SIGNALS:
    void papersChanged();
};

} // namespace tallowby
