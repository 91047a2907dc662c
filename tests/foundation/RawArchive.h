#pragma once

#include "RawList.h"

#include <algorithm>
#include <string>
#include <vector>

/// A keyed archive put together by hand, sound or not: archived objects are added in the order of their UIDs, from 1,
/// which is the root.
class RawArchive {
  public:
    /// A list with the archived objects of these UIDs.
    RawArchive& addList(std::vector<std::size_t> uids) { return add({.kind = Kind::list, .lists = {std::move(uids)}}); }
    /// A mutable text whose contents are the archived object of a UID, with so many fields that mean nothing.
    RawArchive& addWideText(std::size_t contents, std::size_t fields) {
        return add({.kind = Kind::wideText, .contents = contents, .idleFields = fields});
    }
    RawArchive& addText(std::string text) { return add({.kind = Kind::text, .text = std::move(text)}); }
    /// A dictionary of one entry, by the UIDs of its key and its value.
    RawArchive& addDictionary(std::size_t key, std::size_t value) {
        return add({.kind = Kind::dictionary, .lists = {{key}, {value}}});
    }
    /// A nil that is an object.
    RawArchive& addNull() { return add({.kind = Kind::null}); }
    /// What is no object at all.
    RawArchive& addRubbish() { return add({.kind = Kind::rubbish}); }

    [[nodiscard]] platform::Data bytes() const {
        static const std::vector<std::string_view> names{
            "$archiver",       "NSKeyedArchiver", "$top",    "$objects",  "root",       "$null",
            "$class",          "NS.objects",      "NS.keys", "NS.string", "$classname", "NSArray",
            "NSMutableString", "NSDictionary",    "NSNull"};
        const auto name = [](std::string_view text) {
            return 1 + static_cast<std::size_t>(std::ranges::find(names, text) - names.begin());
        };
        const std::size_t classKey = name("$class"), entriesKey = name("NS.objects"), null = name("$null");
        const std::size_t top = 1 + names.size();
        const std::size_t objectList = top + 1;
        const std::size_t firstClass = objectList + 1;
        const std::size_t firstUid = firstClass + 4;
        const std::size_t uidCount = 1 + objects_.size() + 4;
        const std::size_t firstObject = firstUid + uidCount;

        RawList list(4);
        list.addDictionary(
            {{name("$archiver"), name("NSKeyedArchiver")}, {name("$top"), top}, {name("$objects"), objectList}});
        for (const std::string_view text : names)
            list.add(text);
        list.addDictionary({{name("root"), firstUid + 1}});
        std::vector<std::size_t> references{null};
        for (std::size_t i = 0; i < objects_.size(); ++i)
            references.push_back(firstObject + i);
        references.insert(references.end(), {firstClass, firstClass + 1, firstClass + 2, firstClass + 3});
        list.addList(references);
        for (const char* className : {"NSArray", "NSMutableString", "NSDictionary", "NSNull"})
            list.addDictionary({{name("$classname"), name(className)}});
        for (std::size_t uid = 0; uid < uidCount; ++uid)
            list.add({0x82, int(uid >> 16U) & 0xFF, int(uid >> 8U) & 0xFF, int(uid) & 0xFF});
        std::size_t next = firstObject + objects_.size(); // the lists come behind all objects
        for (const Object& object : objects_) {
            std::vector<std::pair<std::size_t, std::size_t>> fields;
            if (object.lists.size() == 2) fields.emplace_back(name("NS.keys"), next++);
            if (!object.lists.empty()) fields.emplace_back(entriesKey, next++);
            if (object.kind == Kind::wideText) fields.emplace_back(name("NS.string"), firstUid + object.contents);
            fields.emplace_back(classKey, firstUid + 1 + objects_.size() + static_cast<std::size_t>(object.kind));
            fields.resize(fields.size() + object.idleFields, {name("root"), null});
            if (object.kind == Kind::text)
                list.add(object.text);
            else if (object.kind == Kind::rubbish)
                list.add({0x0F});
            else
                list.addDictionary(fields);
        }
        for (const Object& object : objects_) {
            for (std::vector<std::size_t> entries : object.lists) {
                for (std::size_t& entry : entries)
                    entry += firstUid;
                list.addList(entries);
            }
        }
        return list.bytes();
    }

  private:
    enum class Kind : std::uint8_t { list, wideText, dictionary, null, text, rubbish }; ///< first those with a class
    struct Object {
        Kind kind;
        std::vector<std::vector<std::size_t>> lists{}; ///< UIDs: of keys, if it has any, and of entries
        std::size_t contents = 0, idleFields = 0;
        std::string text{};
    };
    RawArchive& add(Object object) {
        objects_.push_back(std::move(object));
        return *this;
    }
    std::vector<Object> objects_;
};
