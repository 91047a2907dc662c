#pragma once

#include <QImage>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace settings {

/// Pictures that were made for something, the latest few of them.
template<class For>
class PictureCache {
  public:
    template<class Make>
    QImage find(const For& what, Make make) {
        const auto known =
            std::find_if(kept_.begin(), kept_.end(), [&](const auto& kept) { return kept.first == what; });
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
