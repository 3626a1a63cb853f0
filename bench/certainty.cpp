// Searches for errors that the solver does not tell of: random frames whose numbers are far apart,
// and frames that are changed step by step so that the error grows, against a dense solution in 256
// bits.
//
//     certainty [RANDOM CLIMBED SEED]
#include "../tests/solver/reference.h"

#include <mpfr.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr mpfr_prec_t bits = 256;

class Long {
  public:
    Long() { mpfr_init2(value_, bits); }
    explicit Long(double from) : Long() { mpfr_set_d(value_, from, MPFR_RNDN); }
    Long(const Long& other) : Long() { mpfr_set(value_, other.value_, MPFR_RNDN); }
    Long(Long&& other) noexcept : Long() { mpfr_swap(value_, other.value_); }
    Long& operator=(Long other) noexcept {
        mpfr_swap(value_, other.value_);
        return *this;
    }
    ~Long() { mpfr_clear(value_); }

    friend Long operator+(const Long& a, const Long& b) {
        Long c;
        mpfr_add(c.value_, a.value_, b.value_, MPFR_RNDN);
        return c;
    }
    friend Long operator-(const Long& a, const Long& b) {
        Long c;
        mpfr_sub(c.value_, a.value_, b.value_, MPFR_RNDN);
        return c;
    }
    friend Long operator*(const Long& a, const Long& b) {
        Long c;
        mpfr_mul(c.value_, a.value_, b.value_, MPFR_RNDN);
        return c;
    }
    friend Long operator/(const Long& a, const Long& b) {
        Long c;
        mpfr_div(c.value_, a.value_, b.value_, MPFR_RNDN);
        return c;
    }
    friend double to_double(const Long& a) { return mpfr_get_d(a.value_, MPFR_RNDN); }
    friend Long root(const Long& a) {
        Long c;
        mpfr_sqrt(c.value_, a.value_, MPFR_RNDN);
        return c;
    }
    friend std::pair<Long, Long> cosine_sine(const Long& degrees) {
        Long pi, s, c;
        mpfr_const_pi(pi.value_, MPFR_RNDN);
        const Long angle = degrees * pi / Long(180.0);
        mpfr_sin_cos(s.value_, c.value_, angle.value_, MPFR_RNDN);
        return {c, s};
    }

  private:
    mpfr_t value_;
};

using namespace frameslv;
using frameslv::test::Answer;

struct Count {
    int solved = 0, mended = 0, warned = 0, refused = 0, beyond_bound = 0, silent_wrong = 0;
    std::array<double, 4> most{}; // silent error of each kind
    double condition = 0.0;       // highest of a frame that was solved

    void print(const char* title) const {
        std::printf("%s: solved %d (mended %d, told of lost digits %d), refused %d\n"
                    "  largest silent errors: translation %.1e rotation %.1e force %.1e moment "
                    "%.1e\n  above 1e-6: %d, above their bound: %d, highest condition %.1e\n",
                    title, solved, mended, warned, refused, most[0], most[1], most[2], most[3],
                    silent_wrong, beyond_bound, condition);
    }
};

// The largest silent error of the frame; negative when it is refused.
double look(const Model& model, Count& count, double& condition) {
    Solution solution;
    double arm = 1.0;
    bool silent = true;
    if (!test::try_to_solve(model, solution, arm, silent)) {
        count.refused++;
        return -1.0;
    }
    const Answer exact = test::Reference<Long>(model).solve();
    const auto errors = test::errors_of(solution, exact, arm);
    const auto bounded = test::errors_of(solution, exact, arm, 1e-7); // as the bounds are
    constexpr double printed = 1e-14; // the reference itself is rounded to double
    constexpr double wrong = 1e-6;
    count.solved++;
    count.mended += solution.certainty.mended;
    count.warned += !silent;
    condition = solution.certainty.condition;
    count.condition = std::max(count.condition, condition);
    double most = 0.0;
    bool beyond = false;
    for (size_t k = 0; k < 4; k++) {
        beyond = beyond || bounded[k] > 2.0 * solution.certainty.bound[k] + printed;
        if (silent)
            count.most[k] = std::max(count.most[k], errors[k]);
        most = std::max(most, errors[k]);
    }
    count.beyond_bound += beyond;
    count.silent_wrong += silent && !(most <= wrong);
    return silent ? most : 0.0;
}

// Higher is worse: the error first, then how near to refusal the frame is.
double worth(double error, double condition) {
    return error < 0.0 ? -1e9 : std::log10(error + 1e-17) + 0.1 * std::log10(condition);
}

void climb(std::mt19937& random, Count& count) {
    constexpr int steps = 25;
    Model best = test::hard_frame(random);
    double condition = 1.0;
    double height = worth(look(best, count, condition), condition);
    for (int step = 0; step < steps; step++) {
        Model next = best;
        test::change_frame(next, random);
        const double there = worth(look(next, count, condition), condition);
        if (there > height) {
            height = there;
            best = next;
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    const int random_frames = argc > 1 ? std::atoi(argv[1]) : 3000;
    const int climbs = argc > 2 ? std::atoi(argv[2]) : 2000;
    std::mt19937 random(argc > 3 ? static_cast<unsigned>(std::atoi(argv[3])) : 1U);
    Count drawn, climbed;
    double condition = 1.0;
    for (int k = 0; k < random_frames; k++)
        look(test::hard_frame(random), drawn, condition);
    drawn.print("random frames");
    std::fflush(stdout);
    for (int k = 0; k < climbs; k++)
        climb(random, climbed);
    climbed.print("frames of the climbs");
    return drawn.silent_wrong + climbed.silent_wrong == 0 ? 0 : 1;
}
