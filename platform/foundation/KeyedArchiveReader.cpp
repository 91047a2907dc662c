#include "platform/foundation/NSKeyedArchiver.h"

#include "BinaryReader.h"
#include "Expansion.h"
#include "KeyedArchiveFormat.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

/// Reads one archive.
class KeyedArchiveReader {
  public:
    explicit KeyedArchiveReader(BinaryReader& reader)
        : reader_(reader), expansion_(reader), families_(reader.objectCount()) {}

    bool decode(Value& value);

  private:
    /// The fields of an archived object that mean something to us.
    struct Fields {
        std::optional<std::size_t> class_, keys, values, text, data, time;
    };

    // Where a list of a thousand texts is read, a call for each step of each text is half of the time.
    [[gnu::always_inline]] bool decodeArchived(std::size_t reference, unsigned depth, Value& value) {
        if (reference == nil) return expansion_.charge();
        const Expansion::State known = expansion_.recall(reference, depth, value);
        if (known != Expansion::State::fresh) return known == Expansion::State::shared;
        BinaryObject object;
        if (!reader_.read(reference, object)) return false;
        if (Expansion::isShortText(object)) return expansion_.buildShortText(reference, object, value);
        return decodeFresh(reference, object, depth, value);
    }
    /// Calls back with the number of each entry of a list and the object that its UID names, until that fails. A few are
    /// followed at a time: following takes reads that wait for each other, but not for those of the next entry.
    template<class Decode>
    bool forEach(const BinaryObject& list, const Decode& decode) {
        std::array<std::size_t, 16> references;
        for (std::size_t first = 0; first < list.count; first += references.size()) {
            const std::size_t count = std::min(references.size(), list.count - first);
            for (std::size_t i = 0; i < count; ++i)
                if (!follow(reader_.entry(list, first + i), references[i])) return false;
            for (std::size_t i = 0; i < count; ++i)
                if (!decode(first + i, references[i])) return false;
        }
        return true;
    }
    bool decodeFresh(std::size_t reference, const BinaryObject& object, unsigned depth, Value& value);
    bool decodeInstance(std::size_t reference, const BinaryObject& instance, unsigned depth, Value& value);
    bool decodeContainer(Family family, const Fields& fields, unsigned depth, Value& value);
    /// A text, data or date that is an object with a class.
    bool decodeWrapped(Family family, std::size_t reference, std::optional<std::size_t> contents, Value& value);
    bool decodeKey(std::size_t reference, std::string& key);

    bool readFields(const BinaryObject& instance, Fields& fields);
    bool readFamily(std::optional<std::size_t> classUid, Family& family);
    bool readFamilyName(std::size_t reference, Family& family);
    bool readList(std::optional<std::size_t> reference, BinaryObject& list);
    /// Follows a UID to the object it names within `$objects`; `nil` when it names nil.
    [[gnu::always_inline]] bool follow(std::size_t uid, std::size_t& reference) {
        std::size_t index = 0;
        if (!reader_.readUid(uid, index)) return false;
        if (index >= objects_.count) return reader_.fail("a UID beyond $objects");
        reference = index > 0 ? std::min(reader_.entry(objects_, index), nil - 1) : nil;
        return true;
    }
    static constexpr auto nil = static_cast<std::size_t>(-1);

    BinaryReader& reader_;
    Expansion expansion_;
    BinaryObject objects_;                        ///< `$objects`
    std::vector<std::optional<Family>> families_; ///< of class objects already read, by reference
};

bool KeyedArchiveReader::decode(Value& value) {
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
        std::size_t root = nil;
        if (!follow(reader_.value(roots, i), root)) return false;
        return root == nil || decodeArchived(root, 1, value);
    }
    return reader_.fail("there is no root object");
}

bool KeyedArchiveReader::decodeFresh(std::size_t reference, const BinaryObject& object, unsigned depth, Value& value) {
    using enum BinaryObject::Kind;
    switch (object.kind) {
    case null:
        return expansion_.charge();
    case dictionary:
        return decodeInstance(reference, object, depth, value);
    case list:
    case uid:
        return reader_.fail("an archived object without a class");
    default:
        return expansion_.buildLeaf(reference, object, value);
    }
}

bool KeyedArchiveReader::decodeInstance(std::size_t reference, const BinaryObject& instance, unsigned depth,
                                        Value& value) {
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

bool KeyedArchiveReader::decodeContainer(Family family, const Fields& fields, unsigned depth, Value& value) {
    BinaryObject keys;
    BinaryObject values;
    if (family == Family::dictionary && !readList(fields.keys, keys)) return false;
    if (!readList(fields.values, values)) return false;
    if (!expansion_.consume(keys) || !expansion_.consume(values)) return false;

    if (family == Family::list) {
        List list(values.count);
        const auto decodeEntry = [&](std::size_t i, std::size_t reference) {
            return decodeArchived(reference, depth + 1, list[i]);
        };
        if (!forEach(values, decodeEntry)) return false;
        value = std::move(list);
        return true;
    }
    if (keys.count != values.count) return reader_.fail("a dictionary with more keys than values, or fewer");
    std::vector<Dictionary::Entry> entries(values.count);
    const auto decodeKeyOf = [&](std::size_t i, std::size_t reference) {
        return decodeKey(reference, entries[i].first);
    };
    const auto decodeValueOf = [&](std::size_t i, std::size_t reference) {
        return decodeArchived(reference, depth + 1, entries[i].second);
    };
    if (!forEach(keys, decodeKeyOf) || !forEach(values, decodeValueOf)) return false;
    value = Dictionary(std::move(entries));
    return true;
}

bool KeyedArchiveReader::decodeWrapped(Family family, std::size_t reference, std::optional<std::size_t> contents,
                                       Value& value) {
    BinaryObject object;
    if (!contents) return reader_.fail("an archived object lacks its contents");
    if (!reader_.read(*contents, object)) return false;
    // Contents stand in place or are archived objects themselves.
    if (object.kind == BinaryObject::Kind::uid) {
        if (!follow(*contents, *contents)) return false;
        if (*contents == nil) return reader_.fail("an archived object whose contents are nil");
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

bool KeyedArchiveReader::decodeKey(std::size_t reference, std::string& key) {
    BinaryObject object;
    if (reference != nil && !reader_.read(reference, object)) return false;
    if (object.isText()) {
        if (!expansion_.charge(object.contentsSize) || !reader_.checkText(object)) return false;
        key = BinaryReader::text(object);
        return true;
    }

    // A key may also be a text object of its own.
    Value value;
    if (object.kind == BinaryObject::Kind::dictionary &&
        !decodeArchived(reference, PropertyListLimits::depth + 1, value))
        return false;
    if (value.text() == nullptr) return reader_.fail("a dictionary key that is no text");
    key = *value.text();
    return true;
}

bool KeyedArchiveReader::readFields(const BinaryObject& instance, Fields& fields) {
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

bool KeyedArchiveReader::readFamily(std::optional<std::size_t> classUid, Family& family) {
    std::size_t reference = nil;
    if (!classUid) return reader_.fail("an archived object without a class");
    if (!follow(*classUid, reference)) return false;
    if (reference == nil) return reader_.fail("an archived object whose class is nil");
    BinaryObject object;
    if (!reader_.read(reference, object)) return false;
    if (object.kind != BinaryObject::Kind::dictionary) return reader_.fail("a class that is no dictionary");
    std::optional<Family>& known = families_[reference];
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

bool KeyedArchiveReader::readFamilyName(std::size_t reference, Family& family) {
    BinaryObject object;
    if (!reader_.read(reference, object)) return false;
    for (const ClassName& known : classNames)
        if (BinaryReader::equals(object, known.name)) family = known.family;
    return true;
}

bool KeyedArchiveReader::readList(std::optional<std::size_t> reference, BinaryObject& list) {
    if (!reference) return reader_.fail("an archived object lacks its contents");
    if (!reader_.read(*reference, list)) return false;
    return list.kind == BinaryObject::Kind::list || reader_.fail("a list was expected where there is none");
}

} // namespace

Result<Value> NSKeyedUnarchiver::unarchive(const Data& archive, std::size_t* visits) {
    return decodeBinary<KeyedArchiveReader>(archive, visits);
}

Value NSKeyedUnarchiver::unarchiveObjectWithData(const Data& archive) {
    auto value = unarchive(archive);
    return value ? std::move(value).value() : Value();
}

} // namespace platform
