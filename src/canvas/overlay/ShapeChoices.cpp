#include "canvas/overlay/ShapeChoices.h"

#include <QCoreApplication>

namespace tallowby {

namespace {

struct Names {
    Q_DECLARE_TR_FUNCTIONS(tallowby::ShapeChoices)
};

} // namespace

const std::vector<ShapeChoice> &shapeChoices() {
    static const std::vector<ShapeChoice> choices{
        {ShapeType::rectangle, Names::tr("Rectangle"), QStringLiteral("rectangle")},
        {ShapeType::circle, Names::tr("Circle"), QStringLiteral("circle")},
        {ShapeType::arrow, Names::tr("Arrow"), QStringLiteral("arrow.right")},
        {ShapeType::line, Names::tr("Line"), QStringLiteral("line.diagonal")},
        {ShapeType::diamond, Names::tr("Diamond"), QStringLiteral("diamond")},
        {ShapeType::triangle, Names::tr("Triangle"), QStringLiteral("triangle")},
        {ShapeType::speechBubble, Names::tr("Speech bubble"), QStringLiteral("bubble.left")},
    };
    return choices;
}

} // namespace tallowby
