#include "blocks/toolbar/IconFormatToolbar.h"

#include "canvas/model/UndoGroup.h"

namespace tallowby {

int IconFormatToolbar::side() const {
    const auto size = shared([](const Block &block) { return QSizeF(block.width(), block.height()); });
    return size && size->width() == size->height() ? int(sizes().indexOf(size->width())) : -1;
}

void IconFormatToolbar::chooseSize(int place) {
    const UndoGroup gesture(viewModel());
    const double side = sizes().at(place).toDouble();
    for (const BlockPtr &block : blocks()) {
        viewModel().resizeAboutMiddle(block, {side, side});
    }
}

} // namespace tallowby
