#include "platform/desktop/PictureDecoder.h"

#include <QCoreApplication>

namespace tallowby {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(tallowby::PictureDecoder)
};

} // namespace

QString describe(PictureRefusal refusal) {
    switch (refusal) {
    case PictureRefusal::none:
        return {};
    case PictureRefusal::fileTooLarge:
        return Words::tr("the file is larger than 32 MiB");
    case PictureRefusal::drawingTooLarge:
        return Words::tr("it is a drawing of more than 4 MiB");
    case PictureRefusal::notAPicture:
        return Words::tr("it is not a picture");
    case PictureRefusal::tooManyPixels:
        return Words::tr("it has more than 100 megapixels");
    case PictureRefusal::noSize:
        return Words::tr("it has no size");
    case PictureRefusal::damaged:
        return Words::tr("it is damaged");
    case PictureRefusal::tooSlow:
        return Words::tr("it takes too long to open");
    case PictureRefusal::tooMuchMemory:
        return Words::tr("it takes too much memory");
    case PictureRefusal::unavailable:
        return Words::tr("pictures cannot be opened at the moment");
    }
    return {};
}

} // namespace tallowby
