#include "blocks/toolbar/DividerFormatToolbar.h"

#include "blocks/divider/DividerBlockContent.h"

namespace tallowby {

int DividerFormatToolbar::thickness() const {
    const auto thickness = shared(&DividerBlockContent::thicknessOf);
    return thickness ? int(thicknesses().indexOf(*thickness)) : -1;
}

void DividerFormatToolbar::chooseThickness(int place) {
    const double thickness = thicknesses().at(place).toDouble();
    for (const BlockPtr &block : blocks()) {
        DividerBlockContent::setThickness(viewModel(), *block, thickness);
    }
}

} // namespace tallowby
