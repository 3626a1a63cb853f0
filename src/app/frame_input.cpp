#include "app/frame_input.h"

#include "base/files.h"
#include "base/message.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "generate/param.h"
#include "model/roles.h"
#include "model/sections.h"
#include "model/select.h"
#include "model/sketch.h"
#include "project/project_file.h"
#include "solid/solid.h"

namespace kigumi {

namespace {

// One setting, NAME=VALUE.
int set_one(Project& project, const std::string& setting, bool& yane_said) {
    const size_t equals = setting.find('=');
    if (equals == std::string::npos) {
        return refuse(text_format("%s: 名前=値 の形で指定してください", setting.c_str()));
    }
    const std::string name = setting.substr(0, equals);
    const std::string value = setting.substr(equals + 1);
    switch (set_param(project.param, name, value)) {
    case SetParam::unknown_name:
        return refuse(text_format("%s: 知らないパラメータ名です", name.c_str()));
    case SetParam::not_a_number:
        return refuse(text_format("%s: 「%s」は数値として読めません", name.c_str(), value.c_str()));
    case SetParam::done:
        break;
    }
    yane_said = yane_said || name == "YaneMode";
    return 0;
}

int check_choices(const Project& project) {
    if (project.param.SumiType < 0 || project.param.SumiType > 2) {
        return refuse("SumiType: 0、1、2 のどれかにしてください");
    }
    if (project.param.N_Sou < 1 || project.param.N_Sou > 3) {
        return refuse("N_Sou: 1、2、3 のどれかにしてください");
    }
    if (project.param.YaneMode < -1 || project.param.YaneMode > 1) {
        return refuse("YaneMode: -1、0、1 のどれかにしてください");
    }
    return 0;
}

} // namespace

int set_parameters(Project& project, const std::vector<std::string>& settings) {
    set_default_param(project.param);
    project.param.N_Sou = 1;
    bool yane_said = false;
    for (const std::string& setting : settings) {
        if (set_one(project, setting, yane_said) < 0) {
            return -1;
        }
    }
    if (!yane_said) {
        project.param.YaneMode = project.param.SumiType == 0 ? 0 : -1;
    }
    if (check_choices(project) < 0) {
        return -1;
    }
    const KihonChoice choice{project.param.SumiType, project.param.N_Sou - 1,
                             yane_choice(project.param.YaneMode)};
    // A roof on three storeys is left out, so it closes off none of their heights.
    if (choice.yane != 1 || project.param.N_Sou < 3) {
        apply_yane_choice(project.param, choice.yane);
    }
    return check_param(project.param, choice);
}

namespace {

// A project has its tables; a finished sketch that was not yet taken for a frame gets them made. A
// sketch that lacks data is refused.
int read_project(Project& project, const std::string& input) {
    if (load_project(path_of(input), project) < 0) {
        return -1;
    }
    Model& model = project.model;
    if (model.N_Beam == 0) {
        return refuse(input + ": 部材がありません");
    }
    if (!has_own_roles(project)) {
        if (!count_sketch(model).is_finished()) {
            return refuse(input + ": 手書データが未完成です。手書入力編集で続けてください");
        }
        return rebuild_tables(model);
    }
    forget_found(model);
    const bool entered = model.N_Fix > 0 || model.N_Load > 0;
    return entered ? 0 : make_fix_and_load(model);
}

// The records of a table by node position; null where there is none.
template <class Records> auto by_node(const Model& model, const Records& records) {
    std::vector<const typename Records::value_type*> found(static_cast<std::size_t>(model.N_Node),
                                                           nullptr);
    for (const auto& record : records) {
        found[static_cast<std::size_t>(position_of(record.no))] = &record;
    }
    return found;
}

} // namespace

bool has_own_roles(const Project& project) {
    return project.stage == Stage::made || project.stage == Stage::loaded;
}

int read_frame(Project& project, const std::string& input) {
    if (ending_of(path_of(input)) == project_ending) {
        return read_project(project, input);
    }
    Fault fault;
    std::optional<ScopedMessageSink> joining(std::in_place, [&fault](const Fault& told) {
        fault.sentence += (fault.sentence.empty() ? "" : " ") + told.sentence;
        fault.reason = told.reason;
    });
    reset_model(project.model);
    reset_solids(project.solids);
    clear_points(project.solids);
    const bool drawn = ending_of(path_of(input)) == ".tgk";
    if (!drawn) {
        forget_old_node(project.sketch_places);
    }
    const int status = drawn
                           ? load_tegaki_data(project.model, project.sketch_places, path_of(input))
                           : load_jiku_data(project.model, project.solids, project.work_dir,
                                            path_of(input), &fault.reason);
    const bool empty = status >= 0 && project.model.N_Beam == 0;
    const bool rebuilt = status >= 0 && !empty && rebuild_tables(project.model) == 0;
    joining.reset();
    if (rebuilt) {
        if (!fault.sentence.empty()) {
            show_message(fault);
        }
        return 0;
    }
    if (empty && fault.sentence.empty()) {
        fault.sentence = input + ": 部材がありません";
    }
    const char* what =
        drawn ? "手書データ読みこみに失敗しました" : "軸データ読みこみに失敗しました";
    if (fault.sentence.empty()) {
        return refuse(what, fault.reason);
    }
    return refuse(text_format("%s（%s）", what, fault.sentence.c_str()), fault.reason);
}

int mark_roles(Project& project, const std::vector<RoleOption>& roles) {
    if (roles.empty() && has_own_roles(project)) {
        return 0;
    }
    std::vector<const RoleOption*> role_of(project.model.N_Node, nullptr);
    bool fixes_given = !has_own_roles(project);
    bool loads_given = fixes_given;
    for (const RoleOption& role : roles) {
        const std::vector<int> nodes = select_nodes(project.model, role.selector);
        if (nodes.empty()) {
            return refuse(text_format("%s: 該当する節点がありません", role.selector.c_str()));
        }
        for (const int at : nodes) {
            role_of[at] = &role;
        }
        (role.load ? loads_given : fixes_given) = true;
    }
    Model& model = project.model;
    const std::vector<Fix> fixes(model.fix.begin(),
                                 model.fix.begin() + (fixes_given ? 0 : model.N_Fix));
    const std::vector<Load> loads(model.load.begin(),
                                  model.load.begin() + (loads_given ? 0 : model.N_Load));
    const auto fix_of = by_node(model, fixes);
    const auto load_of = by_node(model, loads);
    model.N_Fix = model.N_Load = 0;
    model.fix_load_edited = roles.empty() ? 0 : 1;
    for (int i = 0; i < model.N_Node; ++i) {
        const RoleOption* role = role_of[i];
        const Fix* fix = role == nullptr ? fix_of[i] : nullptr;
        const Load* load = role == nullptr ? load_of[i] : nullptr;
        Node& node = model.node[i];
        int status = 0;
        node.flag = role_plain;
        if (fix != nullptr || (role != nullptr && !role->load)) {
            node.flag = role_fixed;
            status = fix != nullptr ? append_fix(model, node.no, fix->ix, fix->iy, fix->iz)
                                    : append_fix(model, node.no, 1, 1, 1);
        } else if (load != nullptr || role != nullptr) {
            node.flag = role_loaded;
            status = load != nullptr ? append_load(model, node.no, load->fx, load->fy, load->fz)
                                     : append_load(model, node.no, role->fx, role->fy, role->fz);
        }
        if (status < 0) {
            return -1;
        }
    }
    return 0;
}

int use_result_dir(Project& project, const std::string& dir) {
    std::error_code code;
    if (!fs::is_directory(path_of(dir), code)) {
        return refuse(text_format("%s: フォルダがありません", dir.c_str()));
    }
    project.work_dir = fs::absolute(path_of(dir), code);
    return 0;
}

int enter_dir(Project& project, const std::string& dir) {
    std::error_code code;
    const fs::path folder = dir.empty() ? fs::current_path(code) : fs::absolute(path_of(dir), code);
    fs::create_directories(folder, code);
    if (!fs::is_directory(folder, code)) {
        return refuse(text_format("%s: フォルダを使えません", dir.c_str()));
    }
    project.work_dir = folder;
    return 0;
}

} // namespace kigumi
