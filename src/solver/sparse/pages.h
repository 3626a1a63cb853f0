// Large tables of numbers.
#pragma once

#include <cstddef>
#include <utility>

namespace frameslv {

// Zeros, straight from the system: fresh pages are zero already, so that they are touched once, by
// whoever fills them; where the system has large pages they are asked for.
class Pages {
  public:
    Pages() = default;
    // Small pages are for tables of which much stays untouched. Throws std::bad_alloc when the
    // system refuses.
    enum class Size { large, small };
    explicit Pages(size_t numbers, Size size = Size::large);
    ~Pages();
    Pages(Pages&& other) noexcept
        : numbers_(std::exchange(other.numbers_, nullptr)), bytes_(std::exchange(other.bytes_, 0)) {
    }
    Pages& operator=(Pages&& other) noexcept {
        std::swap(numbers_, other.numbers_);
        std::swap(bytes_, other.bytes_);
        return *this;
    }

    double* data() const { return numbers_; }

  private:
    double* numbers_ = nullptr;
    size_t bytes_ = 0;
};

// Bytes that can still be filled without the disk, as the system tells; the largest size_t where it
// does not.
size_t available_memory();

} // namespace frameslv
