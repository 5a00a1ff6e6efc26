#pragma once

#include "app/shell/WindowController.h"
#include "feedback/FeedbackSurvey.h"

#include <functional>

namespace tallowby {

/// The window of the survey. Main thread only.
class FeedbackWindowController : public WindowController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(tallowby::FeedbackSurvey *survey READ survey CONSTANT)

public:
    /// `finished` is called when the user leaves it by one of its buttons. The survey outlives the window.
    FeedbackWindowController(const WindowServices &window, FeedbackSurvey &survey, std::function<void()> finished)
        : WindowController(window, QStringLiteral("FeedbackWindow"))
        , m_survey(survey)
        , m_finished(std::move(finished)) {}

    [[nodiscard]] FeedbackSurvey *survey() const { return &m_survey; }
    Q_INVOKABLE void finish() { m_finished(); }
    /// However the window is closed.
    Q_INVOKABLE void closed() { m_survey.leave(); }

private:
    FeedbackSurvey &m_survey;
    const std::function<void()> m_finished;
};

} // namespace tallowby
