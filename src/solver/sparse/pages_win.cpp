#include "solver/sparse/pages.h"

#include <windows.h>

#include <new>

namespace frameslv {

Pages::Pages(size_t numbers, Size) {
    if (numbers == 0)
        return;
    if (numbers > static_cast<size_t>(-1) / sizeof(double))
        throw std::bad_alloc();
    bytes_ = numbers * sizeof(double);
    numbers_ = static_cast<double*>(
        VirtualAlloc(nullptr, bytes_, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (numbers_ == nullptr)
        throw std::bad_alloc();
}

Pages::~Pages() {
    if (numbers_ != nullptr)
        VirtualFree(numbers_, 0, MEM_RELEASE);
}

size_t available_memory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    if (GlobalMemoryStatusEx(&status) == 0)
        return static_cast<size_t>(-1);
    return static_cast<size_t>(status.ullAvailPhys);
}

} // namespace frameslv
