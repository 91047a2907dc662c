#pragma once

#include <QImage>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace settings {

/// Pictures by what they were made for; the eight that were asked for last. One thread at a time.
template<class For>
class PictureCache {
  public:
    /// The picture for it, which `make` makes unless it is kept.
    template<class Make>
    QImage find(const For& what, Make make) {
        const auto known = std::ranges::find(kept_, what, &std::pair<For, QImage>::first);
        if (known != kept_.end())
            std::rotate(kept_.begin(), known, known + 1);
        else
            kept_.insert(kept_.begin(), {what, make()});
        if (kept_.size() > kMost) kept_.pop_back();
        return kept_.front().second;
    }

  private:
    static constexpr std::size_t kMost = 8;
    std::vector<std::pair<For, QImage>> kept_;
};

} // namespace settings
