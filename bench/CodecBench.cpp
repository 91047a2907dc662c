// Keyed archives of a settings dictionary, against libplist's tree, writer and parser on the same archive.

#include "platform/foundation/NSKeyedArchiver.h"

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace {

using platform::Data;
using platform::Dictionary;
using platform::List;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Value;

/// Sixty keys of the kinds that the pages have, two of them lists of 200 application identifiers.
Value settings() {
    Dictionary settings;
    for (int i = 0; i < 29; ++i) {
        settings.set("kSwitchNumber" + std::to_string(i) + "Enabled", i % 3 == 0);
        if (i % 2 == 0)
            settings.set("kSliderNumber" + std::to_string(i), i * 7);
        else
            settings.set("kSliderNumber" + std::to_string(i), i / 29.0);
    }
    for (const char* key : {"kAppsEnabled", "kAUAppsDisabled"}) {
        List applications;
        for (int i = 0; i < 200; ++i)
            applications.emplace_back("org.example." + std::string(key) + ".application" + std::to_string(i));
        settings.set(key, std::move(applications));
    }
    return settings;
}

using Node = std::unique_ptr<void, decltype(&plist_free)>;

/// The same archive as a tree of libplist's.
class TreeArchiver {
  public:
    static Node archive(const Value& root) {
        TreeArchiver archiver;
        plist_array_append_item(archiver.objects_, plist_new_string("$null"));
        plist_t top = plist_new_dict();
        plist_dict_set_item(top, "root", plist_new_uid(archiver.add(root)));
        plist_t archive = plist_new_dict();
        plist_dict_set_item(archive, "$version", plist_new_uint(100000));
        plist_dict_set_item(archive, "$archiver", plist_new_string("NSKeyedArchiver"));
        plist_dict_set_item(archive, "$top", top);
        plist_dict_set_item(archive, "$objects", archiver.objects_);
        return {archive, &plist_free};
    }

  private:
    std::uint64_t append(plist_t node) {
        plist_array_append_item(objects_, node);
        return count_++;
    }

    std::uint64_t addText(std::string_view text) {
        const auto [known, added] = texts_.try_emplace(text, count_);
        if (added) append(plist_new_string(std::string(text).c_str()));
        return known->second;
    }

    std::uint64_t addClass(const char* name) {
        const auto [known, added] = classes_.try_emplace(name, 0);
        if (added) {
            plist_t bases = plist_new_array();
            plist_array_append_item(bases, plist_new_string(name));
            plist_array_append_item(bases, plist_new_string("NSObject"));
            plist_t description = plist_new_dict();
            plist_dict_set_item(description, "$classname", plist_new_string(name));
            plist_dict_set_item(description, "$classes", bases);
            known->second = append(description);
        }
        return known->second;
    }

    std::uint64_t add(const Value& value) {
        switch (value.kind()) {
        case Value::Kind::boolean:
            return append(plist_new_bool(*value.boolean() ? 1 : 0));
        case Value::Kind::integer:
            return append(plist_new_uint(static_cast<std::uint64_t>(*value.integer())));
        case Value::Kind::real:
            return append(plist_new_real(*value.real()));
        case Value::Kind::text:
            return addText(*value.text());
        case Value::Kind::list: {
            plist_t instance = plist_new_dict();
            const std::uint64_t uid = append(instance);
            plist_t entries = plist_new_array();
            for (const Value& entry : *value.list())
                plist_array_append_item(entries, plist_new_uid(add(entry)));
            plist_dict_set_item(instance, "NS.objects", entries);
            plist_dict_set_item(instance, "$class", plist_new_uid(addClass("NSArray")));
            return uid;
        }
        case Value::Kind::dictionary: {
            plist_t instance = plist_new_dict();
            const std::uint64_t uid = append(instance);
            plist_t keys = plist_new_array();
            plist_t entries = plist_new_array();
            for (const auto& [key, entry] : *value.dictionary()) {
                plist_array_append_item(keys, plist_new_uid(addText(key)));
                plist_array_append_item(entries, plist_new_uid(add(entry)));
            }
            plist_dict_set_item(instance, "NS.keys", keys);
            plist_dict_set_item(instance, "NS.objects", entries);
            plist_dict_set_item(instance, "$class", plist_new_uid(addClass("NSDictionary")));
            return uid;
        }
        default:
            return 0; // the settings hold no other kinds
        }
    }

    plist_t objects_ = plist_new_array();
    std::uint64_t count_ = 1;
    std::unordered_map<std::string_view, std::uint64_t> texts_; ///< of the value, which outlives the archiver
    std::unordered_map<std::string, std::uint64_t> classes_;
};

Data libplistBytes(const Value& value) {
    const Node tree = TreeArchiver::archive(value);
    char* bytes = nullptr;
    std::uint32_t size = 0;
    plist_to_bin(tree.get(), &bytes, &size);
    Data data(bytes, bytes + size);
    plist_mem_free(bytes);
    return data;
}

Node parsedByLibplist(const Data& archive) {
    plist_t tree = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(archive.data()), static_cast<std::uint32_t>(archive.size()), &tree);
    return {tree, &plist_free};
}

/// The settings that such a tree stands for, as a tree of their own: what the archive's reader is after.
class TreeUnarchiver {
  public:
    static Node unarchive(plist_t archive) {
        const TreeUnarchiver reader(plist_dict_get_item(archive, "$objects"));
        return {reader.settingsOf(plist_dict_get_item(plist_dict_get_item(archive, "$top"), "root")), &plist_free};
    }

  private:
    explicit TreeUnarchiver(plist_t objects) : objects_(objects) {}

    [[nodiscard]] plist_t follow(plist_t reference) const {
        std::uint64_t uid = 0;
        plist_get_uid_val(reference, &uid);
        return plist_array_get_item(objects_, static_cast<std::uint32_t>(uid));
    }

    // Recursion is as deep as the archive, which is our own.
    [[nodiscard]] plist_t settingsOf(plist_t reference) const { // NOLINT(misc-no-recursion)
        plist_t object = follow(reference);
        if (plist_get_node_type(object) != PLIST_DICT) return plist_copy(object);
        plist_t keys = plist_dict_get_item(object, "NS.keys");
        plist_t entries = plist_dict_get_item(object, "NS.objects");
        plist_t contents = keys != nullptr ? plist_new_dict() : plist_new_array();
        for (std::uint32_t i = 0; i < plist_array_get_size(entries); ++i) {
            plist_t entry = settingsOf(plist_array_get_item(entries, i));
            if (keys != nullptr)
                plist_dict_set_item(contents, plist_get_string_ptr(follow(plist_array_get_item(keys, i)), nullptr),
                                    entry);
            else
                plist_array_append_item(contents, entry);
        }
        return contents;
    }

    plist_t objects_;
};

void EncodeSettings(benchmark::State& state) {
    const Value value = settings();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(NSKeyedArchiver::archivedDataWithRootObject(value));
    state.counters["bytes"] = static_cast<double>(NSKeyedArchiver::archivedDataWithRootObject(value)->size());
}
BENCHMARK(EncodeSettings);

void EncodeSettingsLibplist(benchmark::State& state) {
    const Value value = settings();
    if (NSKeyedUnarchiver::unarchiveObjectWithData(libplistBytes(value)) != value)
        state.SkipWithError("libplist's archive is another one");
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(libplistBytes(value));
    state.counters["bytes"] = static_cast<double>(libplistBytes(value).size());
}
BENCHMARK(EncodeSettingsLibplist);

void DecodeSettings(benchmark::State& state) {
    const Data archive = *NSKeyedArchiver::archivedDataWithRootObject(settings());
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(NSKeyedUnarchiver::unarchiveObjectWithData(archive));
}
BENCHMARK(DecodeSettings);

/// From the bytes to the settings, as the one above; parsing alone gives a tree of UIDs that nobody can read a value
/// from.
void DecodeSettingsLibplist(benchmark::State& state) {
    const Data archive = *NSKeyedArchiver::archivedDataWithRootObject(settings());
    for ([[maybe_unused]] auto _ : state) {
        const Node tree = parsedByLibplist(archive);
        const Node settings = TreeUnarchiver::unarchive(tree.get());
        if (plist_dict_get_size(settings.get()) != 60) state.SkipWithError("libplist read other settings");
    }
}
BENCHMARK(DecodeSettingsLibplist);

/// How far libplist gets with parsing alone: a stricter peer, told beside the other.
void ParseSettingsLibplist(benchmark::State& state) {
    const Data archive = *NSKeyedArchiver::archivedDataWithRootObject(settings());
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(parsedByLibplist(archive));
}
BENCHMARK(ParseSettingsLibplist);

} // namespace

BENCHMARK_MAIN();
