#pragma once

#include "search/Entry.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace search {

struct FoldedTexts;

/// All that can be found: pages, each behind the one that it is opened from, and entries. Immutable, and a copy refers
/// to the same contents. Any thread.
class Index {
  public:
    Index();
    /// Folds all texts. Every page comes behind the one that it is opened from, and every entry has a page: see holds().
    Index(std::vector<Page> pages, std::vector<Entry> entries);

    /// Whether pages and entries are what an index can be made of.
    [[nodiscard]] static bool holds(const std::vector<Page>& pages, const std::vector<Entry>& entries);

    [[nodiscard]] const std::vector<Page>& pages() const { return contents_->pages; }
    [[nodiscard]] const std::vector<Entry>& entries() const { return contents_->entries; }

    /// The positions of the pages to open one after the other, the first page first and the given one last.
    [[nodiscard]] std::vector<std::size_t> wayTo(std::size_t page) const;

    /// What find() reads.
    [[nodiscard]] const FoldedTexts& folded() const { return *contents_->folded; }

  private:
    struct Contents {
        std::vector<Page> pages;
        std::vector<Entry> entries;
        std::shared_ptr<const FoldedTexts> folded;
    };
    std::shared_ptr<const Contents> contents_;
};

} // namespace search
