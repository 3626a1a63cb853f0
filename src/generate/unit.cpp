// The generation driver.
#include "base/message.h"
#include "generate/generate.h"
#include "geometry/solid.h"
#include "model/lookup.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

void trace_param() {
    spy("NX %5d", param.NX);
    spy("NY %5d", param.NY);
    spy("TukaHaba %12.5e", param.TukaHaba);
    spy("TukaAtumi %12.5e", param.TukaAtumi);
    spy("WakuHaba %12.5e", param.WakuHaba);
    spy("GenHaba %12.5e", param.GenHaba);
    spy("ShaHaba %12.5e", param.ShaHaba);
    spy("Hashira %12.5e", param.Hashira);
    spy("Sujikai %12.5e", param.Sujikai);
    spy("SouMode %5d N_Sou %5d YaneMode %5d", param.SouMode, param.N_Sou, param.YaneMode);
}

int make_floor() {
    struct Step {
        int (*run)();
        const char* passed;
    };
    constexpr Step steps[] = {
        {make_hashira, "Pass make_hashira()"}, {make_waku, "Pass make_waku()"},
        {make_genzai, "Pass make_genzai()"},   {make_shazai, "Pass make_shazai()"},
        {make_sujikai, "Pass make_sujikai()"},
    };
    for (const Step& step : steps) {
        if (step.run() < 0) {
            return -1;
        }
        spy(step.passed);
    }
    return 0;
}

int make_top() {
    if (param.YaneMode == -1) {
        return make_terrace();
    }
    if (param.YaneMode != 1) {
        return 0;
    }
    if (param.N_Sou == 3) {
        write_console("３層屋根付は含まれません");
        spy("３層屋根付は含まれません");
        return 0;
    }
    return param.N_Sou == 1 || param.N_Sou == 2 ? make_yane2() : 0;
}

int make_storeys() {
    if (make_gaichu() < 0) {
        return -1;
    }
    if (param.N_Sou == 2 && make_2kai() < 0) {
        return -1;
    }
    if (param.N_Sou == 3 && make_3kai() < 0) {
        return -1;
    }
    return make_top();
}

} // namespace

int make_unit() {
    trace_param();
    reset_model();
    clear_points();
    if (make_floor() < 0) {
        return -1;
    }
    if (param.SouMode == 1 && make_storeys() < 0) {
        return -1;
    }
    if (sort_node() < 0) {
        return -1;
    }
    make_men();
    return 0;
}

} // namespace kigumi
