#include "solver/frame_analysis.h"

#include "solver/frame/input_check.h"
#include "solver/frame/solver.h"

namespace frame_analysis {

Analysis analyse(const Frame& frame, const std::vector<LoadVector>& loads, int most_threads,
                 int most_rounds) {
    Analysis analysis;
    analysis.fault = check(frame);
    for (const LoadVector& load : loads)
        if (analysis.fault.empty())
            analysis.fault = check(frame, load);
    if (analysis.fault.empty())
        Solver(frame, loads, most_threads, most_rounds, analysis).run();
    return analysis;
}

Six internal_forces(const Frame& frame, const LoadVector& load, const Response& response,
                    size_t member, double distance) {
    const Jointed own = make_jointed(frame, frame.members[member]);
    const Six& end = response.end_force[member][0];
    Eigen::Vector3d force(end[0], end[1], end[2]); // on the part before the section
    Eigen::Vector3d moment(end[3], end[4], end[5]);
    const Eigen::Vector3d along(distance, 0.0, 0.0);
    moment -= along.cross(force); // about the section: arm from there to I is -along
    const auto add = [&](const Eigen::Vector3d& more, double before) {
        force += more;
        moment -= Eigen::Vector3d(before, 0.0, 0.0).cross(more);
    };
    for (const MemberLoad& one : load.members)
        if (one.member == member) {
            const Eigen::Vector3d local = local_load(own, one);
            if (one.kind != MemberLoad::Kind::point)
                add(local * distance, distance / 2.0);
            else if (one.distance < distance)
                add(local, distance - one.distance);
        }
    const Eigen::Vector3d gravity(load.gravity[0], load.gravity[1], load.gravity[2]);
    add(own.axes * gravity * (frame.members[member].weight * distance), distance / 2.0);
    return {-force.x(), -force.y(), -force.z(), -moment.x(), -moment.y(), -moment.z()};
}

} // namespace frame_analysis
