#include "target.h"

#include "base/message.h"
#include "files/tegaki.h"
#include "model/validate.h"

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
    {"project", read_project},
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

void start_targets(Project& project) {
    static const Scratch scratch;
    project.work_dir = scratch.folder;
    static const ScopedMessageSink sink(
        [](const Fault& fault) { message_count += fault.sentence.empty() ? 0 : 1; });
}

void start_fresh(Project& project) {
    reset_model(project.model);
    reset_solids(project.solids);
    clear_points(project.solids);
    forget_old_node(project.sketch_places);
    set_default_param(project.param);
    project.view = View{};
    project.result.N_Setuten = project.result.N_Stress = project.result.Nken_Stress = 0;
    message_count = 0;
}

int messages() {
    return message_count;
}

fs::path put(const fs::path& work_dir, const char* name, std::string_view input) {
    const fs::path path = work_file(work_dir, name);
    std::ofstream(path, std::ios::binary)
        .write(input.data(), static_cast<std::streamsize>(input.size()));
    return path;
}

void require_sound(const Model& model, bool names) {
    const char* fault = find_model_fault(model, names);
    KIGUMI_CHECK(fault == nullptr, "%s", fault);
}

void require_told(int status, const std::string& reason) {
    KIGUMI_CHECK(status >= 0 || message_count > 0 || !reason.empty(), "refused in silence");
}

} // namespace kigumi::fuzz
