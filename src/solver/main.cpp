#include "solver/options.h"
#include "solver/run.h"

#include <iostream>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

// A run makes and drops tables of megabytes. Kept by the process instead of going back to the
// system each time, their pages are cleared once: a tenth of the time of a small frame.
void keep_freed_memory() {
#if defined(__GLIBC__)
    constexpr int whole_range = 1 << 30; // bytes
    mallopt(M_MMAP_THRESHOLD, whole_range);
    mallopt(M_TRIM_THRESHOLD, whole_range);
    mallopt(M_TOP_PAD, 1 << 22);
#endif
}

} // namespace

int main(int count, char** arguments) {
    keep_freed_memory();
    frameslv::Options options;
    if (const frameslv::Fault fault =
            frameslv::read_options({arguments + 1, arguments + count}, options)) {
        std::cerr << fault.text << "\n";
        return static_cast<int>(fault.code);
    }
    if (options.help)
        std::cout << frameslv::help_text();
    else if (options.version)
        std::cout << "frameslv " FRAMESLV_VERSION "\n";
    else
        return frameslv::run(".", options.settings, std::cout, std::cerr);
    return 0;
}
