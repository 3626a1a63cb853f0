// Table records in fewer bytes, for the steps of the history that are not shown.
#pragma once

#include <cstddef>
#include <vector>

namespace kigumi {

// Packs `raw`, records of `record_bytes` (a multiple of 4, as the size of `raw` is) one after the
// other: each word of 4 bytes is replaced by what differs from the record before it, and zero words
// are left out. Unpacking gives every byte back.
std::vector<unsigned char> pack_records(const std::vector<unsigned char>& raw,
                                        std::size_t record_bytes);

// The `raw_bytes` that were packed.
std::vector<unsigned char> unpack_records(const std::vector<unsigned char>& packed,
                                          std::size_t raw_bytes, std::size_t record_bytes);

} // namespace kigumi
