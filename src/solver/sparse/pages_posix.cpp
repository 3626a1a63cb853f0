#include "solver/sparse/pages.h"

#include <sys/mman.h>
#include <sys/resource.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <new>
#include <string>

namespace frameslv {

namespace {

constexpr size_t large_page = size_t{2} << 20; // bytes
// From here on one large page is cleared sooner than small ones are handed out one by one.
constexpr size_t worth_large = size_t{1} << 19; // bytes

} // namespace

Pages::Pages(size_t numbers, Size size) {
    if (numbers == 0)
        return;
    if (numbers > static_cast<size_t>(-1) / sizeof(double) - large_page)
        throw std::bad_alloc();
    bytes_ = numbers * sizeof(double);
    const bool large = size == Size::large && bytes_ >= worth_large;
    if (large)
        bytes_ = (bytes_ + large_page - 1) / large_page * large_page;
    void* at = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (at == MAP_FAILED)
        throw std::bad_alloc();
#if defined(MADV_HUGEPAGE)
    if (large)
        madvise(at, bytes_, MADV_HUGEPAGE); // a refusal costs time only
#endif
    numbers_ = static_cast<double*>(at);
}

Pages::~Pages() {
    if (numbers_ != nullptr)
        munmap(numbers_, bytes_);
}

size_t available_memory() {
    constexpr size_t unknown = std::numeric_limits<size_t>::max();
    constexpr size_t kilobyte = 1024;
    size_t available = unknown;
    std::ifstream file("/proc/meminfo");
    std::string key;
    size_t value = 0;
    while (file >> key >> value) {
        if (key == "MemAvailable:")
            available = value * kilobyte;
        file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        available = std::min(available, static_cast<size_t>(limit.rlim_cur));
    return available;
}

} // namespace frameslv
