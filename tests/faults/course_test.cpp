// Courses of work: random commands, legal and illegal, one after the other on one model. After
// each the tables are sound, a refusal has said why, and a success has said nothing unexpected.
// KIGUMI_COURSES sets their number and KIGUMI_SEED the seed of the first (bench/course.sh).
#include "analysis/result.h"
#include "analysis/solver_input.h"
#include "analysis/solver_run.h"
#include "app/frame_input.h"
#include "dice.h"
#include "draw/model_picture.h"
#include "export/dxf.h"
#include "export/win3d.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "fuzz/target.h"
#include "generate/generate.h"
#include "model/members.h"
#include "model/roles.h"
#include "model/sections.h"
#include "model/validate.h"
#include "project/accept.h"
#include "project/gate.h"
#include "project/project_fault.h"
#include "project/project_file.h"
#include "project/regenerate.h"
#include "results/displacement.h"
#include "results/force_picture.h"
#include "results/listing.h"
#include "sight/perspective.h"
#include "solid/axis_picture.h"
#include "solid/solid.h"
#include "support.h"

#include <algorithm>
#include <functional>

namespace kigumi::test {

namespace {

constexpr int few_members = 300; // analysed and drawn

class Course : ProjectParts {
  public:
    Course(Project& of, unsigned seed) : ProjectParts(of), dice_(seed) {}

    // One random command: its result, negative when refused. `told` becomes true when a success may
    // say something, `named` false while names are out of step.
    int step();
    std::string name; // of the command
    bool told = false;
    bool named = true;

  private:
    int generate();
    int read();
    int mark();
    int change_a_section();
    int change_a_material();
    int save();
    int analyse();
    int read_results();
    int delete_member();
    int draw_frame();
    int draw_results();
    int give_all_one_section();

    template <class Item> const Item& one_of(const std::vector<Item>& items) {
        return dice_.one_of(items);
    }
    bool rarely() { return dice_.roll(8) == 0; }
    // A length, or now and then something that is none.
    std::string length() {
        return rarely() ? one_of<std::string>({"0", "-5", "1e30", "x", "", "nan", "1e-40"})
                        : text_format("%d.%d", 5 + dice_.roll(300), dice_.roll(10));
    }
    fs::path target(const std::string& ending) {
        return rarely() ? work_file(work_dir, "missing") / ending
                        : work_file(work_dir, (rarely() ? "old-" : "s") +
                                                  std::to_string(dice_.roll(3)) + ending);
    }

    Dice dice_;
};

int Course::generate() {
    std::vector<std::string> settings = {text_format("NX=%d", dice_.roll(rarely() ? 60 : 6)),
                                         text_format("NY=%d", dice_.roll(rarely() ? 60 : 6)),
                                         text_format("SumiType=%d", dice_.roll(4) - rarely()),
                                         text_format("N_Sou=%d", dice_.roll(4) + !rarely()),
                                         text_format("YaneMode=%d", dice_.roll(3) - 1),
                                         text_format("YaneType=%d", 1 + dice_.roll(2))};
    for (int i = dice_.roll(4); i > 0; --i) {
        settings.push_back(one_of<std::string>({"TukaHaba=", "TukaAtumi=", "Hashira=", "Lowest=",
                                                "YaneTakasa=", "KetaHaba=", "NoSuch="}) +
                           length());
    }
    told = true; // of a roof that is left out
    if (set_parameters(project, settings) < 0) {
        return -1;
    }
    reset_model(model);
    reset_solids(solids);
    clear_points(solids);
    forget_old_node(sketch_places);
    return make_unit(model, param, solids) < 0 ? -1 : rebuild_tables(model);
}

int Course::read() {
    std::vector<fs::path> files;
    for (const fs::path& folder : {fs::path(KIGUMI_BROKEN_DIR), fs::path(KIGUMI_EXAMPLES_DIR),
                                   fs::path(KIGUMI_CORPUS_DIR) / "jik", work_dir}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            const std::string ending = ending_of(entry.path());
            if (ending == ".jik" || ending == ".tgk") {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    told = true; // of a summary that cannot be written
    return read_frame(project, utf8_of(rarely() ? work_file(work_dir, "none.jik") : one_of(files)));
}

int Course::mark() {
    std::vector<RoleOption> roles;
    for (int i = 1 + dice_.roll(3); i > 0; --i) {
        RoleOption role;
        role.load = dice_.roll(2) == 0;
        role.selector = one_of<std::string>({"bottom", "top", "X0?Y00Z*", "*", "X00*", "no such"});
        role.fz = static_cast<float>(dice_.roll(1000) - 500);
        roles.push_back(role);
    }
    const int status = mark_roles(project, roles);
    const auto nodes_of = [this](NodeRole role) {
        return std::count_if(model.node.begin(), model.node.begin() + model.N_Node,
                             [role](const Node& node) { return node.flag == role; });
    };
    EXPECT_TRUE(status < 0 || nodes_of(role_fixed) == model.N_Fix);
    EXPECT_TRUE(status < 0 || nodes_of(role_loaded) == model.N_Load);
    return status;
}

int Course::change_a_section() {
    if (model.N_Size == 0) {
        return 0;
    }
    const float haba = static_cast<float>(dice_.roll(20) - 2);
    return change_section(model, dice_.roll(model.N_Size), haba, 12.0f, 0.0f) == Change::refused
               ? -1
               : 0;
}

int Course::change_a_material() {
    if (model.N_Mat == 0) {
        return 0;
    }
    const float poisson = static_cast<float>(dice_.roll(5) - 1) * 0.1f;
    return change_material(model, dice_.roll(model.N_Mat), 7.0e4f, poisson, 1.0e-3f) ==
                   Change::refused
               ? -1
               : 0;
}

int Course::save() {
    const std::vector<std::function<int()>> writers = {
        [this] {
            return save_jiku_data(model, target(".jik"), {1.0f, 0.0f, -2.5f});
        },
        [this] { return save_honegumi(model, target(".bon")); },
        [this] { return save_honegra(model, target(".ydu")); },
        [this] { return save_listing(result, target(".txt")); },
        [this] {
            return build_trio_file(model, solids, work_dir) < 0
                       ? -1
                       : save_win3d(solids, target(".w3d"));
        },
        [this] { return make_dxf_file(work_dir, target(".dxf"), 1 + dice_.roll(6)); },
        [this] {
            place_on_sheet(model, project_model(model, view));
            return save_tegaki_data(model, sketch_places, target(".tgk"));
        },
        [this] {
            told = true; // 解析結果を保存しました
            return save_results(work_dir, target(".out"));
        },
    };
    return one_of(writers)();
}

int Course::analyse() {
    if (!can_analyse(model)) {
        return -1;
    }
    if (model.N_Beam > few_members) {
        return 0;
    }
    SolverOutcome outcome;
    if (run_solver(model, solver_seams, work_dir, outcome) < 0) {
        return -1;
    }
    const int status = FrameSlv(model, result, work_dir, ResultsOf::this_model);
    EXPECT_EQ(status == 0, outcome.status == 0);
    return status;
}

int Course::read_results() {
    return FrameSlv(model, result, work_dir);
}

// As on the sheet, where every node has a place of its own.
int Course::delete_member() {
    for (int i = 0; i < model.N_Node; ++i) {
        model.node[i].X = static_cast<float>(i) * 100.0f;
        model.node[i].Y = 0.0f;
    }
    save_old_node(model, sketch_places);
    load_old_node(model, sketch_places);
    const int members = model.N_Beam;
    if (members > 0 && members <= few_members) {
        del_beam(model, dice_.roll(members));
        save_old_node(model, sketch_places);
        named = false;
        EXPECT_EQ(model.N_Beam, members - 1);
    }
    return 0;
}

int Course::draw_frame() {
    fuzz::BlankCanvas canvas;
    DrawArea area = fuzz::usual_window();
    view.TAU = static_cast<float>(dice_.roll(720) - 360);
    view.FAI = static_cast<float>(dice_.roll(180) - 90);
    view.Rho = 1.0 + dice_.roll(5000);
    if (model.N_Beam > few_members) {
        return 0;
    }
    draw_wire(project_model(model, view), canvas, area, true);
    if (build_trio_file(model, solids, work_dir) < 0 ||
        draw_axis_model(view, solids, canvas, area) < 0) {
        return -1;
    }
    ModelLabels labels;
    labels.node_names = labels.member_numbers = labels.fixed_nodes = true;
    return draw_model_picture(model, project_model(model, view), lettering, canvas, area, labels) <
                   0
               ? -1
               : draw_perspective(view, solids, perspective, work_dir, canvas, area);
}

int Course::draw_results() {
    fuzz::BlankCanvas canvas;
    ResultView shown;
    shown.area = fuzz::usual_window();
    shown.mode = mode_wire + dice_.roll(4);
    shown.label[label_node_names] = shown.label[label_fixed_nodes] = 1;
    const int moved = get_new_beam(result, 10.0f);
    const int drawn = draw_result_picture(view, result, lettering, canvas, shown);
    return std::min(moved, drawn);
}

int Course::give_all_one_section() {
    set_all_beam_section(model, 12.0f, 12.0f + static_cast<float>(dice_.roll(3)));
    named = true;
    return rebuild_tables(model);
}

int Course::step() {
    struct Command {
        const char* name;
        int (Course::*run)();
    };
    static const std::vector<Command> commands = {
        {"generate", &Course::generate},
        {"read", &Course::read},
        {"mark", &Course::mark},
        {"mark", &Course::mark},
        {"section", &Course::change_a_section},
        {"material", &Course::change_a_material},
        {"save", &Course::save},
        {"save", &Course::save},
        {"analyse", &Course::analyse},
        {"analyse", &Course::analyse},
        {"last results", &Course::read_results},
        {"delete", &Course::delete_member},
        {"draw", &Course::draw_frame},
        {"draw results", &Course::draw_results},
        {"one section", &Course::give_all_one_section},
    };
    const Command& command = one_of(commands);
    name = command.name;
    told = false;
    const int status = (this->*command.run)();
    named = named || name == "generate" || name == "read";
    return status;
}

class CourseTest : public CoreTest {
  protected:
    // On a project of its own, so that the seed alone decides.
    void play(unsigned seed, int& refused) {
        const auto own = std::make_unique<Project>();
        own->work_dir = work_dir;
        constexpr int steps = 14;
        Course course(*own, seed);
        std::string so_far;
        for (int i = 0; i < steps; ++i) {
            const int status = course.step();
            so_far += (so_far.empty() ? "" : ", ") + course.name + (status < 0 ? " refused" : "");
            SCOPED_TRACE(text_format("seed %u: %s", seed, so_far.c_str()));
            const char* fault = find_model_fault(own->model, course.named);
            ASSERT_EQ(fault, nullptr) << fault;
            const std::vector<std::string> messages = take_messages();
            if (status < 0) {
                ASSERT_FALSE(messages.empty()) << "refused in silence";
                ++refused;
            } else if (!course.told) {
                ASSERT_TRUE(messages.empty()) << messages.front();
            }
        }
    }
};

TEST_F(CourseTest, RandomCommandsLeaveSoundTables) {
    const int courses = number_from_environment("KIGUMI_COURSES", 150);
    const unsigned seed = seed_of_run();
    int refused = 0;
    for (int i = 0; i < courses && !HasFailure(); ++i) {
        play(seed + static_cast<unsigned>(i), refused);
        for (const auto& entry : fs::directory_iterator(work_dir)) {
            fs::remove_all(entry.path());
        }
    }
    std::printf("%d courses from seed %u, %d steps refused\n", courses, seed, refused);
    EXPECT_TRUE(refused > 0 || courses < 3);
}

// Edits of a project as the windows make them, each by the gate.
class EditCourse {
  public:
    explicit EditCourse(unsigned seed) : dice_(seed) {}

    // One random edit, by name.
    int step(Work& work) {
        using Edit = int (EditCourse::*)(Project&);
        static const std::vector<std::pair<const char*, Edit>> edits = {
            {"骨組の作成", &EditCourse::generate},
            {"基本データの変更", &EditCourse::regenerate_it},
            {"断面の変更", &EditCourse::section},
            {"断面の変更", &EditCourse::section},
            {"材料の変更", &EditCourse::material},
            {"樹種の変更", &EditCourse::species},
            {"支点の追加", &EditCourse::add_fix},
            {"荷重の追加", &EditCourse::add_load},
            {"支点の削除", &EditCourse::drop_fix},
            {"節点の指定", &EditCourse::pick},
            {"部材の削除", &EditCourse::delete_one},
            {"区分の変更", &EditCourse::kind},
            {"座標移動", &EditCourse::move},
            {"節点の検索", &EditCourse::search},
        };
        const auto& [name, edit] =
            edits[static_cast<std::size_t>(dice_.roll(static_cast<int>(edits.size())))];
        return change(
            work, name, [this, edit](Project& p) { return (this->*edit)(p); },
            OnFailure::take_back);
    }

  private:
    Param small_frame(Param param) {
        param.NX = 1 + dice_.roll(4);
        param.NY = 1 + dice_.roll(4);
        param.TukaHaba = 80.0f + static_cast<float>(dice_.roll(30)) * 0.7f;
        param.ShaHaba = static_cast<float>(6 + dice_.roll(4));
        return param;
    }
    int generate(Project& p) {
        p.param = small_frame(p.param);
        p.generated = true;
        forget_old_node(p.sketch_places);
        return make_unit(p.model, p.param, p.solids) < 0 ? -1 : accept_model(p);
    }
    int regenerate_it(Project& p) { return p.generated ? regenerate(p, small_frame(p.param)) : 0; }
    int section(Project& p) {
        const auto cm = [this] { return static_cast<float>(dice_.roll(30)); }; // 0 is refused
        return p.model.N_Size > 0 && change_section(p.model, dice_.roll(p.model.N_Size), cm(), cm(),
                                                    cm()) == Change::refused
                   ? -1
                   : 0;
    }
    int material(Project& p) {
        const float E = static_cast<float>(dice_.roll(9)) * 1.0e4f;
        return p.model.N_Mat > 0 && change_material(p.model, dice_.roll(p.model.N_Mat), E, 0.4f,
                                                    5.0e-4f) == Change::refused
                   ? -1
                   : 0;
    }
    int species(Project& p) {
        if (p.model.N_Mat > 0) {
            change_species(p.model, dice_.roll(p.model.N_Mat),
                           dice_.one_of(std::vector<std::string>{"", "sugi", "hinoki"}));
        }
        return 0;
    }
    int add_fix(Project& p) {
        return enter(p, [&](int node) { return put_fix(p.model, node, dice_.roll(2), 1, 1); });
    }
    int add_load(Project& p) {
        return enter(p, [&](int node) {
            return put_load(p.model, node, 0, static_cast<float>(dice_.roll(50)), -100);
        });
    }
    // What the windows of supports and loads do: from then on the tables alone count.
    int enter(Project& p, const std::function<int(int)>& put) {
        if (p.model.N_Node == 0 || p.stage < Stage::made) {
            return 0;
        }
        if (p.model.fix_load_edited == 0 && make_fix_and_load(p.model) < 0) {
            return -1;
        }
        const int status = put(dice_.roll(p.model.N_Node));
        note_roles_entered(p);
        return status;
    }
    int drop_fix(Project& p) {
        delete_fix(p.model, p.model.N_Fix > 1 ? dice_.roll(p.model.N_Fix) : -1);
        return 0;
    }
    int pick(Project& p) {
        if (p.model.N_Node > 0 && p.stage == Stage::made) {
            pick_role(p.model, dice_.roll(p.model.N_Node), 1 + dice_.roll(2));
        }
        return 0;
    }
    // As on the sheet, where every node has a place of its own.
    int delete_one(Project& p) {
        if (p.model.N_Beam < 2) {
            return 0;
        }
        for (int i = 0; i < p.model.N_Node; ++i) {
            p.model.node[i].X = static_cast<float>(i) * 100.0f;
            p.model.node[i].Y = 0.0f;
        }
        save_old_node(p.model, p.sketch_places);
        load_old_node(p.model, p.sketch_places);
        del_beam(p.model, dice_.roll(p.model.N_Beam));
        save_old_node(p.model, p.sketch_places);
        p.stage = Stage::reading;
        return accept_model(p);
    }
    int kind(Project& p) {
        if (p.model.N_Beam > 0) {
            p.model.beam[dice_.roll(p.model.N_Beam)].kind = dice_.roll(kind_count);
        }
        return 0;
    }
    int move(Project& p) {
        p.shift.dx = static_cast<float>(dice_.roll(1000)) * 0.1f;
        return 0;
    }
    int search(Project& p) {
        find_nodes(p.model, {{{0, dice_.roll(4)}, {0, 9}, {0, 9}}});
        return 0;
    }

    Dice dice_;
};

TEST_F(CourseTest, UndoGivesTheFirstProjectAgainAndRedoTheLast) {
    const auto work = std::make_unique<Work>();
    work->project.work_dir = work_dir;
    work->history.start(work->project);
    EditCourse course(seed_of_run());
    const auto text = [&work] {
        forget_found(work->project.model); // hits of a search are no part of the history
        return project_text(work->project);
    };
    for (int round = 0; round < 5; ++round) {
        SCOPED_TRACE(text_format("seed %u, round %d", seed_of_run(), round));
        const std::string first = text();
        const std::uint64_t before = work->history.newest();
        while (work->history.newest() < before + History::most_steps) {
            course.step(*work);
        }
        const std::string last = text();
        ASSERT_NE(first, last);
        for (int i = 0; i < History::most_steps; ++i) {
            ASSERT_TRUE(undo(*work)) << i;
            const char* fault = find_project_fault(work->project);
            ASSERT_EQ(fault, nullptr) << fault;
        }
        ASSERT_EQ(text(), first);
        for (int i = 0; i < History::most_steps; ++i) {
            ASSERT_TRUE(redo(*work)) << i;
        }
        ASSERT_EQ(text(), last);
    }
    take_messages(); // of what was refused, and of what regenerating could not keep
}

} // namespace

} // namespace kigumi::test
