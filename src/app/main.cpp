#include "app/TallowbyApp.h"

int main(int argc, char **argv) {
    return tallowby::runTallowby(argc, argv);
}
