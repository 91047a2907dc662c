// Stands for libFuzzer in the tests: gives a fuzzer each file of folders of seeds.
//
//     BundleSeeds fuzz/seeds/Bundle build/release/fuzz/seeds/Bundle

#include "Fuzzer.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <vector>

int main(int count, char** arguments) {
    int seeds = 0;
    for (const char* folder : std::span(arguments, arguments + count).subspan(1)) {
        for (const auto& seed : std::filesystem::directory_iterator(folder)) {
            std::cout << seed.path().filename() << std::endl; // before it is read, for it may end the process
            std::ifstream file(seed.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++seeds;
        }
    }
    std::cout << fuzz::taken << " of " << seeds << " seeds were taken\n";
    return fuzz::taken > 0 && seeds > fuzz::taken ? 0 : 1;
}
