#include "platform/services/UIApplication.h"

#include "platform/services/AddressHandlers.h"

namespace platform {

UIApplication& UIApplication::sharedApplication() {
    static UIApplication application;
    return application;
}

bool UIApplication::openURL(const NSURL& url) {
    AddressHandlers* handlers = addressHandlers();
    return handlers && handlers->openAddress(url.scheme(), url.absoluteString());
}

} // namespace platform
