#pragma once

#include <QObject>
#include <QString>

namespace tallowby {

class UserDefaults;

enum class CanvasTutorialStep : int { welcome, pointAndType, rightClick, miniMap };
constexpr int kCanvasTutorialStepCount = 4;

/// What a card says; `hint` is empty where there is nothing to be tried.
struct CanvasTutorialCard {
    QString title;
    QString body;
    QString hint;
};
[[nodiscard]] CanvasTutorialCard canvasTutorialCard(CanvasTutorialStep step);

/// How far a person has come through the cards that the canvas shows at first. Once they are finished, a stored flag
/// keeps them from coming back. Main thread only.
class CanvasTutorialModel : public QObject {
    Q_OBJECT

public:
    /// `defaults` must outlive the model.
    explicit CanvasTutorialModel(UserDefaults &defaults, QObject *parent = nullptr);

    [[nodiscard]] bool isActive() const { return m_isActive; }
    [[nodiscard]] CanvasTutorialStep step() const { return m_step; }

    /// To the next card, or to the end after the last.
    void advance();
    void finish();
    /// A note was begun by typing on the empty canvas.
    void notifyPointAndTypeUsed();
    /// A menu was opened on the canvas.
    void notifyRightClicked();

Q_SIGNALS:
    void isActiveChanged();
    void stepChanged();

private:
    UserDefaults &m_defaults;
    bool m_isActive;
    CanvasTutorialStep m_step = CanvasTutorialStep::welcome;
};

} // namespace tallowby
