#pragma once

#include "platform/foundation/Value.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/CFRunLoop.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace lumora {

/// The port on which a tweak tells a follower of changes, served by a thread of its own. What it is told waits here, the
/// last value of each key, so that the tweak is answered at once whatever the follower does.
///
/// Every process of the user can write to the port. What is no message of docs/ports.md is ignored, and beyond kMostTold
/// everything is, so that lies take no more memory than that.
class FollowerPort {
  public:
    /// So many bytes of messages are taken before the settings have to be asked for as a whole again.
    static constexpr std::size_t kMostTold = 16U << 20U;

    struct Told {
        platform::Dictionary settings;
        std::int64_t revision = 0;
    };

    /// Opens the port of that number; `told` is called on its thread when something is there to take.
    FollowerPort(std::int64_t number, std::function<void()> told);
    FollowerPort(const FollowerPort&) = delete;
    FollowerPort& operator=(const FollowerPort&) = delete;
    /// Closes it, and leaves no file.
    ~FollowerPort();

    /// False when no port could be opened, so that nothing is ever told.
    [[nodiscard]] bool isOpen() const { return loop_ != nullptr; }
    /// As the tweak is told: "followers/PID-N".
    [[nodiscard]] const std::string& name() const { return name_; }

    /// Any thread may call what follows.

    /// Forgets what has been told, and takes messages of any revision: before the tweak is asked for its settings.
    void beginAnew();
    /// The tweak has answered: leaves out what is told of revisions up to this one.
    void skip(std::int64_t revision);
    /// Takes no messages until it begins anew.
    void end();

    /// What has been told since, if anything.
    [[nodiscard]] std::optional<Told> take();
    /// Whether more was told than is taken. It takes no messages then.
    [[nodiscard]] bool isOverrun() const;

  private:
    void hear(const std::optional<platform::Data>& body);
    [[nodiscard]] bool hasRoomFor(std::size_t bytes);

    std::string name_;
    std::filesystem::path lockFile_;
    std::function<void()> told_;
    mutable std::mutex mutex_; ///< guards what follows, up to the loop
    platform::Dictionary pending_;
    std::optional<std::int64_t> revision_; ///< later ones are taken; none are without it
    std::size_t bytes_ = 0;
    platform::CFRunLoopRef loop_ = nullptr; ///< null when the port is not open
    std::thread thread_;
};

} // namespace lumora
