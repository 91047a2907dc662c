#pragma once

#include "search/Index.h"

#include <string>
#include <utility>
#include <vector>

namespace tests {

/// A root page, "Apps" on it, and "Passcode View" on that, with rows of these titles each.
class SomeIndex {
  public:
    enum Page : std::size_t { root, apps, passcode };

    search::Entry& add(std::size_t page, std::string title) {
        search::Entry entry;
        entry.page = page;
        entry.row = entries_.size();
        entry.title = std::move(title);
        entries_.push_back(std::move(entry));
        return entries_.back();
    }
    [[nodiscard]] search::Index index() const {
        return {{{"RootPage", "Lumora", std::nullopt, 0, "", ""},
                 {"AppsPage", "Apps", root, 2, "", "Apps"},
                 {"PasscodePage", "Passcode View", apps, 5, "", "Passcode View"}},
                entries_};
    }

  private:
    std::vector<search::Entry> entries_;
};

} // namespace tests
