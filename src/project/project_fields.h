// The single fields of the project file's objects, once for writing and reading.
#pragma once

#include "project/project.h"

#include <cstdint>
#include <limits>

namespace kigumi {

constexpr std::int32_t any_lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t any_highest = std::numeric_limits<std::int32_t>::max();

// Calls visit(name, value) for every number and visit(name, value, lowest, highest) for every whole
// number, in the order of the file, until one answers false. `AnyParam` is Param, const or not.
template <class AnyParam, class Visit> bool visit_param(AnyParam& p, Visit visit) {
    return visit("NX", p.NX, any_lowest, any_highest) &&
           visit("NY", p.NY, any_lowest, any_highest) && visit("TukaHaba", p.TukaHaba) &&
           visit("TukaAtumi", p.TukaAtumi) && visit("Hashira", p.Hashira) &&
           visit("WakuHaba", p.WakuHaba) && visit("GenHaba", p.GenHaba) &&
           visit("ShaHaba", p.ShaHaba) && visit("Sujikai", p.Sujikai) &&
           visit("Lowest", p.Lowest) && visit("HashiraHeight1", p.HashiraHeight1) &&
           visit("HashiraHeight2", p.HashiraHeight2) && visit("HashiraHeight3", p.HashiraHeight3) &&
           visit("YaneHashira", p.YaneHashira) && visit("YaneTakasa", p.YaneTakasa) &&
           visit("Takasa", p.Takasa) && visit("SumiType", p.SumiType, 0, 2) &&
           visit("N_Sou", p.N_Sou, 0, 3) && visit("YaneMode", p.YaneMode, -1, 1) &&
           visit("SouMode", p.SouMode, 0, 1) && visit("YaneType", p.YaneType, 1, 2) &&
           visit("YaneHashiraHaba", p.YaneHashiraHaba) && visit("KetaHaba", p.KetaHaba) &&
           visit("KetaAtumi", p.KetaAtumi) && visit("SumiGashoHaba", p.SumiGashoHaba) &&
           visit("SumiGashoAtumi", p.SumiGashoAtumi) && visit("HiraGashoHaba", p.HiraGashoHaba) &&
           visit("HiraGashoAtumi", p.HiraGashoAtumi) && visit("HiuchiHaba", p.HiuchiHaba) &&
           visit("HiuchiAtumi", p.HiuchiAtumi) && visit("MoyaHaba", p.MoyaHaba) &&
           visit("MoyaAtumi", p.MoyaAtumi);
}

// The same of the view.
template <class AnyView, class Visit> bool visit_view(AnyView& v, Visit visit) {
    return visit("TAU", v.TAU) && visit("FAI", v.FAI) && visit("Rho", v.Rho) &&
           visit("Theta", v.Theta) && visit("Phi", v.Phi) &&
           visit("perspective", v.perspective, 0, 1) && visit("joints", v.joints, 0, 1);
}

// The same of what new records and picking start with, and other single values of the model.
template <class AnyModel, class Visit> bool visit_defaults(AnyModel& m, Visit visit) {
    return visit("E", m.default_E) && visit("poisson", m.default_poisson) &&
           visit("density", m.default_density) && visit("snap_radius", m.snap_radius);
}

// The columns of the section and material tables, in the order of a row.
template <class AnyTable> auto section_columns(AnyTable& t) {
    return std::array{t.haba.data(), t.atumi.data(), t.length.data(), t.A.data(),
                      t.Iy.data(),   t.Iz.data(),    t.J.data(),      t.angle.data()};
}
template <class AnyTable> auto material_columns(AnyTable& t) {
    return std::array{t.E.data(), t.poisson.data(), t.density.data()};
}

// The stages by their names in the file, in their order.
constexpr const char* stage_names[] = {"empty", "reading", "made", "loaded"};

} // namespace kigumi
