#include "blocks/PlainBlockContent.h"

namespace tallowby {

void PlainBlockContent::componentComplete() {
    BlockBody::componentComplete();
    connect(block(), &Block::rawTextChanged, this, &PlainBlockContent::excerptChanged);
}

QString PlainBlockContent::excerpt() const {
    return block()->rawTextOrEmpty().left(kExcerptLength);
}

} // namespace tallowby
