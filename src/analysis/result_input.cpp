#include "analysis/result_input.h"

#include "base/format.h"
#include "base/scan.h"

#include <map>

namespace kigumi {

namespace {

constexpr const char* first_line = "kigumi-results 1";
constexpr std::pair<SelfWeight, const char*> weights[] = {
    {SelfWeight::unknown, "unknown"}, {SelfWeight::no, "no"}, {SelfWeight::yes, "yes"}};

// Size and hash of a result file, as its line holds them.
std::optional<std::string> file_mark(const fs::path& work_dir, const char* name) {
    const auto bytes = read_file(work_file(work_dir, name));
    if (!bytes) {
        return {};
    }
    return text_format("%zu %s", bytes->size(), hash_text(*bytes).c_str());
}

std::string print_text(const std::string& print) {
    return print.empty() ? "-" : print;
}

bool is_print(const std::string& word) {
    return word.size() == 16 && word.find_first_not_of("0123456789abcdef") == std::string::npos;
}

// Lines "name value" by their names; the last of a name holds.
std::map<std::string, std::string> values_of(std::string_view text) {
    std::map<std::string, std::string> values;
    LineReader lines(text);
    std::string_view line;
    while (lines.next(line)) {
        const std::size_t blank = line.find(' ');
        if (blank != std::string_view::npos) {
            values[std::string(line.substr(0, blank))] = std::string(line.substr(blank + 1));
        }
    }
    return values;
}

ResultAge age_of(const Model& model, const ResultInput& input, const Fingerprint& file) {
    if (input.print.input.empty()) {
        return ResultAge::unknown;
    }
    if (model.N_Beam > 0) {
        return fingerprint(model) == input.print ? ResultAge::current : ResultAge::old;
    }
    return file.input.empty() || file == input.print ? ResultAge::current : ResultAge::old;
}

// For each node of a frame the result node of it, or null.
std::vector<const Setuten*> result_nodes(const FrameShape& shape, const Result& result) {
    std::vector<const Setuten*> nodes(shape.nodes.size(), nullptr);
    const std::vector<int> found = match_results(shape, stored_results(result)).node;
    for (std::size_t row = 0; row < found.size(); ++row) {
        if (found[row] >= 0) {
            nodes[static_cast<std::size_t>(found[row])] = &result.setuten[static_cast<int>(row)];
        }
    }
    return nodes;
}

// Gives supports and loads the numbers and places of the result nodes, where there are such.
void number_as_results(const FrameShape& shape, const Result& result, ResultRoles& roles) {
    const std::vector<const Setuten*> nodes = result_nodes(shape, result);
    std::map<int, const Setuten*> by_number;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        by_number[shape.nodes[i].no] = nodes[i];
    }
    const auto renumber = [&by_number](auto& role, std::int32_t& no) {
        const auto found = by_number.find(no);
        if (found != by_number.end() && found->second != nullptr) {
            const Setuten& node = *found->second;
            no = node.OldNo;
            role.x = node.x;
            role.y = node.y;
            role.z = node.z;
        }
    };
    for (ResultFix& role : roles.fix) {
        renumber(role, role.fix.no);
    }
    for (ResultLoad& role : roles.load) {
        renumber(role, role.load.no);
    }
}

ResultRoles roles_of_model(const Model& model, const Result& result) {
    ResultRoles roles;
    const auto node = [&model](int no) {
        return no >= 1 && no <= model.N_Node ? model.node[position_of(no)] : Node{};
    };
    for (int i = 0; i < model.N_Fix; ++i) {
        const Node at = node(model.fix[i].no);
        roles.fix.push_back({model.fix[i], at.x, at.y, at.z});
    }
    for (int i = 0; i < model.N_Load; ++i) {
        const Node at = node(model.load[i].no);
        roles.load.push_back({model.load[i], at.x, at.y, at.z});
    }
    roles.state = ResultRoles::State::read;
    number_as_results(model_shape(model), result, roles);
    return roles;
}

} // namespace

int save_result_input(const fs::path& work_dir, const ResultInput& input) {
    const fs::path path = work_file(work_dir, input_file_name);
    std::error_code ignored;
    fs::remove(path, ignored);
    std::string text = text_format("%s\ninput %s\nframe %s\nput-back %d\n", first_line,
                                   print_text(input.print.input).c_str(),
                                   print_text(input.print.frame).c_str(), input.put_back ? 1 : 0);
    for (const auto& [weight, word] : weights) {
        if (weight == input.self_weight) {
            text += text_format("self-weight %s\n", word);
        }
    }
    for (const char* name : result_files) {
        const auto mark = file_mark(work_dir, name);
        if (!mark) {
            return -1;
        }
        text += text_format("%s %s\n", name, mark->c_str());
    }
    return save_file(path, text);
}

ResultInput read_result_input(const fs::path& work_dir) {
    ResultInput unknown;
    unknown.self_weight = noted_self_weight(work_dir);
    const auto text = read_file(work_file(work_dir, input_file_name));
    if (!text || text->substr(0, text->find('\n')) != first_line) {
        return unknown;
    }
    std::map<std::string, std::string> values = values_of(*text);
    for (const char* name : result_files) {
        const auto mark = file_mark(work_dir, name);
        if (!mark || values[name] != *mark) {
            return unknown;
        }
    }
    ResultInput input;
    input.put_back = values["put-back"] == "1";
    for (const auto& [weight, word] : weights) {
        input.self_weight = values["self-weight"] == word ? weight : input.self_weight;
    }
    if (is_print(values["input"]) && is_print(values["frame"])) {
        input.print = {values["frame"], values["input"]};
    } else {
        input.self_weight = unknown.self_weight;
    }
    return input;
}

SelfWeight noted_self_weight(const fs::path& work_dir) {
    const auto text = read_file(work_file(work_dir, notes_file_name));
    if (!text) {
        return SelfWeight::unknown;
    }
    return values_of(*text).count("self-weight") > 0 ? SelfWeight::yes : SelfWeight::no;
}

ResultRoles roles_of_results(const Model& model, const Result& result,
                             const std::optional<SolverFrame>& frame) {
    const ResultInput& input = result.input;
    const bool known = !input.print.input.empty();
    if (frame &&
        (known ? frame->print == input.print
               : !input.put_back && match_results(frame->shape, stored_results(result)).fits)) {
        ResultRoles roles{ResultRoles::State::read, frame->fix, frame->load};
        number_as_results(frame->shape, result, roles);
        return roles;
    }
    if (known && model.N_Beam > 0 && fingerprint(model) == input.print) {
        return roles_of_model(model, result);
    }
    ResultRoles roles;
    roles.state = frame ? ResultRoles::State::of_other_frame : ResultRoles::State::missing;
    return roles;
}

ResultAge result_age(const Model& model, const Result& result) {
    return age_of(model, result.input, result.input_file);
}

ResultAge result_age_of_frame(const Model& model, const Result& result) {
    const Fingerprint& print = result.input.print;
    if (model.N_Beam == 0 || model.N_Fix > 0 || model.N_Load > 0 || print.input.empty()) {
        return result_age(model, result);
    }
    const bool same_file = result.input_file.input.empty() || result.input_file == print;
    return same_file && fingerprint(model).frame == print.frame ? ResultAge::current
                                                                : ResultAge::old;
}

std::optional<ResultAge> stored_result_age(const Model& model, const fs::path& work_dir) {
    for (const char* name : result_files) {
        std::error_code missing;
        if (!fs::exists(work_file(work_dir, name), missing)) {
            return {};
        }
    }
    const auto frame = read_solver_frame(work_dir);
    return age_of(model, read_result_input(work_dir), frame ? frame->print : Fingerprint{});
}

const char* age_words(ResultAge age) {
    return age == ResultAge::old ? "古い結果" : age == ResultAge::unknown ? "入力不明" : "";
}

const char* age_sentence(ResultAge age) {
    switch (age) {
    case ResultAge::old:
        return "古い結果　今の骨組・断面・支点・荷重で解析したものではありません";
    case ResultAge::unknown:
        return "入力不明　どの骨組・荷重を解析した結果か記録がありません";
    case ResultAge::current:
        break;
    }
    return "";
}

} // namespace kigumi
