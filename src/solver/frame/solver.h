// The steps of an analysis.
#pragma once

#include "solver/frame/jointed.h"
#include "solver/frame/member_pass.h"
#include "solver/model/equations.h"

namespace frame_analysis {

class Solver {
  public:
    // Both must have passed the checks of input_check.h, and must stay.
    Solver(const Frame& frame, const std::vector<LoadVector>& loads, int most_threads,
           int most_rounds, Analysis& analysis);

    void run();

  private:
    // Which members carry axial forces, one by member.
    using Carrying = std::vector<char>;
    // Where a load vector is on its way to its set of members.
    struct Search {
        Carrying now;
        std::vector<Carrying> seen;
        bool one_by_one = false;
        bool done = false;
        int rounds = 0;
        size_t changed = 0; // the member that is farthest off
    };
    template <size_t width> struct Block {
        std::vector<size_t> loads; // up to `width`
        NodeLanes<width> load, moved, left;
        std::vector<Lanes<width>> stretch;
        std::array<double, width> scale{}; // the largest load
        std::vector<double> x;
    };

    bool check_supports();
    bool set_scale(std::string& fault);
    bool factorise(std::string& fault);
    frameslv::Equations::Blocks blocks() const;
    std::string loose(const frameslv::Equations::Unknown& unknown) const;
    void estimate_condition();
    void iterate();
    void take(const std::vector<size_t>& group);
    template <size_t width> void solve(const std::vector<size_t>& loads, Block<width>& block);
    template <size_t width> void set_loads(Pass<width>& pass, Block<width>& block);
    template <size_t width> void subtract_weight(const Pass<width>& pass, NodeLanes<width>& left);
    template <size_t width> void refine(const Pass<width>& pass, Block<width>& block);
    template <size_t width> void add_corrections(Block<width>& block);
    void add_held_forces(size_t load);
    template <size_t width> void finish(const Block<width>& block, size_t lane);
    // Sets the members that carry after this answer; whether they are those that did.
    template <size_t width> bool settles(const Block<width>& block, size_t lane);
    void give_up(size_t load);
    void warn();

    const Frame& frame_;
    const std::vector<LoadVector>& loads_;
    int most_rounds_;
    Analysis& analysis_;
    std::vector<Jointed> members_;
    std::vector<size_t> one_way_; // members for tension or compression only
    std::vector<size_t> sprung_;  // nodes with springs
    double arm_ = 1.0;
    double weight_ = 0.0;                                  // of all members
    Eigen::Vector3d weight_arm_ = Eigen::Vector3d::Zero(); // times its place from the first node
    frameslv::Equations equations_;
    NodeLanes<frameslv::Kernels::wide_block> unit_weight_;
    Carrying carrying_; // of the factor
    std::vector<Search> search_;
};

} // namespace frame_analysis
