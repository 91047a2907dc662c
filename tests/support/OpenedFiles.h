#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>

namespace tests {

/// Notes which files of a folder are opened.
class OpenedFiles {
  public:
    explicit OpenedFiles(const std::filesystem::path& folder) {
        if (::inotify_add_watch(watch_.number(), folder.c_str(), IN_OPEN) < 0)
            throw std::runtime_error("no watch on the folder");
    }

    [[nodiscard]] std::set<std::string> names() const {
        std::set<std::string> opened;
        std::array<char, 65536> events{};
        for (ssize_t size = 0; (size = ::read(watch_.number(), events.data(), events.size())) > 0;) {
            for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
                inotify_event event{};
                std::memcpy(&event, events.data() + at, sizeof event);
                if (event.len > 0) opened.emplace(events.data() + at + sizeof event); // not the folder itself
                at += sizeof event + event.len;
            }
        }
        return opened;
    }

  private:
    platform::FileDescriptor watch_{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
};

} // namespace tests
