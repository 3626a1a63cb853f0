#include "solid/solid.h"

#include "solid/solid_support.h"
#include "support.h"

#include <cmath>
#include <map>
#include <set>

namespace kigumi::test {

namespace {

using SolidTest = CoreTest;

double distance(const SolidPoint& a, const SolidPoint& b) {
    return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
}

// Every edge (pair of point numbers) belongs to two triangles.
void expect_closed(const Solids& solids) {
    std::map<std::set<int>, int> edges;
    for (const Trio& trio : solids.trio) {
        for (int i = 0; i < 3; ++i) {
            ++edges[{trio.bangou[i], trio.bangou[(i + 1) % 3]}];
        }
    }
    for (const auto& [edge, count] : edges) {
        EXPECT_EQ(count, 2) << *edge.begin() << "-" << *edge.rbegin();
    }
}

std::vector<int> corners(const Solids& solids, int first, int count) {
    std::vector<int> all;
    for (int i = first; i < first + count; ++i) {
        const Trio& t = solids.trio[i];
        all.insert(all.end(), std::begin(t.bangou), std::end(t.bangou));
    }
    return all;
}

TEST_F(SolidTest, BoxAsWritten) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    EXPECT_FLOAT_EQ(solids.Volume, 0.02f);
    expect_golden("solid/trio_box.txt",
                  hex_dump(read_file(work_file(work_dir, "TRIO.DAT")).value_or("")));
}

// The middle of four points.
SolidPoint middle(const Solids& solids, int first) {
    SolidPoint sum{};
    for (int i = first; i < first + 4; ++i) {
        sum.x += solids.points[i].x / 4;
        sum.y += solids.points[i].y / 4;
        sum.z += solids.points[i].z / 4;
    }
    return sum;
}

TEST_F(SolidTest, BoxEndsAtItsEndWithItsSectionInEveryDirection) {
    // Backwards, down, rising, falling, steep.
    const float ways[][3] = {
        {-300, 0, 0}, {0, 0, -300}, {200, 100, 150}, {200, 100, -150}, {-1, 2, -400}};
    for (const auto& [x, y, z] : ways) {
        SCOPED_TRACE(z);
        clear_points(solids);
        reset_solids(solids);
        ASSERT_EQ(make_kakuzai3(solids, 500, -200, 100, 500 + x, -200 + y, 100 + z, 10, 20), 0);
        ASSERT_EQ(solids.points.size(), 8u);
        const auto& p = solids.points;
        // The rotation's truncated pi turns the far end aside by up to 3e-6 of the length.
        const double tolerance = 2e-3;
        EXPECT_NEAR(distance(middle(solids, 0), {0, 500, -200, 100}), 0, tolerance);
        EXPECT_NEAR(distance(middle(solids, 4), {0, 500 + x, -200 + y, 100 + z}), 0, tolerance);
        EXPECT_NEAR(distance(p[0], p[1]), 10, tolerance);
        EXPECT_NEAR(distance(p[1], p[2]), 20, tolerance);
        EXPECT_NEAR(distance(p[0], p[4]), std::hypot(x, y, z), tolerance);
        EXPECT_NEAR(p[0].z, p[1].z, tolerance) << "the width lies level";
        EXPECT_GT(p[0].z - p[3].z, -tolerance) << "the upper edge is above";
    }
}

TEST_F(SolidTest, MemberWithoutLengthStaysFinite) {
    ASSERT_EQ(make_kakuzai3(solids, 1, 2, 3, 1, 2, 3, 10, 20), 0);
    ASSERT_EQ(make_enchu2(solids, 1, 2, 3, 1, 2, 3, 10, 20), 0);
    EXPECT_EQ(solids.n_trio, 36);
    EXPECT_EQ(solids.points.front().y, 2 - 5);
    EXPECT_EQ(solids.points.front().z, 3 + 10);
    EXPECT_EQ(solids.Volume, 0.0f);
    for (const SolidPoint& p : solids.points) {
        EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) << p.no;
    }
}

TEST_F(SolidTest, PrismHasTwoFansAndSixSplitSides) {
    ASSERT_EQ(make_enchu2(solids, 0, 0, 0, 200, 0, 0, 6, 99), 0);
    ASSERT_EQ(solids.points.size(), 14u);
    ASSERT_EQ(solids.n_trio, 24);
    EXPECT_FLOAT_EQ(solids.Volume, static_cast<float>(0.01 * 200 * 6 * 3.141592654));
    expect_closed(solids);
    for (const Trio& trio : solids.trio) {
        EXPECT_EQ(trio.hyoji, 7);
    }
    EXPECT_EQ(solids.points[0].y, -6);
    EXPECT_NEAR(solids.points[1].y, -3, 1e-5);
    EXPECT_NEAR(solids.points[1].z, 6 * std::sqrt(3.0) / 2, 1e-5);
    EXPECT_EQ(corners(solids, 0, 2), (std::vector<int>{1, 2, 13, 2, 3, 13}));
    EXPECT_EQ(corners(solids, 5, 2), (std::vector<int>{6, 1, 13, 7, 8, 14}));
    EXPECT_EQ(corners(solids, 12, 1), (std::vector<int>{1, 2, 7}));
    EXPECT_EQ(corners(solids, 17, 2), (std::vector<int>{6, 1, 12, 2, 8, 7}));
    EXPECT_EQ(corners(solids, 23, 1), (std::vector<int>{1, 7, 12}));
}

TEST_F(SolidTest, PointsAreSharedByExactEqualityOnly) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    add_member(model, {100, 0, 0}, {200, 0, 0});
    make_men(model, solids);
    EXPECT_EQ(solids.points.size(), 12u);
    EXPECT_EQ(solids.trio[0].bangou[2], solids.trio[12].bangou[1]);
    make_men(model, solids);
    EXPECT_EQ(solids.points.size(), 12u) << "an identical build adds none";
    EXPECT_EQ(solids.n_trio, 24);
    EXPECT_FLOAT_EQ(solids.Volume, 0.04f);

    const int zero = register_point(solids, 0.0f, 7, 7);
    EXPECT_EQ(register_point(solids, -0.0f, 7, 7), zero);
    EXPECT_EQ(register_point(solids, 0.0f, std::nextafter(7.0f, 8.0f), 7), zero + 1);
}

TEST_F(SolidTest, FullPointTableRefusesButABuildStillFits) {
    for (int i = 0; i < point_capacity; ++i) {
        ASSERT_EQ(register_point(solids, static_cast<float>(i), 0, 0), i + 1);
    }
    EXPECT_EQ(register_point(solids, 0.5f, 0, 0), -1);
    EXPECT_EQ(register_point(solids, 7.0f, 0, 0), 8);
    EXPECT_EQ(make_kakuzai3(solids, 0, 0, 0, 100, 0, 0, 10, 20), -1);
    EXPECT_EQ(solids.n_trio, 0);
    expect_messages({2, "頂点が多すぎます（最大 140000 個）"});
    add_member(model, {0, 0, 0}, {100, 0, 0});
    EXPECT_EQ(build_trio_file(model, solids, work_dir), 0);
    EXPECT_EQ(solids.points.size(), 8u);
}

TEST_F(SolidTest, MakeMenStopsAtAFlatMemberAndTheFileDoesNot) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    add_member(model, {0, 0, 0}, {0, 100, 0}, 10, 0);
    add_member(model, {0, 0, 0}, {0, 0, 100});
    ::testing::internal::CaptureStderr();
    make_men(model, solids);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "width or depth = 0.0 at     1\n");
    EXPECT_EQ(solids.n_trio, 12);
    EXPECT_EQ(build_trio_file(model, solids, work_dir), 0);
    EXPECT_EQ(solids.n_trio, 36);

    model.N_Beam = 0;
    ::testing::internal::CaptureStderr();
    make_men(model, solids);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "N_Beam == 0\n");
}

// Another program in the folder may write the file; this one shows and exports what it built.
TEST_F(SolidTest, RecordsAreThoseOfTheMemoryWhateverTheFileHolds) {
    const fs::path path = work_file(work_dir, "TRIO.DAT");
    ASSERT_EQ(save_file(path, std::string(sizeof(Trio), '\1')), 0);
    EXPECT_FALSE(saved_records(solids)) << "nothing built, and the file is another's";
    add_member(model, {0, 0, 0}, {100, 0, 0});
    make_men(model, solids);
    EXPECT_FALSE(saved_records(solids)) << "not saved yet";
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    const std::uint32_t edition = trio_edition(solids);
    ASSERT_EQ(save_file(path, std::string(sizeof(Trio), '\1')), 0);
    ASSERT_TRUE(saved_records(solids));
    EXPECT_EQ(saved_records(solids)->data(), solids.trio.data());
    EXPECT_EQ(saved_records(solids)->size(), 12u);
    fs::remove(path);
    EXPECT_TRUE(saved_records(solids));
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    EXPECT_NE(trio_edition(solids), edition);
    reset_solids(solids);
    EXPECT_FALSE(saved_records(solids)) << "the solids of an earlier model";
}

} // namespace

} // namespace kigumi::test
