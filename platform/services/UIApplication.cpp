#include "platform/services/UIApplication.h"

#include "platform/services/DesktopLibrary.h"

namespace platform {

UIApplication& UIApplication::sharedApplication() {
    static UIApplication application;
    return application;
}

bool UIApplication::openURL(const NSURL& url) {
    DesktopLibrary* desktop = desktopLibrary();
    return desktop && desktop->openAddress(url.scheme(), url.absoluteString());
}

} // namespace platform
