#pragma once

#include "platform/theme/Appearance.h"

#include <QColor>
#include <QEasingCurve>
#include <QFont>
#include <QObject>
#include <QQmlEngine>

#include <array>

namespace tallowby {

/// Every value of the program's look: colours for light and dark, type scale, space, radii, motion. One for the whole
/// process, so that all windows change together. Light or dark follows the desktop's palette unless the user has
/// chosen; `TALLOWBY_THEME` (light or dark) in the environment overrides both. Sizes are in points, durations in
/// milliseconds.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)
    Q_PROPERTY(QColor canvas READ canvas NOTIFY changed)
    Q_PROPERTY(QColor dot READ dot NOTIFY changed)
    Q_PROPERTY(QColor surface READ surface NOTIFY changed)
    Q_PROPERTY(QColor surfaceRaised READ surfaceRaised NOTIFY changed)
    Q_PROPERTY(QColor hairline READ hairline NOTIFY changed)
    /// The hairline as it looks on a surface, opaque.
    Q_PROPERTY(QColor surfaceEdge READ surfaceEdge NOTIFY changed)
    Q_PROPERTY(QColor ink READ ink NOTIFY changed)
    Q_PROPERTY(QColor inkSoft READ inkSoft NOTIFY changed)
    /// What may be passed over: beside the thing itself, another try at it.
    Q_PROPERTY(QColor aside READ aside CONSTANT)
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    /// Text on a ground of the accent.
    Q_PROPERTY(QColor accentInk READ accentInk NOTIFY changed)
    Q_PROPERTY(QColor danger READ danger NOTIFY changed)
    Q_PROPERTY(QColor success READ success NOTIFY changed)
    /// Washes over a surface under the pointer and while pressed.
    Q_PROPERTY(QColor hoverWash READ hoverWash NOTIFY changed)
    Q_PROPERTY(QColor pressWash READ pressWash NOTIFY changed)
    /// Ground of what is chosen among its like: a tool, an entry of a menu.
    Q_PROPERTY(QColor accentTint READ accentTint NOTIFY changed)
    /// Over everything that a panel in front puts out of reach.
    Q_PROPERTY(QColor veil READ veil NOTIFY changed)

    /// Of what is written on the paper of notes, which is light in both themes.
    Q_PROPERTY(QColor noteInk READ noteInk CONSTANT)
    /// Code is dark in both themes.
    Q_PROPERTY(QColor codePanel READ codePanel CONSTANT)
    Q_PROPERTY(QColor codeInk READ codeInk CONSTANT)
    Q_PROPERTY(QColor codeInkSoft READ codeInkSoft CONSTANT)

    Q_PROPERTY(QString uiFamily READ uiFamily CONSTANT)
    Q_PROPERTY(QString codeFamily READ codeFamily CONSTANT)
    Q_PROPERTY(int captionSize MEMBER kCaptionSize CONSTANT)
    Q_PROPERTY(int labelSize MEMBER kLabelSize CONSTANT)
    Q_PROPERTY(int bodySize READ bodySize CONSTANT)
    Q_PROPERTY(int emphasisSize MEMBER kEmphasisSize CONSTANT)
    Q_PROPERTY(int titleSize MEMBER kTitleSize CONSTANT)
    Q_PROPERTY(int displaySize MEMBER kDisplaySize CONSTANT)

    Q_PROPERTY(int spaceTight MEMBER kSpaceTight CONSTANT)
    Q_PROPERTY(int spaceSmall MEMBER kSpaceSmall CONSTANT)
    Q_PROPERTY(int spaceCard MEMBER kSpaceCard CONSTANT)
    Q_PROPERTY(int spacePanel MEMBER kSpacePanel CONSTANT)
    Q_PROPERTY(int spaceWindow MEMBER kSpaceWindow CONSTANT)
    Q_PROPERTY(int radiusControl MEMBER kRadiusControl CONSTANT)
    Q_PROPERTY(int radiusCard MEMBER kRadiusCard CONSTANT)
    Q_PROPERTY(int radiusPanel MEMBER kRadiusPanel CONSTANT)
    Q_PROPERTY(int hitSize MEMBER kHitSize CONSTANT)
    Q_PROPERTY(int iconSmall MEMBER kIconSmall CONSTANT)
    Q_PROPERTY(int iconLarge MEMBER kIconLarge CONSTANT)

    Q_PROPERTY(int motionIn MEMBER kMotionIn CONSTANT)
    Q_PROPERTY(int motionOut MEMBER kMotionOut CONSTANT)
    /// From the pointer's rest over a control to its tip.
    Q_PROPERTY(int tipDelay MEMBER kTipDelay CONSTANT)
    /// The way of a panel that springs up, over its duration.
    Q_PROPERTY(QEasingCurve panelSpring READ panelSpring CONSTANT)
    Q_PROPERTY(int panelSpringDuration READ panelSpringDuration CONSTANT)
    /// The way of a card that moves to its next place, over its duration.
    Q_PROPERTY(QEasingCurve cardSpring READ cardSpring CONSTANT)
    Q_PROPERTY(int cardSpringDuration READ cardSpringDuration CONSTANT)
    /// The way of the search, which comes without swinging, over its duration.
    Q_PROPERTY(QEasingCurve searchSpring READ searchSpring CONSTANT)
    Q_PROPERTY(int searchSpringDuration MEMBER kSearchSpringDuration CONSTANT)
    /// How long the text caret shows and hides in turn, by the desktop's choice; 0 means that it stays.
    Q_PROPERTY(int caretInterval READ caretInterval CONSTANT)

public:
    /// The one of this process; needs the application object.
    [[nodiscard]] static Theme &shared();
    /// For the QML engine, which may not delete it.
    static Theme *create(QQmlEngine *, QJSEngine *);

    /// What the user chose.
    void setAppearance(Appearance appearance);
    [[nodiscard]] bool isDark() const { return m_isDark; }
    [[nodiscard]] QColor canvas() const { return palette().canvas; }
    [[nodiscard]] QColor dot() const { return palette().dot; }
    [[nodiscard]] QColor surface() const { return palette().surface; }
    [[nodiscard]] QColor surfaceRaised() const { return palette().surfaceRaised; }
    [[nodiscard]] QColor hairline() const { return palette().hairline; }
    [[nodiscard]] QColor surfaceEdge() const;
    [[nodiscard]] QColor ink() const { return palette().ink; }
    [[nodiscard]] QColor inkSoft() const { return palette().inkSoft; }
    [[nodiscard]] QColor aside() const { return {0xAA, 0xAA, 0xAA}; }
    [[nodiscard]] QColor accent() const { return palette().accent; }
    [[nodiscard]] QColor accentInk() const { return m_isDark ? palette().canvas : palette().surface; }
    [[nodiscard]] QColor danger() const { return palette().danger; }
    [[nodiscard]] QColor success() const { return palette().success; }
    [[nodiscard]] QColor hoverWash() const;
    [[nodiscard]] QColor pressWash() const;
    [[nodiscard]] QColor accentTint() const;
    [[nodiscard]] QColor veil() const;
    /// Hues by which things of many kinds are told apart where they are too small for anything else.
    [[nodiscard]] QColor blue() const { return palette().blue; }
    [[nodiscard]] QColor green() const { return palette().success; }
    [[nodiscard]] QColor purple() const { return palette().purple; }
    [[nodiscard]] QColor orange() const { return palette().orange; }
    [[nodiscard]] QColor yellow() const { return palette().yellow; }
    [[nodiscard]] int bodySize() const { return kBodySize; }
    [[nodiscard]] static int cardRadius() { return kRadiusCard; }
    [[nodiscard]] int caretInterval() const { return m_caretInterval; }
    [[nodiscard]] QEasingCurve panelSpring() const;
    [[nodiscard]] int panelSpringDuration() const;
    [[nodiscard]] QEasingCurve cardSpring() const;
    [[nodiscard]] int cardSpringDuration() const;
    [[nodiscard]] QEasingCurve searchSpring() const;

    [[nodiscard]] QColor noteInk() const { return {0x2B, 0x28, 0x1F}; }
    [[nodiscard]] QColor noteLink() const { return {0x1E, 0x4F, 0xC4}; }
    /// In the order in which they are offered.
    [[nodiscard]] static QStringList notePaperNames();
    /// The first one for a name that there is not.
    [[nodiscard]] QColor notePaper(const QString &name) const;
    [[nodiscard]] QColor codePanel() const { return {0x26, 0x26, 0x26}; }
    [[nodiscard]] QColor codeInk() const { return {0xE6, 0xE4, 0xDE}; }
    [[nodiscard]] QColor codeInkSoft() const { return {0x9A, 0x97, 0x8F}; }
    [[nodiscard]] static QColor codeComment() { return {0x8E, 0x9A, 0x86}; }
    [[nodiscard]] static QColor codeText() { return {0xE8, 0xB8, 0x7A}; }
    [[nodiscard]] static QColor codeNumber() { return {0x8F, 0xD0, 0xC4}; }
    [[nodiscard]] static QColor codeKeyword() { return {0x8A, 0xB4, 0xFF}; }

    /// The colour in which text of a chosen colour is shown. Black and white become ink, so that a note can be read on
    /// either ground; what is no "#" and six hex digits does, too.
    [[nodiscard]] QColor textColor(const QString &chosen) const;

    [[nodiscard]] const QString &uiFamily() const { return m_uiFamily; }
    [[nodiscard]] const QString &codeFamily() const { return m_codeFamily; }
    /// The face of text blocks: "ChalkboardSE-Regular" where it is installed, else the nearest hand that is.
    [[nodiscard]] const QString &handFamily() const { return m_handFamily; }
    /// The face of notes: "MarkerFelt-Thin" where it is installed, else the nearest marker that is. Those behind it
    /// have the letters that it lacks.
    [[nodiscard]] const QStringList &noteFamilies() const { return m_noteFamilies; }

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Palette {
        QColor canvas;
        QColor dot;
        QColor surface;
        QColor surfaceRaised;
        QColor hairline;
        QColor ink;
        QColor inkSoft;
        QColor accent;
        QColor danger;
        QColor success;
        QColor blue;
        QColor purple;
        QColor orange;
        QColor yellow;
    };

    Theme();
    void followDesktop();
    [[nodiscard]] const Palette &palette() const;

    static constexpr int kCaptionSize = 11;
    static constexpr int kLabelSize = 12;
    static constexpr int kBodySize = 13;
    static constexpr int kEmphasisSize = 15;
    static constexpr int kTitleSize = 20;
    static constexpr int kDisplaySize = 28;
    static constexpr int kSpaceTight = 4;
    static constexpr int kSpaceSmall = 8;
    static constexpr int kSpaceCard = 12;
    static constexpr int kSpacePanel = 16;
    static constexpr int kSpaceWindow = 24;
    static constexpr int kRadiusControl = 6;
    static constexpr int kRadiusCard = 10;
    static constexpr int kRadiusPanel = 14;
    static constexpr int kHitSize = 32;
    static constexpr int kIconSmall = 16;
    static constexpr int kIconLarge = 20;
    static constexpr int kMotionIn = 120;
    static constexpr int kMotionOut = 90;
    static constexpr int kTipDelay = 600;
    static constexpr int kSearchSpringDuration = 750;

    Appearance m_appearance = Appearance::system;
    bool m_isDark = false;
    int m_caretInterval = 0;
    QString m_uiFamily;
    QString m_codeFamily;
    QString m_handFamily;
    QStringList m_noteFamilies;
};

} // namespace tallowby
