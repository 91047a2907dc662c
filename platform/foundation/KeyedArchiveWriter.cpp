#include "platform/foundation/NSKeyedArchiver.h"

#include "BinaryWriter.h"
#include "Flattening.h"
#include "KeyedArchiveFormat.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

/// Writes one archive. Archived objects are numbered twice: as UIDs within `$objects`, where "$null" is 0, the objects
/// of the value follow in their order and their classes come last; and as objects of the property list.
class KeyedArchiveWriter {
  public:
    explicit KeyedArchiveWriter(const Flattening& flat);
    Data encode() &&;

  private:
    /// Numbers in the property list: these, then all of `$objects`, then a UID for each of them, then the rest as met.
    enum : std::size_t { archiveNumber, versionNumber, topNumber, listNumber, firstArchived };
    static constexpr std::size_t familyCount = 3; ///< families that a writer uses, the first ones
    static constexpr std::size_t nameBound = 24;

    void writeArchive();
    void writeInstance(std::size_t number, Family family, const Flattening::Object& object);
    void writeUids(std::size_t number, std::size_t firstReference, std::size_t count);
    void writeClasses();
    void referTo(std::string_view name);

    [[nodiscard]] static Family familyOf(const Flattening::Object& object);
    [[nodiscard]] std::size_t& classUid(Family family) { return classUids_[static_cast<std::size_t>(family)]; }
    [[nodiscard]] static std::size_t uidOf(std::uint32_t flatNumber) {
        return flatNumber == Flattening::nil ? 0 : std::size_t{flatNumber} + 1;
    }
    /// The property-list object that holds a UID. That of "$null" stands last, if nil occurs at all.
    [[nodiscard]] std::size_t uidNumber(std::size_t uid) const {
        return firstArchived + archivedCount_ + (uid == 0 ? archivedCount_ : uid) - 1;
    }

    const Flattening& flat_;
    std::array<std::size_t, familyCount> classUids_{}; ///< 0 for a family that does not occur
    std::size_t archivedCount_ = 0;
    std::size_t next_ = 0; ///< the next number that is free
    std::vector<std::pair<std::string_view, std::size_t>> names_;
    BinaryWriter writer_;
};

KeyedArchiveWriter::KeyedArchiveWriter(const Flattening& flat)
    : flat_(flat), archivedCount_(1 + flat.objects().size()),
      writer_(firstArchived + 4 * (archivedCount_ + familyCount) + nameBound,
              flat.contentsSize() + 32 * archivedCount_ + 512) {
    for (const Flattening::Object& object : flat.objects()) {
        const Family family = familyOf(object);
        if (family != Family::unknown) classUid(family) = 1;
    }
    for (std::size_t& uid : classUids_)
        if (uid != 0) uid = archivedCount_++;
    next_ = firstArchived + 2 * archivedCount_ - (flat.holdsNil() ? 0 : 1);
}

Family KeyedArchiveWriter::familyOf(const Flattening::Object& object) {
    if (object.text) return Family::unknown;
    switch (object.value->kind()) {
    case Value::Kind::dictionary:
        return Family::dictionary;
    case Value::Kind::list:
        return Family::list;
    case Value::Kind::date:
        return Family::date;
    default:
        return Family::unknown; // in place; data is so, too, since some read no other that cannot be changed
    }
}

Data KeyedArchiveWriter::encode() && {
    writeArchive();
    writer_.text(firstArchived, name::null);
    std::size_t number = firstArchived;
    for (const Flattening::Object& object : flat_.objects()) {
        ++number;
        const Family family = familyOf(object);
        if (family != Family::unknown) {
            writeInstance(number, family, object);
        } else if (object.text) {
            writer_.text(number, *object.text);
        } else {
            writer_.scalar(number, *object.value);
        }
    }
    writeClasses();
    for (std::size_t uid = flat_.holdsNil() ? 0 : 1; uid < archivedCount_; ++uid)
        writer_.uid(uidNumber(uid), uid);
    for (const auto& [text, nameNumber] : names_)
        writer_.text(nameNumber, text);
    return std::move(writer_).finish();
}

void KeyedArchiveWriter::writeArchive() {
    writer_.dictionary(archiveNumber, 4);
    for (const std::string_view key : {name::version, name::archiver, name::top, name::objects})
        referTo(key);
    writer_.reference(versionNumber);
    referTo(name::keyedArchiver);
    writer_.reference(topNumber);
    writer_.reference(listNumber);

    writer_.integer(versionNumber, 100000);
    writer_.dictionary(topNumber, 1);
    referTo(name::root);
    writer_.reference(uidNumber(flat_.objects().empty() ? 0 : 1));
    writer_.list(listNumber, archivedCount_);
    for (std::size_t uid = 0; uid < archivedCount_; ++uid)
        writer_.reference(firstArchived + uid);
}

void KeyedArchiveWriter::writeInstance(std::size_t number, Family family, const Flattening::Object& object) {
    const bool dictionary = family == Family::dictionary;
    writer_.dictionary(number, dictionary ? 3 : 2);
    if (dictionary) referTo(name::keys);
    referTo(family == Family::date ? name::time : name::values);
    referTo(name::class_);

    const std::size_t keys = next_;
    if (dictionary) writer_.reference(next_++);
    const std::size_t contents = next_++;
    writer_.reference(contents);
    writer_.reference(uidNumber(classUid(family)));

    if (family == Family::date) return writer_.real(contents, object.value->date()->seconds);
    if (dictionary) writeUids(keys, object.firstReference, object.count);
    writeUids(contents, object.firstReference + (dictionary ? object.count : 0), object.count);
}

void KeyedArchiveWriter::writeUids(std::size_t number, std::size_t firstReference, std::size_t count) {
    writer_.list(number, count);
    for (std::size_t i = 0; i < count; ++i)
        writer_.reference(uidNumber(uidOf(flat_.reference(firstReference + i))));
}

void KeyedArchiveWriter::writeClasses() {
    for (std::size_t family = 0; family < familyCount; ++family) {
        if (classUids_[family] == 0) continue;
        const std::size_t number = firstArchived + classUids_[family];
        const std::string_view className =
            std::ranges::find(classNames, static_cast<Family>(family), &ClassName::family)->name;
        writer_.dictionary(number, 2);
        referTo(name::className);
        referTo(name::classes);
        referTo(className);
        writer_.reference(next_);
        writer_.list(next_++, 2);
        referTo(className);
        referTo(name::baseClass);
    }
}

void KeyedArchiveWriter::referTo(std::string_view name) {
    const auto known = std::ranges::find(names_, name.data(), [](const auto& entry) { return entry.first.data(); });
    if (known != names_.end()) return writer_.reference(known->second);
    names_.emplace_back(name, next_);
    writer_.reference(next_++);
}

} // namespace

std::optional<Data> NSKeyedArchiver::archivedDataWithRootObject(const Value& root) {
    const auto flat = Flattening::of(root);
    if (!flat) return std::nullopt;
    return KeyedArchiveWriter(flat.value()).encode();
}

} // namespace platform
