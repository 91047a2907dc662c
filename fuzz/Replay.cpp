// Stands for libFuzzer in the tests: gives a fuzzer each file of a folder of seeds.
//
//     BundleSeeds fuzz/seeds/Bundle

#include "Fuzzer.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

int main(int count, char** arguments) {
    if (count != 2) return 2;
    int seeds = 0;
    for (const auto& seed : std::filesystem::directory_iterator(arguments[1])) {
        std::cout << seed.path().filename() << std::endl; // before it is read, for it may end the process
        std::ifstream file(seed.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++seeds;
    }
    std::cout << fuzzing::taken << " of " << seeds << " seeds were taken\n";
    return fuzzing::taken > 0 && seeds > fuzzing::taken ? 0 : 1;
}
