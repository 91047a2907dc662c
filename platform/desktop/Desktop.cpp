#include "platform/Export.h"
#include "platform/desktop/MessageWriter.h"
#include "platform/desktop/Owned.h"
#include "platform/services/DesktopServices.h"

#include <gio/gio.h>

#include <memory>

namespace platform {
namespace {

using Application = Owned<GAppInfo>;

Application applicationOf(const std::string& scheme) {
    return Application(g_app_info_get_default_for_uri_scheme(scheme.c_str()));
}

/// The first word of an application's command line. GIO itself tells of one that is quoted only its part up to a space,
/// with the quote.
std::string programOf(GAppInfo* application) {
    const char* line = g_app_info_get_commandline(application);
    gchar** words = nullptr;
    if (!line || !g_shell_parse_argv(line, nullptr, &words, nullptr)) return {};
    std::string program = words[0];
    g_strfreev(words);
    return program;
}

class Desktop final : public DesktopServices {
  public:
    std::optional<Handler> handlerOf(const std::string& scheme) override {
        const Application application = applicationOf(scheme);
        if (!application) return std::nullopt;
        const char* id = g_app_info_get_id(application.get());
        return Handler{id ? id : "", programOf(application.get())};
    }

    bool openAddress(const std::string& scheme, const std::string& address) override {
        const Application application = applicationOf(scheme);
        if (!application) return false;
        GList* addresses = g_list_append(nullptr, const_cast<char*>(address.c_str()));
        // Why it does not start is of no use: nobody is told.
        const bool opened = g_app_info_launch_uris(application.get(), addresses, nullptr, nullptr) != FALSE;
        g_list_free(addresses);
        return opened;
    }

    Result<std::vector<std::string>> addressesIn(const std::string& list) override { return mailAddressesIn(list); }

    Result<bool> writeMessage(const MailMessage& message, int file) override { return writeMailMessage(message, file); }
};

} // namespace
} // namespace platform

extern "C" PLATFORM_EXPORT platform::DesktopServices* lumora_desktop_services() {
    // Never destroyed: a worker may still be writing a message while the process ends.
    static auto& desktop = *new platform::Desktop;
    return &desktop;
}
