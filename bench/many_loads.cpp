// What many load vectors cost beside one, in the calling process, by turns; medians count.
// usage: many_loads FOLDER ROUNDS [THREADS]     FOLDER holds FRAMESLV.IN
#include "solver/frame_analysis.h"
#include "solver/text/input.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

using namespace frame_analysis;

Frame frame_of(const frameslv::Model& model) {
    Frame frame;
    for (const frameslv::Node& from : model.node) {
        Node node{{from.at.x, from.at.y, from.at.z}, from.name, {}};
        for (size_t k = 0; k < 6; k++)
            node.support[k] = from.held[k] ? rigid : 0.0;
        frame.nodes.push_back(node);
    }
    for (const frameslv::Member& from : model.member) {
        const frameslv::Section& section = model.section[frameslv::index_of(from.size)];
        const frameslv::Material& material = model.material[frameslv::index_of(from.mat)];
        Member member;
        member.i = frameslv::index_of(from.noi);
        member.j = frameslv::index_of(from.noj);
        member.E = material.E;
        member.G = material.G();
        member.A = section.A;
        member.Iy = section.Iy;
        member.Iz = section.Iz;
        member.J = section.J;
        member.turn = from.angle;
        member.weight = 0.0005 * section.A;
        frame.members.push_back(member);
    }
    return frame;
}

// The loads of the file and self-weight, in shares that differ.
std::vector<LoadVector> loads_of(const frameslv::Model& model, size_t count) {
    std::vector<LoadVector> loads(count);
    for (size_t c = 0; c < count; c++) {
        const double share = 1.0 + 0.25 * static_cast<double>(c);
        loads[c].gravity = {0.0, 0.0, -share};
        for (size_t i = 0; i < model.node.size(); i++) {
            Six value = model.node[i].load;
            for (double& one : value)
                one *= share;
            value[c % 2] += 0.1 * value[2];
            if (std::any_of(value.begin(), value.end(), [](double v) { return v < 0 || v > 0; }))
                loads[c].nodes.push_back({i, value});
        }
    }
    return loads;
}

double milliseconds(const Frame& frame, const std::vector<LoadVector>& loads, int threads) {
    const auto start = std::chrono::steady_clock::now();
    const Analysis analysis = analyse(frame, loads, threads);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    if (!analysis.fault.empty()) {
        std::fprintf(stderr, "%s\n", analysis.fault.c_str());
        std::exit(1);
    }
    return took.count();
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(),
                     values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("usage: many_loads FOLDER ROUNDS [THREADS]\n", stderr);
        return 2;
    }
    std::ifstream file(std::string(argv[1]) + "/FRAMESLV.IN", std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    frameslv::Model model;
    if (const frameslv::Fault fault = frameslv::read_input(text, model)) {
        std::fprintf(stderr, "%s\n", fault.text.c_str());
        return 1;
    }
    const int rounds = std::max(1, std::atoi(argv[2]));
    const int threads = argc > 3 ? std::atoi(argv[3]) : 1;
    const Frame frame = frame_of(model);
    const std::vector<LoadVector> one = loads_of(model, 1);
    const std::vector<LoadVector> many = loads_of(model, 15);
    std::vector<double> ones, manys, ratios;
    milliseconds(frame, many, threads); // pages and caches
    for (int round = 0; round < rounds; round++) {
        ones.push_back(milliseconds(frame, one, threads));
        manys.push_back(milliseconds(frame, many, threads));
        ratios.push_back(manys.back() / ones.back());
    }
    constexpr double bound = 1.5;
    const double ratio = median(ratios);
    std::printf("| %zu | %d | %.1f ms | %.1f ms | %.2f | %.2f | %s |\n", frame.members.size(),
                threads, median(ones), median(manys), ratio, bound,
                ratio <= bound ? "held" : "not held");
    return 0;
}
