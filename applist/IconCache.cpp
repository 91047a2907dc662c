#include "applist/IconCache.h"

namespace applist {
namespace {

/// Roughly what an entry takes beside its picture, so that many empty ones have an end too.
constexpr std::size_t kOverhead = 512;

} // namespace

const DrawnIcon* IconCache::find(const Key& key) {
    const auto place = places_.find(key);
    if (place == places_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, place->second);
    return &place->second->second;
}

void IconCache::put(const Key& key, DrawnIcon icon) {
    if (const auto place = places_.find(key); place != places_.end()) remove(place->second);
    bytes_ += icon.png.size() + kOverhead;
    entries_.emplace_front(key, std::move(icon));
    places_[key] = entries_.begin();
    while (bytes_ > budget_ && entries_.size() > 1)
        remove(std::prev(entries_.end()));
}

void IconCache::clear() {
    entries_.clear();
    places_.clear();
    bytes_ = 0;
}

void IconCache::remove(std::list<Entry>::iterator entry) {
    bytes_ -= entry->second.png.size() + kOverhead;
    places_.erase(entry->first);
    entries_.erase(entry);
}

} // namespace applist
