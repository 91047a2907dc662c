#include "platform/foundation/PropertyList.h"

#include "BinaryReader.h"
#include "BinaryWriter.h"
#include "Expansion.h"
#include "Flattening.h"
#include "XmlPropertyList.h"

#include <cstring>

namespace platform {

namespace {

/// Builds the value that a plain binary property list stands for.
class Decoder {
  public:
    explicit Decoder(BinaryReader& reader) : reader_(reader), expansion_(reader) {}

    bool decode(Value& value) { return decode(reader_.root(), 1, value); }

  private:
    bool decode(std::size_t reference, unsigned depth, Value& value);
    bool decodeList(const BinaryObject& object, unsigned depth, Value& value);
    bool decodeDictionary(const BinaryObject& object, unsigned depth, Value& value);

    BinaryReader& reader_;
    Expansion expansion_;
};

bool Decoder::decode(std::size_t reference, unsigned depth, Value& value) {
    const Expansion::State known = expansion_.recall(reference, depth, value);
    if (known != Expansion::State::fresh) return known == Expansion::State::shared;
    BinaryObject object;
    if (!reader_.read(reference, object)) return false;

    using enum BinaryObject::Kind;
    switch (object.kind) {
    case list:
    case dictionary: {
        Expansion::Opened opened{};
        if (!expansion_.consume(object) || !expansion_.open(reference, depth, opened)) return false;
        if (!(object.kind == list ? decodeList(object, depth, value) : decodeDictionary(object, depth, value)))
            return false;
        expansion_.close(reference, depth, opened, value);
        return true;
    }
    case null:
        return reader_.fail("nil inside a property list");
    case uid:
        return reader_.fail("a UID outside a keyed archive");
    default:
        return expansion_.buildLeaf(reference, object, value);
    }
}

bool Decoder::decodeList(const BinaryObject& object, unsigned depth, Value& value) {
    List list(object.count);
    for (std::size_t i = 0; i < object.count; ++i)
        if (!decode(reader_.entry(object, i), depth + 1, list[i])) return false;
    value = std::move(list);
    return true;
}

bool Decoder::decodeDictionary(const BinaryObject& object, unsigned depth, Value& value) {
    std::vector<Dictionary::Entry> entries(object.count);
    for (std::size_t i = 0; i < object.count; ++i) {
        BinaryObject key;
        if (!reader_.read(reader_.key(object, i), key)) return false;
        if (!key.isText()) return reader_.fail("a dictionary key that is no text");
        if (!expansion_.charge(key.contentsSize) || !reader_.checkText(key)) return false;
        entries[i].first = BinaryReader::text(key);
        if (!decode(reader_.value(object, i), depth + 1, entries[i].second)) return false;
    }
    value = Dictionary(std::move(entries));
    return true;
}

} // namespace

Result<Value> readPropertyList(const Data& bytes, std::size_t* visits) {
    constexpr std::string_view binaryMagic = "bplist";
    const std::string_view characters(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (characters.starts_with(binaryMagic)) return decodeBinary<Decoder>(bytes, visits);
    if (visits != nullptr) *visits = 0;
    return readXmlPropertyList(characters);
}

Result<Data> writePropertyList(const Value& value) {
    const auto flattened = Flattening::of(value);
    if (!flattened) return Result<Data>::failure(flattened.error());
    const Flattening& flat = flattened.value();
    if (flat.holdsNil()) return Result<Data>::failure("nil inside a property list");

    BinaryWriter writer(flat.objects().size(), flat.contentsSize() + 16 * flat.objects().size());
    for (std::size_t number = 0; number < flat.objects().size(); ++number) {
        const Flattening::Object& object = flat.objects()[number];
        std::size_t references = 0;
        if (object.text) {
            writer.text(number, *object.text);
        } else if (object.value->kind() == Value::Kind::list) {
            writer.list(number, object.count);
            references = object.count;
        } else if (object.value->kind() == Value::Kind::dictionary) {
            writer.dictionary(number, object.count);
            references = 2 * std::size_t{object.count};
        } else {
            writer.scalar(number, *object.value);
        }
        for (std::size_t i = 0; i < references; ++i)
            writer.reference(flat.reference(object.firstReference + i));
    }
    return std::move(writer).finish();
}

} // namespace platform
