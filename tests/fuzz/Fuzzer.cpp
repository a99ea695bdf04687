// libFuzzer's entry points. --target=NAME chooses what is fuzzed; --seeds=FOLDER writes the seeds there and ends;
// --list names the targets.
#include "tests/fuzz/Fuzz.h"

#include <fstream>

namespace {

FuzzTarget g_target;

int Seed(const std::string& folder) {
    int number = 0;
    for (const FuzzBytes& seed : g_target.seeds()) {
        std::ofstream(folder + "/seed" + std::to_string(++number), std::ios::binary)
            .write(reinterpret_cast<const char*>(seed.data()), std::streamsize(seed.size()));
    }
    return 0;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    for (const std::string argument : std::span(*arguments, std::size_t(*count))) {
        for (const FuzzTarget& target : FuzzTargets()) {
            if (argument == "--list") {
                std::puts(target.name);
            } else if (argument == std::string("--target=") + target.name) {
                g_target = target;
            }
        }
        if (argument == "--list" || argument.starts_with("--seeds=")) {
            std::exit(argument == "--list" ? 0 : Seed(argument.substr(8)));
        }
    }
    Require(g_target.run, "--target names one of --list");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    g_target.run({bytes, size});
    return 0;
}
