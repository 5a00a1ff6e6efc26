#include "app/TallowbyApp.h"
#include "platform/desktop/PictureDecoder.h"

int main(int argc, char **argv) {
    if (const auto exitCode = tallowby::runAsPictureDecoder(argc, argv)) {
        return *exitCode;
    }
    return tallowby::runTallowby(argc, argv);
}
