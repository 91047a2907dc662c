#pragma once

#include "applist/FileStamp.h"

#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace applist {

/// An icon as it was drawn, or the knowledge that there is none.
struct DrawnIcon {
    std::filesystem::path file; ///< empty when none was found
    std::optional<FileStamp> stamp;
    std::vector<std::uint8_t> png; ///< empty when there is nothing to be seen
};

/// The icons used last, as many as fit into a budget of bytes.
class IconCache {
  public:
    /// An application's icon of one size and scale.
    struct Key {
        std::string identifier;
        int pixels = 0;
        int scale = 0;
        // NOLINTNEXTLINE(modernize-use-nullptr): the check sees a null in what the compiler writes here
        friend auto operator<=>(const Key&, const Key&) = default;
    };

    explicit IconCache(std::size_t budget) : budget_(budget) {}

    /// Null when it is not there. Valid until the next put() or clear().
    [[nodiscard]] const DrawnIcon* find(const Key& key);
    void put(const Key& key, DrawnIcon icon);
    void clear();

    [[nodiscard]] std::size_t bytes() const { return bytes_; }

  private:
    using Entry = std::pair<Key, DrawnIcon>;
    void remove(std::list<Entry>::iterator entry);

    std::size_t budget_;
    std::size_t bytes_ = 0;
    std::list<Entry> entries_; // the one used last in front
    std::map<Key, std::list<Entry>::iterator> places_;
};

} // namespace applist
