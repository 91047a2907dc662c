#include "platform/services/PictureStore.h"

namespace platform {
namespace {

/// Roughly the bytes that an entry takes beside its picture, so that empty pictures cannot pile up either.
constexpr std::size_t kOverhead = 512;

} // namespace

const DrawnPicture* PictureStore::find(const PictureWanted& wanted) {
    const auto place = places_.find(wanted);
    if (place == places_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, place->second);
    return &place->second->second;
}

void PictureStore::put(const PictureWanted& wanted, DrawnPicture picture) {
    if (const auto place = places_.find(wanted); place != places_.end()) remove(place->second);
    bytes_ += picture.png.size() + kOverhead;
    entries_.emplace_front(wanted, std::move(picture));
    places_[wanted] = entries_.begin();
    while (bytes_ > budget_ && entries_.size() > 1)
        remove(std::prev(entries_.end()));
}

void PictureStore::remove(std::list<Entry>::iterator entry) {
    bytes_ -= entry->second.png.size() + kOverhead;
    places_.erase(entry->first);
    entries_.erase(entry);
}

} // namespace platform
