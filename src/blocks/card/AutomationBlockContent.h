#pragma once

#include "canvas/container/BlockBody.h"

namespace tallowby {

/// The body of an automation: a card that tells what it would do.
class AutomationBlockContent : public tallowby::BlockBody {
    Q_OBJECT
    QML_ELEMENT
    /// How the block's text begins.
    Q_PROPERTY(QString excerpt READ excerpt NOTIFY excerptChanged)

public:
    /// In characters; more does not fit a card of any size that can be read.
    static constexpr qsizetype kExcerptLength = 1'000;

    using BlockBody::BlockBody;

    [[nodiscard]] QString excerpt() const;

Q_SIGNALS:
    void excerptChanged();

protected:
    void componentComplete() override;
};

} // namespace tallowby
