#pragma once

#include "platform/Export.h"
#include "platform/foundation/Value.h"

#include <cstdint>
#include <filesystem>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace platform {

/// Tells apart the states of a picture's file.
struct PictureStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    friend bool operator==(const PictureStamp&, const PictureStamp&) = default;
};

/// A file that is to be drawn so many pixels wide and high.
struct PictureWanted {
    std::filesystem::path file;
    int pixels = 0;
    // NOLINTNEXTLINE(modernize-use-nullptr): the check sees a null in what the compiler writes here
    friend auto operator<=>(const PictureWanted&, const PictureWanted&) = default;
};

/// A picture as drawn, or the fact that it cannot be drawn.
struct DrawnPicture {
    PictureStamp stamp;
    Data png; ///< empty when the picture cannot be drawn
};

/// The pictures used last, as many as a budget of bytes allows. One thread at a time.
class PLATFORM_EXPORT PictureStore {
  public:
    explicit PictureStore(std::size_t budget) : budget_(budget) {}

    /// Null when the store does not have it. Valid until the next put().
    [[nodiscard]] const DrawnPicture* find(const PictureWanted& wanted);
    void put(const PictureWanted& wanted, DrawnPicture picture);

    [[nodiscard]] std::size_t bytes() const { return bytes_; }

  private:
    using Entry = std::pair<PictureWanted, DrawnPicture>;
    void remove(std::list<Entry>::iterator entry);

    std::size_t budget_;
    std::size_t bytes_ = 0;
    std::list<Entry> entries_; // the one used last in front
    std::map<PictureWanted, std::list<Entry>::iterator> places_;
};

} // namespace platform
