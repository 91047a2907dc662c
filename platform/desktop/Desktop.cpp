#include "platform/Export.h"
#include "platform/desktop/MessageWriter.h"
#include "platform/desktop/Owned.h"
#include "platform/services/DesktopLibrary.h"

#include <filesystem>
#include <gio/gio.h>
#include <memory>

namespace platform {
namespace {

namespace fs = std::filesystem;
using Application = Owned<GAppInfo>;

/// Many times the folders of any desktop.
constexpr int kMostFolders = 1024;

/// Goes through a folder and all that is in it, along links too; false once there are more folders than allowed.
bool comesToAnEnd(const fs::path& folder, int& foldersLeft) {
    if (--foldersLeft < 0) return false;
    std::error_code failed; // GIO, too, passes over a folder that is missing or cannot be read
    for (fs::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed)) {
        std::error_code unknown;
        if (at->is_directory(unknown) && !comesToAnEnd(at->path(), foldersLeft)) return false;
    }
    return true;
}

/// Whether GIO can be asked for an application. It first goes through all folders of applications in this way, without
/// a limit, and two links that lead back to their own folder are enough to keep it going for ever.
bool canBeSearched() {
    int foldersLeft = kMostFolders;
    if (!comesToAnEnd(fs::path(g_get_user_data_dir()) / "applications", foldersLeft)) return false;
    for (const char* const* folder = g_get_system_data_dirs(); *folder; ++folder)
        if (!comesToAnEnd(fs::path(*folder) / "applications", foldersLeft)) return false;
    return true;
}

Application applicationOf(const std::string& scheme) {
    if (!canBeSearched()) return nullptr; // silent: as if no program took the address
    return Application(g_app_info_get_default_for_uri_scheme(scheme.c_str()));
}

/// The first word of an application's command line. Of a quoted word, GIO itself gives only the part up to a space,
/// with the quote.
std::string programOf(GAppInfo* application) {
    const char* line = g_app_info_get_commandline(application);
    gchar** words = nullptr;
    if (!line || !g_shell_parse_argv(line, nullptr, &words, nullptr)) return {};
    std::string program = words[0];
    g_strfreev(words);
    return program;
}

class Desktop final : public DesktopLibrary {
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
        // The reason why it does not start would reach no one.
        const bool opened = g_app_info_launch_uris(application.get(), addresses, nullptr, nullptr) != FALSE;
        g_list_free(addresses);
        return opened;
    }

    Result<std::vector<std::string>> addressesIn(const std::string& list) override { return mailAddressesIn(list); }
    Result<void> write(const MailMessage& message, int file) override { return writeMailMessage(message, file); }
};

} // namespace
} // namespace platform

// Never destroyed: a worker may still be writing a message while the process ends.
extern "C" PLATFORM_EXPORT platform::DesktopLibrary* lumora_desktop_library() {
    static auto& desktop = *new platform::Desktop;
    return &desktop;
}
