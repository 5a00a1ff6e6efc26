#include "guidance/CanvasTutorialModel.h"

#include "platform/UserDefaults.h"

namespace tallowby {

namespace {

const QString kHasSeenKey = QStringLiteral("tallowby.hasSeenCanvasTutorial");

} // namespace

CanvasTutorialCard canvasTutorialCard(CanvasTutorialStep step) {
    const auto tr = [](const char *text) { return CanvasTutorialModel::tr(text); };
    switch (step) {
    case CanvasTutorialStep::welcome:
        return {tr("Welcome to your canvas"),
                tr("This is an infinite space for notes, ideas, and quick capture. Let's walk through the basics — it "
                   "only takes a few seconds."),
                {}};
    case CanvasTutorialStep::pointAndType:
        return {tr("Point, and just start typing"),
                tr("Move your mouse anywhere on the canvas and start typing. No click needed — a text block appears "
                   "right under your cursor."),
                tr("Try it — move your mouse and type a few letters.")};
    case CanvasTutorialStep::rightClick:
        return {tr("Right-click for every block type"),
                tr("Right-click anywhere to see everything you can add: checklists, sticky notes, code, tables, "
                   "shapes, voice and video notes."),
                tr("Try it — right-click anywhere on the canvas.")};
    case CanvasTutorialStep::miniMap:
        return {tr("Find your way with the mini map"),
                tr("Once you have a few blocks scattered around, this mini map appears in the corner. Drag on it, or "
                   "click anywhere on it, to jump across your canvas instantly."),
                {}};
    }
    return {};
}

CanvasTutorialModel::CanvasTutorialModel(UserDefaults &defaults, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_isActive(!defaults.boolean(kHasSeenKey)) {}

void CanvasTutorialModel::advance() {
    if (m_step == CanvasTutorialStep::miniMap) {
        finish();
        return;
    }
    m_step = CanvasTutorialStep(int(m_step) + 1);
    Q_EMIT stepChanged();
}

void CanvasTutorialModel::finish() {
    if (!m_isActive) {
        return;
    }
    m_isActive = false;
    m_defaults.setBoolean(kHasSeenKey, true);
    Q_EMIT isActiveChanged();
}

void CanvasTutorialModel::notifyPointAndTypeUsed() {
    if (m_isActive && m_step == CanvasTutorialStep::pointAndType) {
        advance();
    }
}

void CanvasTutorialModel::notifyRightClicked() {
    if (m_isActive && m_step == CanvasTutorialStep::rightClick) {
        advance();
    }
}

} // namespace tallowby
