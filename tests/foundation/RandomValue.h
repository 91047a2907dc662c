#pragma once

#include "platform/foundation/Value.h"

#include <array>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>
#include <random>

/// Makes values of every kind and shape, those at the edges of each kind more often than chance would. NaN is left out,
/// since it equals nothing.
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
            return below(4) == 0 ? edge<std::int64_t>() : -static_cast<std::int64_t>(random_() >> (1 + below(63)));
        case 4:
            return real();
        case 5:
            return text();
        case 6: {
            platform::Data data(below(40));
            for (std::uint8_t& byte : data)
                byte = static_cast<std::uint8_t>(below(256));
            return data;
        }
        case 7:
            return platform::Date{below(4) == 0 ? real() : static_cast<double>(below(1'000'000'000)) / 4 - 1e8};
        case 8:
        case 9: {
            platform::List list;
            for (std::size_t i = below(20); i > 0; --i) {
                // Now and then an entry is one of those before, shared.
                const bool shared = !list.empty() && below(8) == 0;
                platform::Value entry = shared ? list[below(list.size())] : next(depth - 1, nilAllowed);
                list.push_back(std::move(entry));
            }
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
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(random_() % bound); }
    template<class Number>
    Number edge() {
        using Limits = std::numeric_limits<Number>;
        const Number edges[] = {
            0, 1, -1, 127, 128, 255, 256, 65535, 65536, Limits::max(), Limits::lowest(), Limits::min()};
        return edges[below(std::size(edges))];
    }
    double real() {
        using Limits = std::numeric_limits<double>;
        const double random = std::bit_cast<double>(random_()); // of any size
        const double choices[] = {static_cast<double>(random_()) / static_cast<double>(1 + below(1000)),
                                  static_cast<double>(below(1000)),
                                  edge<double>(),
                                  std::isnan(random) ? 0.1 : random,
                                  below(2) == 0 ? -0.0 : 0.0,
                                  std::ldexp(static_cast<double>(below(100)), -1074), // subnormal
                                  below(2) == 0 ? -Limits::infinity() : Limits::infinity()};
        return choices[below(std::size(choices))];
    }
    std::string text() {
        using namespace std::string_view_literals;
        constexpr std::array pieces{
            "a"sv,  "Key"sv, "com.example."sv, "\0"sv,         "\n\""sv,         "ü"sv, "u\u0308"sv,
            "語"sv, "😀"sv,   "$null"sv,        "\U0010FFFF"sv, "\uFEFF\uFFFF"sv, " "sv};
        std::string text;
        for (std::size_t i = below(below(10) == 0 ? 40 : 4); i > 0; --i)
            text += pieces[below(pieces.size())];
        // Counts that need one byte more than those below them.
        if (below(30) == 0) text.insert(0, (below(2) == 0 ? 13 : 254) + below(4), 'x');
        return text;
    }

    unsigned seed_;
    std::mt19937_64 random_;
};
