#pragma once

#include "RawList.h"

#include <string>
#include <vector>

/// A keyed archive put together by hand, sound or not: archived objects are added in the order of their UIDs, from 1,
/// which is the root.
class RawArchive {
  public:
    /// A list with the archived objects of these UIDs.
    RawArchive& addList(std::vector<std::size_t> uids) {
        objects_.push_back({Kind::list, std::move(uids), {}});
        return *this;
    }
    /// A mutable text whose contents are the archived object of a UID, with so many fields that mean nothing.
    RawArchive& addWideText(std::size_t contents, std::size_t fields) {
        objects_.push_back({Kind::wideText, {contents, fields}, {}});
        return *this;
    }
    RawArchive& addText(std::string text) {
        objects_.push_back({Kind::text, {}, std::move(text)});
        return *this;
    }
    /// A dictionary of one entry, by the UIDs of its key and its value.
    RawArchive& addDictionary(std::size_t key, std::size_t value) {
        objects_.push_back({Kind::dictionary, {key, value}, {}});
        return *this;
    }
    /// A nil that is an object.
    RawArchive& addNull() {
        objects_.push_back({Kind::null, {}, {}});
        return *this;
    }
    /// What is no object at all.
    RawArchive& addRubbish() {
        objects_.push_back({Kind::rubbish, {}, {}});
        return *this;
    }

    [[nodiscard]] platform::Data bytes() const {
        enum : std::size_t {
            archive,
            archiverKey,
            archiver,
            topKey,
            top,
            rootKey,
            objectsKey,
            objectList,
            classKey,
            entriesKey,
            keysKey,
            textKey,
            listClass,
            textClass,
            dictionaryClass,
            nullClass,
            classNameKey,
            listClassName,
            textClassName,
            dictionaryClassName,
            nullClassName,
            null,
            firstFree
        };
        const std::size_t uidCount = objects_.size() + 5; // "$null", the objects, four classes
        const std::size_t firstUid = firstFree;
        const std::size_t firstObject = firstUid + uidCount;
        const std::size_t listClassUid = objects_.size() + 1;
        const std::size_t textClassUid = objects_.size() + 2;
        const std::size_t dictionaryClassUid = objects_.size() + 3;
        const std::size_t nullClassUid = objects_.size() + 4;

        RawList list(4);
        list.addDictionary({{archiverKey, archiver}, {topKey, top}, {objectsKey, objectList}});
        list.add("$archiver").add("NSKeyedArchiver").add("$top").addDictionary({{rootKey, firstUid + 1}}).add("root");
        list.add("$objects");
        std::vector<std::size_t> references{null};
        for (std::size_t i = 0; i < objects_.size(); ++i)
            references.push_back(firstObject + i);
        references.insert(references.end(), {listClass, textClass, dictionaryClass, nullClass});
        list.addList(references);
        list.add("$class").add("NS.objects").add("NS.keys").add("NS.string");
        for (const std::size_t name : {listClassName, textClassName, dictionaryClassName, nullClassName})
            list.addDictionary({{classNameKey, name}});
        list.add("$classname").add("NSArray").add("NSMutableString").add("NSDictionary").add("NSNull").add("$null");
        for (std::size_t uid = 0; uid < uidCount; ++uid)
            list.add({0x82, int(uid >> 16U) & 0xFF, int(uid >> 8U) & 0xFF, int(uid) & 0xFF});
        std::size_t next = firstObject + objects_.size();
        for (const Object& object : objects_) {
            if (object.kind == Kind::text) {
                list.add(object.text);
            } else if (object.kind == Kind::list) {
                list.addDictionary({{entriesKey, next++}, {classKey, firstUid + listClassUid}});
            } else if (object.kind == Kind::dictionary) {
                list.addDictionary(
                    {{keysKey, next}, {entriesKey, next + 1}, {classKey, firstUid + dictionaryClassUid}});
                next += 2;
            } else if (object.kind == Kind::null) {
                list.addDictionary({{classKey, firstUid + nullClassUid}});
            } else if (object.kind == Kind::rubbish) {
                list.add({0x0F});
            } else {
                std::vector<std::pair<std::size_t, std::size_t>> fields{{textKey, firstUid + object.uids[0]},
                                                                        {classKey, firstUid + textClassUid}};
                fields.resize(2 + object.uids[1], {rootKey, null});
                list.addDictionary(fields);
            }
        }
        for (const Object& object : objects_) {
            if (object.kind == Kind::dictionary)
                list.addList({firstUid + object.uids[0]}).addList({firstUid + object.uids[1]});
            if (object.kind != Kind::list) continue;
            std::vector<std::size_t> entries;
            for (const std::size_t uid : object.uids)
                entries.push_back(firstUid + uid);
            list.addList(entries);
        }
        return list.bytes();
    }

  private:
    enum class Kind : std::uint8_t { list, text, wideText, dictionary, null, rubbish };
    struct Object {
        Kind kind;
        std::vector<std::size_t> uids;
        std::string text;
    };
    std::vector<Object> objects_;
};
