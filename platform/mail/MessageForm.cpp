#include "platform/mail/MessageForm.h"

#include "platform/services/DesktopLibrary.h"

namespace platform {

MessageForm* messageForm() {
    static auto* const form = desktopServices<MessageForm>("lumora_message_form");
    return form;
}

} // namespace platform
