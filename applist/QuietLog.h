#pragma once

#include <array>
#include <glib.h>

namespace applist {

/// Keeps GLib's libraries from printing while it lives: a program that shows a list of applications has nothing to say
/// about a broken icon, or about a desktop whose settings service does not run. One thread at a time.
class QuietLog {
  public:
    QuietLog() {
        for (std::size_t i = 0; i < domains.size(); ++i)
            handlers_[i] = g_log_set_handler(domains[i], levels, ignore, nullptr);
    }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;
    ~QuietLog() {
        for (std::size_t i = 0; i < domains.size(); ++i)
            g_log_remove_handler(domains[i], handlers_[i]);
    }

  private:
    static void ignore(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

    static constexpr std::array<const char*, 4> domains{"GLib-GIO", "GdkPixbuf", "dconf", "librsvg"};
    static constexpr auto levels = GLogLevelFlags(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE);
    std::array<guint, domains.size()> handlers_{};
};

} // namespace applist
