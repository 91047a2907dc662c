#pragma once

#include "platform/foundation/Value.h"

#include <array>
#include <random>

/// Makes values of every kind and shape. NaN is left out, since it equals nothing.
class RandomValue {
  public:
    explicit RandomValue(unsigned seed = std::random_device{}()) : seed_(seed), random_(seed) {}

    [[nodiscard]] unsigned seed() const { return seed_; }
    platform::Value next(int depth = 4, bool nilAllowed = true) {
        switch (below(depth > 0 ? 12 : 8)) {
        case 0:
            return nilAllowed ? platform::Value() : platform::Value("no nil");
        case 1:
            return below(2) == 0;
        case 2:
            return static_cast<std::int64_t>(random_() >> below(64));
        case 3:
            return -static_cast<std::int64_t>(random_() >> (1 + below(63)));
        case 4:
            return static_cast<double>(random_()) / static_cast<double>(1 + below(1000));
        case 5:
            return text();
        case 6: {
            platform::Data data(below(40));
            for (std::uint8_t& byte : data)
                byte = static_cast<std::uint8_t>(below(256));
            return data;
        }
        case 7:
            return platform::Date{static_cast<double>(below(1'000'000'000)) / 4 - 1e8};
        case 8:
        case 9: {
            platform::List list(below(20));
            for (platform::Value& entry : list)
                entry = next(depth - 1, nilAllowed);
            return list;
        }
        default: {
            platform::Dictionary dictionary;
            for (std::size_t i = below(20); i > 0; --i)
                dictionary.set(text(), next(depth - 1, nilAllowed));
            return dictionary;
        }
        }
    }

  private:
    std::size_t below(std::size_t bound) { return random_() % bound; }
    std::string text() {
        using namespace std::string_view_literals;
        constexpr std::array pieces{"a"sv,  "Key"sv, "com.example."sv, "\0"sv, "\n\""sv, "ü"sv,
                                    "語"sv, "😀"sv,   "$null"sv};
        std::string text;
        for (std::size_t i = below(below(10) == 0 ? 40 : 4); i > 0; --i)
            text += pieces[below(pieces.size())];
        return text;
    }

    unsigned seed_;
    std::mt19937_64 random_;
};
