// Every writer meets a full disk, a folder it may not write to, and its own death at any moment:
// the target is then what it was or what it was to become, and nothing piles up beside it.
#include "analysis/solver_input.h"
#include "analysis/solver_run.h"
#include "dice.h"
#include "draw/model_picture.h"
#include "draw/segment_file.h"
#include "export/dxf.h"
#include "export/win3d.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "generate/generate.h"
#include "model/sections.h"
#include "project/project_file.h"
#include "results/listing.h"
#include "results_support.h"
#include "solid/solid.h"
#include "victim.h"

#include <fstream>
#include <unistd.h>

namespace kigumi::test {

namespace {

// Names in the working directory that a save has left beside its target.
int temporaries(const fs::path& work_dir) {
    int count = 0;
    for (const auto& entry : fs::directory_iterator(work_dir)) {
        const std::string name = utf8_of(entry.path().filename());
        count += name.starts_with(".kigumi-") || name.ends_with('~') ? 1 : 0;
    }
    return count;
}

std::string bytes_of(const fs::path& path) {
    return read_file(path).value_or("(none)");
}

struct Writer {
    const char* file; // in the working directory
    int (*save)(Project& project, const fs::path& path);
};

int save_temp(Model& model, const View& view, const fs::path& work_dir) {
    SegmentCanvas canvas;
    DrawArea area;
    area.xScreen = 800;
    area.yScreen = 600;
    draw_wire(project_model(model, view), canvas, area, false);
    return save_segment_file(work_dir, area, canvas.segments());
}

const Writer writers[] = {
    {"a.jik", [](Project& project,
                 const fs::path& path) { return save_jiku_data(project.model, path, {}); }},
    {"part.jik",
     [](Project& project, const fs::path& path) {
         return save_jiku_selection(project.model, path, {0, 3, 5}, {});
     }},
    {"a.tgk",
     [](Project& project, const fs::path& path) {
         return save_tegaki_data(project.model, project.sketch_places, path);
     }},
    {"a.kigumi",
     [](Project& project, const fs::path& path) { return save_project(project, path); }},
    {"FRAMESLV.IN",
     [](Project& project, const fs::path& path) { return save_honegumi(project.model, path); }},
    {"a.ydu",
     [](Project& project, const fs::path& path) { return save_honegra(project.model, path); }},
    {"a.dxf", [](Project& project,
                 const fs::path& path) { return make_dxf_file(project.work_dir, path, 1); }},
    {"a.w3d",
     [](Project& project, const fs::path& path) { return save_win3d(project.solids, path); }},
    {"list.txt",
     [](Project& project, const fs::path& path) { return save_listing(project.result, path); }},
    {"a.out",
     [](Project& project, const fs::path& path) { return save_results(project.work_dir, path); }},
    {"TRIO.DAT", [](Project& project,
                    const fs::path&) { return save_trio_file(project.solids, project.work_dir); }},
    {"TEMP.DAT",
     [](Project& project, const fs::path&) {
         return save_temp(project.model, project.view, project.work_dir);
     }},
    {"Youseki.dat",
     [](Project& project, const fs::path&) {
         reset_model(project.model);
         return load_jiku_data(project.model, project.solids, project.work_dir,
                               work_file(project.work_dir, "frame.jik"));
     }},
};

void PrintTo(const Writer& writer, std::ostream* out) {
    *out << writer.file;
}

class WritersTest : public CoreTest, public ::testing::WithParamInterface<Writer> {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        param.NX = param.NY = 3;
        ASSERT_EQ(check_param(param, {0, 0, 0}), 0);
        ASSERT_EQ(make_unit(model, param, solids), 0);
        ASSERT_EQ(rebuild_tables(model), 0);
        place_on_sheet(model, project_model(model, view));
        make_portal_result(result);
        ASSERT_EQ(save_jiku_data(model, work_file(work_dir, "frame.jik"), {}), 0);
        ASSERT_EQ(save_file(work_file(work_dir, "frameslv.lst"), listing_of_row(50)), 0);
        ASSERT_EQ(save_file(work_file(work_dir, "frameslv.dsp"), displacements_of_row(50)), 0);
        ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
        ASSERT_EQ(save_temp(model, view, work_dir), 0);

        ASSERT_EQ(suffer({}, [this] { return save(); }).status & failed, 0);
        new_ = bytes_of(target());
        std::ofstream(target(), std::ios::binary) << old;
    }

    fs::path target() { return work_file(work_dir, GetParam().file); }
    // Number of messages, and `failed` beside it when the writer says so.
    int save() {
        take_messages();
        const int status = GetParam().save(project, target());
        return static_cast<int>(take_messages().size()) + (status < 0 ? failed : 0);
    }
    // The volume summary comes with a reading, which goes on without it.
    static bool is_by_the_way() { return std::string(GetParam().file) == "Youseki.dat"; }

    void expect_refused(const Fault& fault, const std::string& what) {
        const Fate fate = suffer(fault, [this] { return save(); });
        EXPECT_EQ(fate.status, 1 + (is_by_the_way() ? 0 : failed)) << what;
        EXPECT_EQ(bytes_of(target()), old) << what;
        EXPECT_EQ(temporaries(work_dir), 0) << what;
    }
    void expect_one_of_both(const std::string& what) {
        const std::string bytes = bytes_of(target());
        EXPECT_TRUE(bytes == old || bytes == new_) << what << ": " << bytes.size() << " bytes";
        EXPECT_LE(temporaries(work_dir), 1) << what;
    }

    static constexpr int failed = 128;
    static constexpr const char* old = "what was there before\r\n";
    std::string new_;
    Dice dice_{seed_of_run()};
    // The work of a person is more than what a program makes again.
    const bool precious_ = std::string(GetParam().file) == "a.kigumi";
    const int rounds_ = number_from_environment("KIGUMI_FAULTS", precious_ ? 200 : 8);
};

TEST_P(WritersTest, FullDiskIsToldAndLeavesTheOldFile) {
    for (int round = 0; round < rounds_; ++round) {
        const int room = dice_.roll(static_cast<int>(new_.size()));
        expect_refused({.file_size = room}, text_format("%d of %zu bytes", room, new_.size()));
    }
}

TEST_P(WritersTest, FolderWithoutRightsIsToldAndLeavesTheOldFile) {
    fs::permissions(work_dir, fs::perms::owner_write, fs::perm_options::remove);
    expect_refused({.stranger = true}, "no rights");
    fs::permissions(work_dir, fs::perms::owner_write, fs::perm_options::add);
}

TEST_P(WritersTest, DeathLeavesTheOldFileOrTheNewOne) {
    const int calls = suffer({.kill_at_call = never}, [this] { return save(); }).calls;
    ASSERT_GT(calls, 10);
    ASSERT_EQ(bytes_of(target()), new_);
    for (int round = 0; round < rounds_; ++round) {
        std::ofstream(target(), std::ios::binary) << old;
        const int call = dice_.roll(calls);
        EXPECT_TRUE(suffer({.kill_at_call = call}, [this] { return save(); }).killed);
        expect_one_of_both(text_format("seed %u, call %d of %d", dice_.seed(), call, calls));
        const int room = dice_.roll(static_cast<int>(new_.size()));
        std::ofstream(target(), std::ios::binary) << old;
        EXPECT_TRUE(
            suffer({.file_size = room, .die_at_limit = true}, [this] { return save(); }).killed);
        EXPECT_EQ(bytes_of(target()), old);
        EXPECT_LE(temporaries(work_dir), 1);
    }
    EXPECT_EQ(save() & failed, 0);
    EXPECT_EQ(temporaries(work_dir), 0);
    EXPECT_EQ(bytes_of(target()), new_);
}

std::string name_of(const ::testing::TestParamInfo<Writer>& info) {
    std::string name = info.param.file;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, WritersTest, ::testing::ValuesIn(writers), name_of);

// Programs as they are started by people.
class ProgramsTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        make_post(model);
        ASSERT_EQ(save_jiku_data(model, work_file(work_dir, "frame.jik"), {}), 0);
        ASSERT_EQ(save_honegumi(model, work_file(work_dir, "FRAMESLV.IN")), 0);
    }
    // Kills the program at random calls; `check` looks at what it left. Then it runs undisturbed.
    void kill_often(std::vector<const char*> arguments, const std::function<void()>& prepare,
                    const std::function<void(const std::string&)>& check) {
        const auto run = [this, &arguments] {
            std::vector<char*> words;
            for (const char* word : arguments) {
                words.push_back(const_cast<char*>(word));
            }
            words.push_back(nullptr);
            setenv("ASAN_OPTIONS", "detect_leaks=0", 1); // impossible in a traced process
            return chdir(work_dir.c_str()) == 0 && freopen("/dev/null", "w", stdout) != nullptr
                       ? execv(words[0], words.data())
                       : 127;
        };
        prepare();
        const Fate whole = suffer({.kill_at_call = never}, run);
        ASSERT_EQ(whole.status, 0);
        const int rounds = number_from_environment("KIGUMI_FAULTS", 3);
        Dice dice(seed_of_run());
        for (int round = 0; round < rounds; ++round) {
            prepare();
            // The last calls write, the first ones load the program.
            const int call = whole.calls - 1 - dice.roll(whole.calls / 4);
            EXPECT_TRUE(suffer({.kill_at_call = call}, run).killed);
            check(text_format("seed %u, call %d of %d", dice.seed(), call, whole.calls));
        }
        EXPECT_EQ(suffer({}, run).status, 0);
        EXPECT_EQ(temporaries(work_dir), 0);
    }
};

TEST_F(ProgramsTest, PicturesAreWholeOrOld) {
    for (const char* file : {"a.png", "a.svg", "a.pdf"}) {
        size_t whole = 0;
        kill_often(
            {KIGUMI_PROGRAM, "draw", "frame.jik", "--size", "200x100", "-o", file},
            [&] {
                whole = std::max(whole, bytes_of(work_file(work_dir, file)).size());
                std::ofstream(work_file(work_dir, file)) << "old";
            },
            [&](const std::string& what) {
                const std::string bytes = bytes_of(work_file(work_dir, file));
                EXPECT_TRUE(bytes == "old" || bytes.size() >= whole) << file << " " << what;
                EXPECT_LE(temporaries(work_dir), 1);
            });
    }
}

TEST_F(ProgramsTest, SolverLeavesWholeResultsOrNoneThatAreRead) {
    const char* names[] = {"frameslv.zlv", "frameslv.lst", "frameslv.dsp"};
    std::map<std::string, std::string> whole;
    const auto prepare = [&] {
        for (const char* name : names) {
            if (fs::exists(work_file(work_dir, name)) && whole.size() < 3) {
                whole[name] = bytes_of(work_file(work_dir, name));
            }
            fs::remove(work_file(work_dir, name));
        }
    };
    kill_often({KIGUMI_SOLVER}, prepare, [&](const std::string& what) {
        int present = 0;
        for (const char* name : names) {
            present += fs::exists(work_file(work_dir, name)) ? 1 : 0;
            EXPECT_TRUE(!fs::exists(work_file(work_dir, name)) ||
                        bytes_of(work_file(work_dir, name)) == whole[name])
                << name << " " << what;
        }
        EXPECT_EQ(FrameSlv(model, result, work_dir), present == 3 ? 0 : -1);
        EXPECT_EQ(take_messages().size(), present == 3 ? 0u : 1u);
    });
}

} // namespace

} // namespace kigumi::test
