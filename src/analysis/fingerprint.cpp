#include "analysis/fingerprint.h"

#include "base/format.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace kigumi {

namespace {

// What a record is of, so that equal numbers of different kinds differ.
enum Record : std::uint64_t { of_node = 1, of_member, of_fix, of_load, of_words };

// A value in tenths, rounded as printf rounds it to one decimal.
void add_tenths(Fnv1a& hash, double value) {
    hash.add(std::bit_cast<std::uint64_t>(std::nearbyint(value * 10.0) + 0.0)); // no negative zero
}

std::uint64_t hash_of_digits(std::initializer_list<double> values) {
    Fnv1a hash;
    for (const double value : values) {
        hash.add(text_format("%.3e;", value));
    }
    return hash.value();
}

std::uint64_t place_hash(const InputPrint::Place& at) {
    Fnv1a hash;
    for (const double value : {at.x, at.y, at.z}) {
        add_tenths(hash, value);
    }
    return hash.value();
}

std::uint64_t sorted_hash(std::vector<std::uint64_t> records) {
    std::sort(records.begin(), records.end());
    Fnv1a hash;
    for (const std::uint64_t record : records) {
        hash.add(record);
    }
    return hash.value();
}

} // namespace

void Fnv1a::add(std::string_view bytes) {
    for (const char byte : bytes) {
        value_ = (value_ ^ static_cast<unsigned char>(byte)) * 1099511628211u;
    }
}

void Fnv1a::add(std::uint64_t value) {
    for (int i = 0; i < 8; ++i) {
        value_ = (value_ ^ ((value >> (8 * i)) & 0xFFu)) * 1099511628211u;
    }
}

std::string hash_text(std::uint64_t hash) {
    return text_format("%08lx%08lx", static_cast<unsigned long>(hash >> 32),
                       static_cast<unsigned long>(hash & 0xFFFFFFFFu));
}

std::string hash_text(std::string_view bytes) {
    Fnv1a hash;
    hash.add(bytes);
    return hash_text(hash.value());
}

void InputPrint::add_node(const Place& at) {
    Fnv1a hash;
    hash.add(of_node);
    hash.add(place_hash(at));
    others_.push_back(hash.value());
}

std::uint64_t InputPrint::hash_of(const Section& section) {
    return hash_of_digits({section.Iy, section.Iz, section.A, section.J});
}

std::uint64_t InputPrint::hash_of(const Material& material) {
    return hash_of_digits({material.E, material.poisson, material.density});
}

void InputPrint::add_member(const Place& start, const Place& end, std::uint64_t section,
                            std::uint64_t material, double turn) {
    const std::uint64_t a = place_hash(start);
    const std::uint64_t b = place_hash(end);
    Fnv1a hash;
    hash.add(of_member);
    hash.add(std::min(a, b));
    hash.add(std::max(a, b));
    hash.add(section);
    hash.add(material);
    add_tenths(hash, turn);
    members_.push_back(hash.value());
}

void InputPrint::add_fix(const Place& at, bool x, bool y, bool z) {
    Fnv1a hash;
    hash.add(of_fix);
    hash.add(place_hash(at));
    hash.add((x ? 1u : 0u) + (y ? 2u : 0u) + (z ? 4u : 0u));
    others_.push_back(hash.value());
}

void InputPrint::add_load(const Place& at, double fx, double fy, double fz) {
    Fnv1a hash;
    hash.add(of_load);
    hash.add(place_hash(at));
    for (const double value : {fx, fy, fz}) {
        add_tenths(hash, value);
    }
    others_.push_back(hash.value());
}

void InputPrint::add_words(std::string_view words) {
    Fnv1a hash;
    hash.add(of_words);
    hash.add(words);
    others_.push_back(hash.value());
}

Fingerprint InputPrint::print() const {
    const std::uint64_t frame = sorted_hash(members_);
    Fnv1a all;
    all.add(frame);
    all.add(sorted_hash(others_));
    return {hash_text(frame), hash_text(all.value())};
}

Fingerprint fingerprint(const Model& model) {
    InputPrint input;
    const auto place = [&model](int no) {
        if (no < 1 || no > model.N_Node) {
            return InputPrint::Place{};
        }
        const Node& node = model.node[position_of(no)];
        return InputPrint::Place{node.x, node.y, node.z};
    };
    for (int i = 0; i < model.N_Node; ++i) {
        input.add_node(place(number_at(i)));
    }
    std::vector<std::uint64_t> sections{InputPrint::hash_of(InputPrint::Section{})}; // of none
    for (int k = 0; k < model.N_Size; ++k) {
        sections.push_back(InputPrint::hash_of(InputPrint::Section{
            model.size.Iy[k], model.size.Iz[k], model.size.A[k], model.size.J[k]}));
    }
    std::vector<std::uint64_t> materials{InputPrint::hash_of(InputPrint::Material{})};
    for (int k = 0; k < model.N_Mat; ++k) {
        materials.push_back(InputPrint::hash_of(
            InputPrint::Material{model.mat.E[k], model.mat.poisson[k], model.mat.density[k]}));
    }
    const auto of = [](const std::vector<std::uint64_t>& hashes, int no) {
        const auto at = static_cast<std::size_t>(no);
        return no >= 1 && at < hashes.size() ? hashes[at] : hashes[0];
    };
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        input.add_member(place(beam.noi), place(beam.noj), of(sections, beam.size),
                         of(materials, beam.mat), 0.0);
    }
    for (int i = 0; i < model.N_Fix; ++i) {
        const Fix& fix = model.fix[i];
        input.add_fix(place(fix.no), fix.ix != 0, fix.iy != 0, fix.iz != 0);
    }
    for (int i = 0; i < model.N_Load; ++i) {
        const Load& load = model.load[i];
        input.add_load(place(load.no), load.fx, load.fy, load.fz);
    }
    return input.print();
}

} // namespace kigumi
