// The targets under the fuzzer: kigumi_fuzz --target=NAME and the fuzzer's own options.
#include "target.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

// The fuzzer passes nothing but its input.
const kigumi::fuzz::Target* chosen = nullptr;
std::unique_ptr<kigumi::Project> project;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    constexpr std::string_view option = "--target="; // the fuzzer passes over two dashes
    for (int i = 1; i < *argc; ++i) {
        const std::string_view word = (*argv)[i];
        if (word.starts_with(option)) {
            chosen = kigumi::fuzz::find_target(word.substr(option.size()));
        }
    }
    if (chosen == nullptr) {
        for (const kigumi::fuzz::Target& target : kigumi::fuzz::all_targets()) {
            std::printf("%s\n", target.name);
        }
        std::exit(*argc == 1 ? 0 : 2);
    }
    project = std::make_unique<kigumi::Project>();
    kigumi::fuzz::start_targets(*project);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    chosen->run(*project, {reinterpret_cast<const char*>(data), size});
    return 0;
}
