// Fingerprints of a solver's input: whether two inputs say the same.
#pragma once

#include "model/model.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kigumi {

// FNV-1a, 64 bits (offset 14695981039346656037, prime 1099511628211, as its authors publish them):
// no secret, but two inputs that differ have the same one by accident once in 2^64.
class Fnv1a {
  public:
    void add(std::string_view bytes);
    void add(std::uint64_t value); // lowest byte first
    std::uint64_t value() const { return value_; }

  private:
    std::uint64_t value_ = 14695981039346656037u;
};

// As 16 small hexadecimal digits.
std::string hash_text(std::uint64_t hash);
std::string hash_text(std::string_view bytes);

// Of one input. `frame` covers the members: places of their ends, section (A, Iy, Iz, J, turn) and
// material; `input` that, all nodes, supports and loads. Empty: unknown.
struct Fingerprint {
    std::string frame, input;
    bool operator==(const Fingerprint&) const = default;
};

// Gathers an input. Values count as FRAMESLV.IN holds them: places to 0.1 cm, forces to 0.1 kgf,
// sections and materials to four digits. The order of the records, the numbers and names of nodes
// and members and the direction of a member do not count: none of them changes what is solved.
class InputPrint {
  public:
    struct Place {
        double x, y, z; // cm
    };
    struct Section {
        double Iy, Iz, A, J;
    };
    struct Material {
        double E, poisson, density;
    };
    // Hashes of what many members share.
    static std::uint64_t hash_of(const Section& section);
    static std::uint64_t hash_of(const Material& material);

    void add_node(const Place& at);
    // `section` and `material` as hash_of gives them.
    void add_member(const Place& start, const Place& end, std::uint64_t section,
                    std::uint64_t material, double turn);
    void add_fix(const Place& at, bool x, bool y, bool z);
    void add_load(const Place& at, double fx, double fy, double fz);
    // Anything else that the input says.
    void add_words(std::string_view words);
    Fingerprint print() const;

  private:
    std::vector<std::uint64_t> members_, others_;
};

// Of the model as save_honegumi would write it. Section and material tables must be current.
Fingerprint fingerprint(const Model& model);

} // namespace kigumi
