#include "app/onboarding/TurningScreen.h"

#include "platform/theme/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace tallowby {

namespace {

/// The drawing is laid out on a sheet of this size and scaled to the item.
constexpr QSizeF kSheet(440, 168);
constexpr QRectF kCard(-108, -66, 216, 132);
constexpr QPointF kCardCentre(220, 78);
constexpr qreal kDeskLevel = 156;
/// From the eye to the card, by its width: the same view as on the turn of the real screen.
constexpr qreal kEyeDistance = 1.6 * 216;

/// Lines and washes of one drawing, in the colours of the theme.
class Pen {
public:
    explicit Pen(QPainter &painter)
        : m_painter(painter) {}

    void line(const QPainterPath &path, const QColor &color, qreal width = 1.8) {
        m_painter.strokePath(path, QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    /// By hand a straight line bows a little.
    void stroke(QPointF from, QPointF to, const QColor &color, qreal width = 1.8, qreal bow = 0.6) {
        const QPointF along = to - from;
        const qreal length = std::hypot(along.x(), along.y());
        const QPointF across = length > 0 ? QPointF(-along.y(), along.x()) / length : QPointF();
        QPainterPath path(from);
        path.quadTo((from + to) / 2 + across * bow, to);
        line(path, color, width);
    }
    void shape(const QPainterPath &path, const QColor &fill, const QColor &edge, qreal width = 1.8) {
        m_painter.fillPath(path, fill);
        line(path, edge, width);
    }
    static QPainterPath rounded(const QRectF &rect, qreal radius) {
        QPainterPath path;
        path.addRoundedRect(rect, radius, radius);
        return path;
    }

private:
    QPainter &m_painter;
};

/// The card's middle is the origin of both faces.
void drawDesktop(Pen &pen, const Theme &theme) {
    pen.shape(Pen::rounded(kCard, 8), theme.surface(), theme.ink(), 2.2);
    const QRectF window(-88, -48, 104, 74);
    pen.shape(Pen::rounded(window, 5), theme.surface(), theme.ink());
    pen.stroke({-88, -36}, {16, -36}, theme.ink(), 1.4, 0.3);
    for (const qreal x : {-81.0, -73.0, -65.0}) {
        QPainterPath dot;
        dot.addEllipse(QPointF(x, -42), 1.6, 1.6);
        pen.shape(dot, theme.ink(), theme.ink(), 0.6);
    }
    for (const auto &[y, end] :
         {std::pair(-24.0, -8.0), std::pair(-13.0, 2.0), std::pair(-2.0, -22.0), std::pair(9.0, -4.0)}) {
        pen.stroke({-78, y}, {end, y}, theme.inkSoft(), 1.6, 0.5);
    }
    const QRectF behind(28, -30, 62, 50);
    pen.shape(Pen::rounded(behind, 5), theme.canvas(), theme.ink());
    QPainterPath hills(QPointF(31, 14));
    hills.quadTo(44, -12, 56, 4);
    hills.quadTo(66, -10, 87, 14);
    pen.line(hills, theme.inkSoft(), 1.6);
    QPainterPath sun;
    sun.addEllipse(QPointF(76, -17), 5, 5);
    pen.line(sun, theme.inkSoft(), 1.6);
    pen.shape(Pen::rounded({-44, 42, 88, 14}, 7), theme.canvas(), theme.ink(), 1.5);
    for (const qreal x : {-32.0, -16.0, 0.0, 16.0, 32.0}) {
        pen.shape(Pen::rounded({x - 3.5, 45.5, 7, 7}, 2), theme.surface(), theme.inkSoft(), 1.2);
    }
}

void drawPaper(Pen &pen, const Theme &theme) {
    pen.shape(Pen::rounded(kCard, 8), theme.surface(), theme.ink(), 2.2);
    for (qreal y = -50; y <= 50; y += 20) {
        for (qreal x = -90; x <= 90; x += 20) {
            QPainterPath dot;
            dot.addEllipse(QPointF(x, y), 0.9, 0.9);
            pen.line(dot, theme.dot(), 0.8);
        }
    }
    // A note, a little askew.
    QTransform askew;
    askew.translate(-56, -14);
    askew.rotate(-5);
    QPainterPath note;
    note.addRect(-30, -26, 60, 54);
    pen.shape(askew.map(note), theme.notePaper(QStringLiteral("yellow")), theme.ink(), 1.6);
    for (const auto &[y, end] : {std::pair(-12.0, 18.0), std::pair(0.0, 12.0), std::pair(12.0, 20.0)}) {
        pen.stroke(askew.map(QPointF(-20, y)), askew.map(QPointF(end, y)), theme.noteInk(), 1.6, 0.8);
    }
    // A list, half done.
    for (int row = 0; row < 3; ++row) {
        const qreal y = -40 + row * 18;
        QPainterPath box;
        box.addEllipse(QPointF(8, y), 5, 5);
        pen.line(box, row < 2 ? theme.accent() : theme.inkSoft(), 1.6);
        if (row < 2) {
            QPainterPath tick(QPointF(5.5, y));
            tick.lineTo(7.6, y + 2.4);
            tick.lineTo(11.5, y - 3);
            pen.line(tick, theme.accent(), 1.6);
        }
        pen.stroke({20, y}, {row == 1 ? 58.0 : 74.0, y}, theme.inkSoft(), 1.6, 0.6);
    }
    // Something drawn with the pencil, and an arrow to it.
    QPainterPath doodle(QPointF(20, 40));
    doodle.cubicTo(26, 14, 42, 16, 44, 34);
    doodle.cubicTo(46, 50, 64, 48, 68, 30);
    doodle.cubicTo(70, 22, 80, 22, 84, 34);
    pen.line(doodle, theme.ink(), 2);
    QPainterPath arrow(QPointF(-24, 24));
    arrow.quadTo(-8, 44, 12, 41);
    arrow.moveTo(6, 37);
    arrow.lineTo(12, 41);
    arrow.lineTo(6, 45);
    pen.line(arrow, theme.accent(), 1.8);
}

/// What stands beside and under the screen, and does not turn.
void drawDesk(Pen &pen, const Theme &theme) {
    pen.stroke({18, kDeskLevel}, {424, kDeskLevel}, theme.ink(), 2, 1.4);
    // The foot.
    pen.stroke({220, 140}, {220, 153}, theme.ink(), 5, 0);
    QPainterPath foot;
    foot.addRoundedRect(188, 151, 64, 5, 2.5, 2.5);
    pen.shape(foot, theme.surface(), theme.ink(), 1.8);
    // A plant.
    QPainterPath pot(QPointF(52, 128));
    pot.lineTo(84, 128);
    pot.lineTo(79, kDeskLevel);
    pot.lineTo(57, kDeskLevel);
    pot.closeSubpath();
    pen.shape(pot, theme.notePaper(QStringLiteral("peach")), theme.ink(), 1.8);
    for (const auto &[tip, bend] :
         {std::pair(QPointF(68, 82), QPointF(64, 106)), std::pair(QPointF(44, 92), QPointF(60, 108)),
          std::pair(QPointF(92, 94), QPointF(74, 108)), std::pair(QPointF(36, 112), QPointF(56, 114)),
          std::pair(QPointF(101, 113), QPointF(80, 114))}) {
        const QPointF root(68, 127);
        QPainterPath leaf(root);
        const QPointF side = QPointF(-(tip - root).y(), (tip - root).x()) * 0.16;
        leaf.quadTo(bend + side, tip);
        leaf.quadTo(bend - side, root);
        pen.shape(leaf, theme.notePaper(QStringLiteral("mint")), theme.ink(), 1.5);
    }
    // A mug.
    QPainterPath handle(QPointF(388, 132));
    handle.cubicTo(404, 130, 404, 150, 387, 148);
    pen.line(handle, theme.ink(), 1.8);
    QPainterPath mug(QPointF(352, 124));
    mug.lineTo(389, 124);
    mug.lineTo(386, 152);
    mug.quadTo(385, kDeskLevel, 381, kDeskLevel);
    mug.lineTo(360, kDeskLevel);
    mug.quadTo(356, kDeskLevel, 355, 152);
    mug.closeSubpath();
    pen.shape(mug, theme.notePaper(QStringLiteral("sky")), theme.ink(), 1.8);
    for (const qreal x : {363.0, 376.0}) {
        QPainterPath steam(QPointF(x, 116));
        steam.cubicTo(x - 6, 108, x + 6, 104, x, 94);
        pen.line(steam, theme.inkSoft(), 1.5);
    }
}

} // namespace

TurningScreen::TurningScreen(QQuickItem *parent)
    : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    setImplicitSize(kSheet.width(), kSheet.height());
    connect(&Theme::shared(), &Theme::changed, this, [this] { update(); });
}

void TurningScreen::setTurn(qreal turn) {
    if (!qFuzzyCompare(m_turn, turn)) {
        m_turn = turn;
        Q_EMIT turnChanged();
        update();
    }
}

void TurningScreen::paint(QPainter *painter) {
    const Theme &theme = Theme::shared();
    Pen pen(*painter);
    painter->setRenderHint(QPainter::Antialiasing);
    const qreal scale = std::min(width() / kSheet.width(), height() / kSheet.height());
    painter->translate((width() - kSheet.width() * scale) / 2, (height() - kSheet.height() * scale) / 2);
    painter->scale(scale, scale);
    drawDesk(pen, theme);

    const qreal angle = m_turn * std::numbers::pi;
    const bool showsPaper = std::cos(angle) < 0;
    QTransform view(std::cos(angle), 0, std::sin(angle) / kEyeDistance, 0, 1, 0, 0, 0, 1);
    view *= QTransform::fromTranslate(kCardCentre.x(), kCardCentre.y());
    painter->setTransform(view * painter->transform());
    if (showsPaper) {
        painter->scale(-1, 1);
        drawPaper(pen, theme);
    } else {
        drawDesktop(pen, theme);
    }
}

} // namespace tallowby
