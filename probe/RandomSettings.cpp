#include "probe/RandomSettings.h"

#include <cstdint>
#include <limits>
#include <random>

namespace lumora {

using namespace platform;

namespace {

class Dice {
  public:
    explicit Dice(unsigned number) : random_(number) {}

    /// Below that number.
    std::size_t throwOf(std::size_t sides) { return random_() % sides; }

    Value value(int depth) {
        const std::vector<Value> some{true,
                                      false,
                                      0,
                                      -1,
                                      std::int64_t(throwOf(1000)),
                                      std::numeric_limits<std::int64_t>::max(),
                                      std::numeric_limits<std::int64_t>::min(),
                                      0.5,
                                      -1e300,
                                      std::numeric_limits<double>::quiet_NaN(),
                                      std::numeric_limits<double>::infinity(),
                                      "",
                                      "small",
                                      "%s%n",
                                      "Žluťoučký 🦜",
                                      std::string(5000, 'x'),
                                      std::string("a\0b", 3),
                                      Data{},
                                      Data{0, 255, 1},
                                      Date{double(throwOf(1U << 30U))}};
        const std::size_t which = throwOf(some.size() + (depth > 0 ? 2 : 0));
        if (which < some.size()) return some[which];
        return which == some.size() ? Value(List{value(depth - 1), value(depth - 1)})
                                    : Value(Dictionary{{"key", value(depth - 1)}});
    }

  private:
    std::mt19937 random_;
};

} // namespace

Dictionary randomSettings(const std::vector<std::string>& keys, unsigned number) {
    Dice dice(number);
    Dictionary settings;
    if (number % 2 == 0) settings.set(keys[number / 2 % keys.size()], dice.value(2));
    for (const std::string& key : keys)
        if (number % 2 != 0 && dice.throwOf(4) > 0) settings.set(key, dice.value(2));
    return settings;
}

} // namespace lumora
