#include "platform/foundation/NSKeyedArchiver.h"

#include "BinaryReader.h"
#include "BinaryWriter.h"
#include "Expansion.h"
#include "Flattening.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

/// The texts that hold an archive together.
namespace name {
constexpr std::string_view version = "$version";
constexpr std::string_view archiver = "$archiver";
constexpr std::string_view keyedArchiver = "NSKeyedArchiver";
constexpr std::string_view top = "$top";
constexpr std::string_view root = "root";
constexpr std::string_view objects = "$objects";
constexpr std::string_view null = "$null";
constexpr std::string_view class_ = "$class";
constexpr std::string_view className = "$classname";
constexpr std::string_view classes = "$classes";
constexpr std::string_view baseClass = "NSObject";
constexpr std::string_view keys = "NS.keys";
constexpr std::string_view values = "NS.objects";
constexpr std::string_view text = "NS.string";
constexpr std::string_view data = "NS.data";
constexpr std::string_view time = "NS.time";
} // namespace name

/// What the class of an archived object makes of it.
enum class Family : std::uint8_t { dictionary, list, date, data, text, null, unknown };

struct ClassName {
    std::string_view name;
    Family family;
};

/// A writer uses the first name of each family.
constexpr std::array classNames{
    ClassName{"NSDictionary", Family::dictionary},
    ClassName{"NSMutableDictionary", Family::dictionary},
    ClassName{"NSArray", Family::list},
    ClassName{"NSMutableArray", Family::list},
    ClassName{"NSData", Family::data},
    ClassName{"NSMutableData", Family::data},
    ClassName{"NSDate", Family::date},
    ClassName{"NSString", Family::text},
    ClassName{"NSMutableString", Family::text},
    ClassName{"NSNull", Family::null},
};

/// Writes one archive. Archived objects are numbered twice: as UIDs within `$objects`, where "$null" is 0, the objects
/// of the value follow in their order and their classes come last; and as objects of the property list.
class Encoder {
  public:
    explicit Encoder(const Flattening& flat);
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

Encoder::Encoder(const Flattening& flat)
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

Family Encoder::familyOf(const Flattening::Object& object) {
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

Data Encoder::encode() && {
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

void Encoder::writeArchive() {
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

void Encoder::writeInstance(std::size_t number, Family family, const Flattening::Object& object) {
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

void Encoder::writeUids(std::size_t number, std::size_t firstReference, std::size_t count) {
    writer_.list(number, count);
    for (std::size_t i = 0; i < count; ++i)
        writer_.reference(uidNumber(uidOf(flat_.reference(firstReference + i))));
}

void Encoder::writeClasses() {
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

void Encoder::referTo(std::string_view name) {
    const auto known = std::ranges::find(names_, name.data(), [](const auto& entry) { return entry.first.data(); });
    if (known != names_.end()) return writer_.reference(known->second);
    names_.emplace_back(name, next_);
    writer_.reference(next_++);
}

/// Reads one archive.
class Decoder {
  public:
    explicit Decoder(BinaryReader& reader) : reader_(reader), expansion_(reader), families_(reader.objectCount()) {}

    bool decode(Value& value);

  private:
    /// The fields of an archived object that mean something to us.
    struct Fields {
        std::optional<std::size_t> class_, keys, values, text, data, time;
    };

    bool decodeArchived(std::size_t reference, unsigned depth, Value& value);
    bool decodeInstance(std::size_t reference, const BinaryObject& instance, unsigned depth, Value& value);
    bool decodeContainer(Family family, const Fields& fields, unsigned depth, Value& value);
    /// A text, data or date that is an object with a class.
    bool decodeWrapped(Family family, std::size_t reference, std::optional<std::size_t> contents, Value& value);
    bool decodeKey(std::size_t uid, std::string& key);

    bool readFields(const BinaryObject& instance, Fields& fields);
    bool readFamily(std::optional<std::size_t> classUid, Family& family);
    bool readFamilyName(std::size_t reference, Family& family);
    bool readList(std::optional<std::size_t> reference, BinaryObject& list);
    /// Follows a UID to the object it names within `$objects`; null when it names nil.
    bool follow(std::size_t uid, std::optional<std::size_t>& reference);

    BinaryReader& reader_;
    Expansion expansion_;
    BinaryObject objects_;                        ///< `$objects`
    std::vector<std::optional<Family>> families_; ///< of class objects already read, by reference
};

bool Decoder::decode(Value& value) {
    BinaryObject archive;
    if (!reader_.read(reader_.root(), archive)) return false;
    if (archive.kind != BinaryObject::Kind::dictionary) return reader_.fail("not a keyed archive");
    std::optional<std::size_t> objects;
    std::optional<std::size_t> top;
    bool keyed = false;
    for (std::size_t i = 0; i < archive.count; ++i) {
        BinaryObject key;
        if (!reader_.read(reader_.key(archive, i), key)) return false;
        const std::size_t reference = reader_.value(archive, i);
        if (BinaryReader::equals(key, name::objects)) objects = reference;
        if (BinaryReader::equals(key, name::top)) top = reference;
        BinaryObject archiver;
        if (BinaryReader::equals(key, name::archiver))
            keyed = reader_.read(reference, archiver) && BinaryReader::equals(archiver, name::keyedArchiver);
    }
    if (!keyed || !objects || !top) return reader_.fail("not a keyed archive");
    if (!readList(objects, objects_)) return false;

    BinaryObject roots;
    if (!reader_.read(*top, roots)) return false;
    if (roots.kind != BinaryObject::Kind::dictionary) return reader_.fail("$top is no dictionary");
    for (std::size_t i = 0; i < roots.count; ++i) {
        BinaryObject key;
        if (!reader_.read(reader_.key(roots, i), key)) return false;
        if (!BinaryReader::equals(key, name::root)) continue;
        std::optional<std::size_t> root;
        if (!follow(reader_.value(roots, i), root)) return false;
        return !root || decodeArchived(*root, 1, value);
    }
    return reader_.fail("there is no root object");
}

bool Decoder::follow(std::size_t uid, std::optional<std::size_t>& reference) {
    std::size_t index = 0;
    if (!reader_.readUid(uid, index)) return false;
    if (index >= objects_.count) return reader_.fail("a UID beyond $objects");
    reference = index > 0 ? std::optional(reader_.entry(objects_, index)) : std::nullopt;
    return true;
}

bool Decoder::decodeArchived(std::size_t reference, unsigned depth, Value& value) {
    const Expansion::State known = expansion_.recall(reference, depth, value);
    if (known != Expansion::State::fresh) return known == Expansion::State::shared;
    BinaryObject object;
    if (!reader_.read(reference, object)) return false;

    using enum BinaryObject::Kind;
    switch (object.kind) {
    case null:
        return expansion_.charge();
    case boolean:
        value = object.integer != 0;
        return expansion_.charge();
    case integer:
        value = object.integer;
        return expansion_.charge();
    case real:
        value = object.real;
        return expansion_.charge();
    case date:
        value = Date{object.real};
        return expansion_.charge();
    case data:
    case ascii:
    case utf16:
        return expansion_.buildLeaf(reference, object, value);
    case dictionary:
        return decodeInstance(reference, object, depth, value);
    case list:
    case uid:
        break;
    }
    return reader_.fail("an archived object without a class");
}

bool Decoder::decodeInstance(std::size_t reference, const BinaryObject& instance, unsigned depth, Value& value) {
    Fields fields;
    Family family = Family::unknown;
    if (!expansion_.consume(instance) || !readFields(instance, fields)) return false;
    if (!readFamily(fields.class_, family)) return false;

    switch (family) {
    case Family::dictionary:
    case Family::list: {
        Expansion::Opened opened{};
        if (!expansion_.open(reference, depth, opened)) return false;
        if (!decodeContainer(family, fields, depth, value)) return false;
        expansion_.close(reference, depth, opened, value);
        return true;
    }
    case Family::text:
        return decodeWrapped(family, reference, fields.text, value);
    case Family::data:
        return decodeWrapped(family, reference, fields.data, value);
    case Family::date:
        return decodeWrapped(family, reference, fields.time, value);
    case Family::null:
        return expansion_.charge() && expansion_.keep(reference, 0, value);
    case Family::unknown:
        break;
    }
    return reader_.fail("an archived object of an unknown class");
}

bool Decoder::decodeContainer(Family family, const Fields& fields, unsigned depth, Value& value) {
    BinaryObject keys;
    BinaryObject values;
    if (family == Family::dictionary && !readList(fields.keys, keys)) return false;
    if (!readList(fields.values, values)) return false;
    if (!expansion_.consume(keys) || !expansion_.consume(values)) return false;

    const auto decodeEntry = [&](std::size_t i, Value& entry) {
        std::optional<std::size_t> reference;
        if (!follow(reader_.entry(values, i), reference)) return false;
        return reference ? decodeArchived(*reference, depth + 1, entry) : expansion_.charge();
    };
    if (family == Family::list) {
        List list(values.count);
        for (std::size_t i = 0; i < values.count; ++i)
            if (!decodeEntry(i, list[i])) return false;
        value = std::move(list);
        return true;
    }
    if (keys.count != values.count) return reader_.fail("a dictionary with more keys than values, or fewer");
    std::vector<Dictionary::Entry> entries(values.count);
    for (std::size_t i = 0; i < values.count; ++i)
        if (!decodeKey(reader_.entry(keys, i), entries[i].first) || !decodeEntry(i, entries[i].second)) return false;
    value = Dictionary(std::move(entries));
    return true;
}

bool Decoder::decodeWrapped(Family family, std::size_t reference, std::optional<std::size_t> contents, Value& value) {
    BinaryObject object;
    if (!contents) return reader_.fail("an archived object lacks its contents");
    if (!reader_.read(*contents, object)) return false;
    // Contents stand in place or are archived objects themselves.
    if (object.kind == BinaryObject::Kind::uid) {
        if (!follow(*contents, contents)) return false;
        if (!contents) return reader_.fail("an archived object whose contents are nil");
        if (!reader_.read(*contents, object)) return false;
    }
    using enum BinaryObject::Kind;
    if (family == Family::date && (object.kind == real || object.kind == integer)) {
        value = Date{object.kind == real ? object.real : static_cast<double>(object.integer)};
        return expansion_.charge() && expansion_.keep(reference, 0, value);
    }
    if ((family == Family::text && object.isText()) || (family == Family::data && object.kind == data)) {
        // Writers of property lists share equal texts, so the contents may have been met before.
        const Expansion::State known = expansion_.recall(*contents, 0, value);
        if (known == Expansion::State::refused) return false;
        if (known == Expansion::State::fresh && !expansion_.buildLeaf(*contents, object, value)) return false;
        return expansion_.keep(reference, object.contentsSize, value);
    }
    return reader_.fail("an archived object whose contents are of another kind");
}

bool Decoder::decodeKey(std::size_t uid, std::string& key) {
    std::optional<std::size_t> reference;
    if (!follow(uid, reference)) return false;
    BinaryObject object;
    if (reference && !reader_.read(*reference, object)) return false;
    if (object.isText()) {
        if (!expansion_.charge(object.contentsSize) || !reader_.checkText(object)) return false;
        key = BinaryReader::text(object);
        return true;
    }

    // A key may also be a text object of its own.
    Value value;
    if (object.kind == BinaryObject::Kind::dictionary &&
        !decodeArchived(*reference, PropertyListLimits::depth + 1, value))
        return false;
    if (value.text() == nullptr) return reader_.fail("a dictionary key that is no text");
    key = *value.text();
    return true;
}

bool Decoder::readFields(const BinaryObject& instance, Fields& fields) {
    for (std::size_t i = 0; i < instance.count; ++i) {
        BinaryObject key;
        if (!reader_.read(reader_.key(instance, i), key)) return false;
        const std::size_t reference = reader_.value(instance, i);
        if (BinaryReader::equals(key, name::class_)) fields.class_ = reference;
        if (BinaryReader::equals(key, name::keys)) fields.keys = reference;
        if (BinaryReader::equals(key, name::values)) fields.values = reference;
        if (BinaryReader::equals(key, name::text)) fields.text = reference;
        if (BinaryReader::equals(key, name::data)) fields.data = reference;
        if (BinaryReader::equals(key, name::time)) fields.time = reference;
    }
    return true;
}

bool Decoder::readFamily(std::optional<std::size_t> classUid, Family& family) {
    std::optional<std::size_t> reference;
    if (!classUid) return reader_.fail("an archived object without a class");
    if (!follow(*classUid, reference)) return false;
    if (!reference) return reader_.fail("an archived object whose class is nil");
    BinaryObject object;
    if (!reader_.read(*reference, object)) return false;
    if (object.kind != BinaryObject::Kind::dictionary) return reader_.fail("a class that is no dictionary");
    std::optional<Family>& known = families_[*reference];
    if (!known) {
        known = Family::unknown;
        // The class itself is asked first, then those it derives from, nearest first.
        if (!expansion_.consume(object)) return false;
        BinaryObject bases;
        for (std::size_t i = 0; i < object.count; ++i) {
            BinaryObject key;
            if (!reader_.read(reader_.key(object, i), key)) return false;
            const std::size_t value = reader_.value(object, i);
            if (BinaryReader::equals(key, name::className) && !readFamilyName(value, *known)) return false;
            if (BinaryReader::equals(key, name::classes) && !readList(value, bases)) return false;
        }
        if (!expansion_.consume(bases)) return false;
        for (std::size_t i = 0; i < bases.count && *known == Family::unknown; ++i)
            if (!readFamilyName(reader_.entry(bases, i), *known)) return false;
    }
    family = *known;
    return true;
}

bool Decoder::readFamilyName(std::size_t reference, Family& family) {
    BinaryObject object;
    if (!reader_.read(reference, object)) return false;
    for (const ClassName& known : classNames)
        if (BinaryReader::equals(object, known.name)) family = known.family;
    return true;
}

bool Decoder::readList(std::optional<std::size_t> reference, BinaryObject& list) {
    if (!reference) return reader_.fail("an archived object lacks its contents");
    if (!reader_.read(*reference, list)) return false;
    return list.kind == BinaryObject::Kind::list || reader_.fail("a list was expected where there is none");
}

} // namespace

std::optional<Data> NSKeyedArchiver::archivedDataWithRootObject(const Value& root) {
    const auto flat = Flattening::of(root);
    if (!flat) return std::nullopt;
    return Encoder(flat.value()).encode();
}

Result<Value> NSKeyedUnarchiver::unarchive(const Data& archive, std::size_t* visits) {
    if (visits != nullptr) *visits = 0;
    auto reader = BinaryReader::open(archive);
    if (!reader) return Result<Value>::failure(reader.error());
    BinaryReader document = std::move(reader).value();
    Value value;
    const bool decoded = Decoder(document).decode(value);
    if (visits != nullptr) *visits = document.visits();
    return decoded ? Result<Value>(std::move(value)) : Result<Value>::failure(document.problem());
}

Value NSKeyedUnarchiver::unarchiveObjectWithData(const Data& archive) {
    auto value = unarchive(archive);
    return value ? std::move(value).value() : Value();
}

} // namespace platform
