// No error that is not told: hard frames against a dense solution in four times the digits, the
// bounds beside the errors, and what is refused. bench/certainty.cpp is the long form.
#include "reference.h"
#include "support.h"

#include "solver/precise/members.h"

#include <cstring>

namespace frameslv::test {

namespace {

// 33 digits.
struct Quad {
    __extension__ typedef __float128 Value;
    Value value = 0;

    Quad() = default;
    explicit Quad(double from) : value(from) {}
    static Quad made(Value value) {
        Quad quad;
        quad.value = value;
        return quad;
    }
    friend Quad operator+(Quad a, Quad b) { return made(a.value + b.value); }
    friend Quad operator-(Quad a, Quad b) { return made(a.value - b.value); }
    friend Quad operator*(Quad a, Quad b) { return made(a.value * b.value); }
    friend Quad operator/(Quad a, Quad b) { return made(a.value / b.value); }
    friend double to_double(Quad a) { return static_cast<double>(a.value); }
    friend Quad root(Quad a) {
        Quad x(std::sqrt(to_double(a)));
        for (int k = 0; k < 3 && to_double(x) > 0.0; k++)
            x = (x + a / x) / Quad(2.0);
        return x;
    }
    friend std::pair<Quad, Quad> cosine_sine(Quad degrees) {
        const Quad pi = Quad(3.141592653589793116) + Quad(1.2246467991473532072e-16) +
                        Quad(-2.9947698097183396659e-33);
        const Quad x = degrees * pi / Quad(180.0);
        Quad sums[2];
        Quad term(1.0);
        for (int n = 0; n < 120; n++) {
            sums[n % 2] = n % 4 < 2 ? sums[n % 2] + term : sums[n % 2] - term;
            term = term * x / Quad(n + 1.0);
        }
        return {sums[0], sums[1]};
    }
};

struct Outcome {
    int solved = 0, refused = 0, mended = 0;
    double most = 0.0; // silent error
};

// Expects the frame to be right or refused, and its error within the bound that is told.
void expect_right(const Model& model, Outcome& outcome, const std::string& what) {
    Solution solution;
    double arm = 1.0;
    bool silent = true;
    if (!try_to_solve(model, solution, arm, silent)) {
        outcome.refused++;
        return;
    }
    outcome.solved++;
    outcome.mended += solution.certainty.mended;
    const Answer exact = Reference<Quad>(model).solve();
    const auto literal = errors_of(solution, exact, arm);
    const auto errors = errors_of(solution, exact, arm, 1e-7);
    for (size_t k = 0; k < kind_count; k++) {
        EXPECT_LE(errors[k], 2.0 * solution.certainty.bound[k] + 1e-13) << what << " kind " << k;
        if (silent) {
            EXPECT_LE(literal[k], 1e-6) << what << " kind " << k;
            outcome.most = std::max(outcome.most, literal[k]);
        }
    }
}

Model row(const std::vector<double>& x, unsigned stiff, double ratio, const Six& load) {
    Model model;
    for (const double at : x)
        model.node.push_back({{at, 0.0, 0.0}, {}, {}, {}});
    for (int k = 1; k < static_cast<int>(x.size()); k++)
        model.member.push_back({k, k + 1, (stiff >> (k - 1)) % 2 == 0 ? 1 : 2, 1, 0.0});
    model.section = {{1.0, 2.0, 1.0, 1.0}, {ratio, 2.0 * ratio, 1.0, ratio}};
    model.material = {{1e5, 0.3, 0.0}};
    model.node.front().held.fill(true);
    model.node.back().load = load;
    return model;
}

} // namespace

TEST(CertaintyTest, RowsOfFarApartInertia) {
    Outcome seven, eight;
    for (unsigned stiff = 0; stiff < 64; stiff++)
        expect_right(row({0, 40, 100, 160, 740, 970, 980}, stiff, 1e7, {0, 3, -2, 0, 0, 0}), seven,
                     "seven nodes " + std::to_string(stiff));
    for (unsigned stiff = 0; stiff < 128; stiff++)
        for (const double ratio : {1e8, 1e10})
            expect_right(row({0, 1, 2, 60, 61, 400, 403, 1000}, stiff, ratio, {0, 0, 0, 7, 1, -5}),
                         eight, "eight nodes " + std::to_string(stiff));
    std::printf("seven nodes: %d solved (%d mended), %d refused, error %.1e\n"
                "eight nodes: %d solved (%d mended), %d refused, error %.1e\n",
                seven.solved, seven.mended, seven.refused, seven.most, eight.solved, eight.mended,
                eight.refused, eight.most);
    EXPECT_GT(seven.solved, 32);
    EXPECT_GT(seven.mended + eight.mended, 10);
}

TEST(CertaintyTest, RandomAndClimbedFrames) {
    std::mt19937 random(7);
    Outcome outcome;
    for (int k = 0; k < 60; k++)
        expect_right(hard_frame(random), outcome, "frame " + std::to_string(k));
    for (int k = 0; k < 10; k++) {
        Model model = hard_frame(random);
        for (int step = 0; step < 8; step++) {
            change_frame(model, random);
            expect_right(model, outcome, "climb " + std::to_string(k));
        }
    }
    EXPECT_GT(outcome.solved, 130);
    EXPECT_GT(outcome.mended, 5);
}

// Beyond what can be mended there is no result but a line that says so.
TEST_F(SolverTest, UselessBoundsAreRefused) {
    Frame f;
    for (const double x : {0, 1, 2, 60, 61, 400, 403, 1000})
        f.node.emplace_back(x, 0, 0);
    for (const int section : {2, 1, 2, 1, 2, 2, 1})
        f.member.push_back({static_cast<int>(f.member.size()) + 1,
                            static_cast<int>(f.member.size()) + 2, section});
    f.section = {{1, 2, 1, 1}, {1e10, 2e10, 1, 1e10}};
    f.material = {{1e5, 0.3}};
    f.support = {{1}};
    f.load = {{8, six(0, 0, 0, 7, 1, -5)}};
    const Results r = run(f);
    EXPECT_EQ(r.code, 6) << r.out;
    EXPECT_NE(r.err.find("結果の誤差を確かめられません"), std::string::npos) << r.err;
    EXPECT_FALSE(exists("frameslv.lst"));
}

// Every processor gets the same bits.
TEST(CertaintyTest, RegistersOfAnyWidthAgree) {
    std::mt19937 random(3);
    PreciseBatch batch{};
    const auto draw = [&] { return std::uniform_real_distribution<double>(1.0, 9.0)(random); };
    for (size_t k = 0; k < PreciseBatch::members; k++) {
        for (size_t i = 0; i < 3; i++) {
            batch.at_i[i][k] = draw();
            batch.at_j[i][k] = 20.0 * draw();
        }
        batch.vertical[k] = k % 3 == 0 ? 1.0 : 0.0;
        for (auto* values : {batch.E, batch.G[0], batch.A, batch.Iy, batch.Iz, batch.J,
                             batch.tension, batch.cosine[0], batch.sine[0]})
            values[k] = draw();
        for (auto& value : batch.moved)
            value[0][k] = draw() - 5.0;
    }
    batch.turned = batch.tense = true;
    const PreciseForces* all = usable_precise_forces();
    (*all)(batch);
    for (; *all != nullptr; all++) {
        PreciseBatch other = batch;
        std::memset(other.local, 0, sizeof other.local);
        (*all)(other);
        EXPECT_EQ(std::memcmp(other.local, batch.local, sizeof batch.local), 0);
        EXPECT_EQ(std::memcmp(other.global, batch.global, sizeof batch.global), 0);
    }
}

} // namespace frameslv::test
