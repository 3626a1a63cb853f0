#include "project/packing.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kigumi {

namespace {

// A group is a mask, a bit for each of its words that is not zero, and these words.
constexpr std::size_t group_words = 32;

std::size_t words_in(std::size_t bytes) {
    return bytes / sizeof(std::uint32_t);
}

} // namespace

std::vector<unsigned char> pack_records(const std::vector<unsigned char>& raw,
                                        std::size_t record_bytes) {
    const std::size_t words = words_in(raw.size());
    const std::size_t record = words_in(record_bytes);
    std::vector<std::uint32_t> word(words + record); // behind one record of zeros
    if (!raw.empty()) {
        std::memcpy(word.data() + record, raw.data(), raw.size());
    }
    std::vector<std::uint32_t> packed(words + words / group_words + 1);
    std::size_t length = 0;
    for (std::size_t from = 0; from < words; from += group_words) {
        const std::size_t end = std::min(words, from + group_words);
        std::uint32_t& mask = packed[length++];
        for (std::size_t i = from; i < end; ++i) {
            const std::uint32_t difference = word[i + record] ^ word[i];
            packed[length] = difference;
            mask |= static_cast<std::uint32_t>(difference != 0) << (i - from);
            length += difference != 0 ? 1 : 0;
        }
    }
    std::vector<unsigned char> bytes(length * sizeof(std::uint32_t));
    if (!bytes.empty()) {
        std::memcpy(bytes.data(), packed.data(), bytes.size());
    }
    return bytes;
}

std::vector<unsigned char> unpack_records(const std::vector<unsigned char>& packed,
                                          std::size_t raw_bytes, std::size_t record_bytes) {
    const std::size_t words = words_in(raw_bytes);
    const std::size_t record = words_in(record_bytes);
    std::vector<std::uint32_t> word(words + record);
    std::vector<std::uint32_t> from_packed(words_in(packed.size()));
    if (!packed.empty()) {
        std::memcpy(from_packed.data(), packed.data(), packed.size());
    }
    std::size_t next = 0;
    for (std::size_t from = 0; from < words; from += group_words) {
        const std::size_t end = std::min(words, from + group_words);
        const std::uint32_t mask = from_packed[next++];
        for (std::size_t i = from; i < end; ++i) {
            const bool differs = (mask >> (i - from) & 1U) != 0;
            word[i + record] = word[i] ^ (differs ? from_packed[next++] : 0);
        }
    }
    std::vector<unsigned char> raw(raw_bytes);
    if (raw_bytes > 0) {
        std::memcpy(raw.data(), word.data() + record, raw_bytes);
    }
    return raw;
}

} // namespace kigumi
