#include "platform/services/UIApplication.h"

#include "platform/services/DesktopServices.h"

namespace platform {

UIApplication& UIApplication::sharedApplication() {
    static UIApplication application;
    return application;
}

bool UIApplication::openURL(const NSURL& url) {
    DesktopServices* desktop = desktopServices();
    return desktop && desktop->openAddress(url.scheme(), url.absoluteString());
}

} // namespace platform
