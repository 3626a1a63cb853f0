#include "target.h"

#include "analysis/result.h"
#include "base/message.h"
#include "files/tegaki.h"
#include "generate/param.h"
#include "geometry/solid.h"
#include "model/lookup.h"

#include <algorithm>
#include <fstream>

namespace kigumi::fuzz {

namespace {

constexpr Target targets[] = {
    {"jik", read_jik},           {"unit", read_unit},   {"tgk", read_tgk},
    {"zlv", read_zlv},           {"lst", read_lst},     {"dsp", read_dsp},
    {"results", read_results},   {"trio", read_trio},   {"temp", read_temp},
    {"symbol", read_symbol},     {"roles", read_roles}, {"solver", read_solver},
    {"settings", read_settings}, {"marks", read_marks}, {"arguments", read_arguments},
};

int message_count = 0;

// The scratch folder lies in memory where the system has such a place.
struct Scratch {
    Scratch() {
        std::error_code code;
        const fs::path memory = "/dev/shm";
        const fs::path base = fs::is_directory(memory, code) ? memory : fs::temp_directory_path();
        for (int k = 0; k == 0 || !fs::create_directory(folder, code); ++k) {
            folder = base / ("kigumi-fuzz-" + std::to_string(k));
        }
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    fs::path folder;
};

} // namespace

std::span<const Target> all_targets() {
    return targets;
}

const Target* find_target(std::string_view name) {
    const auto* found = std::find_if(std::begin(targets), std::end(targets),
                                     [name](const Target& target) { return target.name == name; });
    return found == std::end(targets) ? nullptr : found;
}

void start_targets() {
    static const Scratch scratch;
    work_dir() = scratch.folder;
    set_message_sink([](std::string_view text) { message_count += text.empty() ? 0 : 1; });
}

void start_fresh() {
    reset_model();
    reset_solids();
    clear_points();
    forget_old_node();
    set_default_param();
    view = View{};
    result.N_Setuten = result.N_Stress = result.Nken_Stress = 0;
    clear_file_error();
    message_count = 0;
}

int messages() {
    return message_count;
}

fs::path put(const char* name, std::string_view input) {
    const fs::path path = work_file(name);
    std::ofstream(path, std::ios::binary)
        .write(input.data(), static_cast<std::streamsize>(input.size()));
    return path;
}

void require_sound(bool names) {
    const char* fault = find_model_fault(names);
    KIGUMI_CHECK(fault == nullptr, "%s", fault);
}

void require_told(int status) {
    KIGUMI_CHECK(status >= 0 || message_count > 0 || !file_error().empty(), "refused in silence");
}

} // namespace kigumi::fuzz
