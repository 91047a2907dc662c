#include "tweak/Log.h"

#include "json/Json.h"

#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <climits>

#include <poll.h>
#include <unistd.h>

namespace lumora {

void ErrorLog::write(const std::string& line) {
    const auto put = [](const std::string& text) {
        return writeAtOnce(STDERR_FILENO, "lumora-tweak: " + platform::printable(text) + "\n");
    };
    const std::lock_guard held(writing_);
    if (missing_ > 0 && put("lines missing here, because the log was full: " + std::to_string(missing_))) missing_ = 0;
    if (missing_ > 0 || !put(line)) ++missing_;
}

bool writeAtOnce(int file, std::string_view text) {
    while (!text.empty()) {
        // A pipe that has room takes as many bytes as are written here. O_NONBLOCK would meet every program that shares
        // it.
        pollfd room{file, POLLOUT, 0};
        if (::poll(&room, 1, 0) <= 0) return false;
        const ssize_t some = ::write(file, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (some <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(some));
    }
    return true;
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 80;
    std::string shown(text.substr(0, longest));
    if (text.size() > longest) {
        // Back to the beginning of a character.
        while (!shown.empty() && (static_cast<unsigned char>(text[shown.size()]) & 0xC0U) == 0x80U)
            shown.pop_back();
        shown += "…";
    }
    const auto json = writeJson(shown, JsonLayout::line);
    return json ? json.value() : "\"…\"";
}

} // namespace lumora
