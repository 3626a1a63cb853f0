// What a run is asked for beyond the linear static solution.
#pragma once

namespace frameslv {

enum class MassKind { lumped, consistent };

struct Settings {
    int threads = 0;          // most threads; 0: as many as the machine has, where they help
    bool self_weight = false; // members weigh density x A a unit of length
    bool p_delta = false;     // second order
    int modes = 0;            // how many natural modes
    int buckling = 0;         // how many critical load factors
    bool check = false;       // read and report only
    MassKind mass = MassKind::consistent;
    // Mass = weight / gravity, in the units of the file: 980.665 for cm, kgf and s.
    double gravity = 980.665;
};

} // namespace frameslv
