#include "colour/theme_picture.h"

SmartBitmap themePicture(const std::string& name) {
    const SmartBitmap fallback("broken_image", false);
    SmartBitmap picture;
    picture.LoadFromTheme(name, fallback);
    return picture;
}
