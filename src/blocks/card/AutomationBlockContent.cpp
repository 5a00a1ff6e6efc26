#include "blocks/card/AutomationBlockContent.h"

namespace tallowby {

void AutomationBlockContent::componentComplete() {
    BlockBody::componentComplete();
    connect(block(), &Block::rawTextChanged, this, &AutomationBlockContent::excerptChanged);
}

QString AutomationBlockContent::excerpt() const {
    return block()->rawTextOrEmpty().left(kExcerptLength);
}

} // namespace tallowby
