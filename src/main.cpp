#include "colour/controller.h"
#include "platform/image_explorer.h"
#include "platform/vistrel.h"

int main(int argc, char** argv) {
    InitVistrel(nullptr);
    lumora::common_image_explorer::Controller explorer(argc, argv);
    explorer.Run(0, lumora::colour::Controller::Instance());
    return 0;
}
