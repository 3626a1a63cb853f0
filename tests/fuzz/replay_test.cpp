// Plays the kept inputs of every fuzz target, without a fuzzer.
#include "target.h"

#include <gtest/gtest.h>

#include <memory>

namespace kigumi::fuzz {

static void PrintTo(const Target& target, std::ostream* out) {
    *out << target.name;
}

namespace {

class ReplayTest : public ::testing::TestWithParam<Target> {};

// A broken promise ends the program; the last name printed is the input.
void replay(Project& project, const Target& target, const fs::path& path) {
    const auto input = read_file(path);
    ASSERT_TRUE(input.has_value()) << path;
    SCOPED_TRACE(path.string());
    std::fprintf(stderr, "%s\n", utf8_of(path).c_str());
    const std::vector<char> exact(input->begin(), input->end()); // nothing may be read behind it
    target.run(project, {exact.data(), exact.size()});
}

TEST_P(ReplayTest, KeptInputsBreakNoPromise) {
    const auto project = std::make_unique<Project>();
    start_targets(*project);
    const Target target = GetParam();
    int played = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(KIGUMI_CORPUS_DIR) / target.name)) {
        replay(*project, target, entry.path());
        ++played;
    }
    EXPECT_GT(played, 1);
    for (const auto& entry : fs::directory_iterator(KIGUMI_BROKEN_DIR)) {
        if (utf8_of(entry.path().filename()).starts_with(std::string(target.name) + "-")) {
            replay(*project, target, entry.path());
        }
    }
    target.run(*project, "");
}

std::string name_of(const ::testing::TestParamInfo<Target>& played) {
    return played.param.name;
}

INSTANTIATE_TEST_SUITE_P(All, ReplayTest, ::testing::ValuesIn(all_targets()), name_of);

} // namespace

} // namespace kigumi::fuzz
