#include "model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Printed printed;
    QModel model;
    const bool decoded = model.decodeMD2(data, size, "model");
    fuzz::drawModel(model, decoded, printed.lines());
    return 0;
}
