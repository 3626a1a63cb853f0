// The generation driver.
#include "base/message.h"
#include "generate/generate.h"
#include "model/nodes.h"
#include "solid/solid.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

void trace_param(const Param& param) {
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

int make_floor(Model& model, const Param& param) {
    struct Step {
        int (*run)(Model& model, const Param& param);
        const char* passed;
    };
    constexpr Step steps[] = {
        {make_hashira, "Pass make_hashira()"}, {make_waku, "Pass make_waku()"},
        {make_genzai, "Pass make_genzai()"},   {make_shazai, "Pass make_shazai()"},
        {make_sujikai, "Pass make_sujikai()"},
    };
    for (const Step& step : steps) {
        if (step.run(model, param) < 0) {
            return -1;
        }
        spy(step.passed);
    }
    return 0;
}

int make_top(Model& model, const Param& param) {
    if (param.YaneMode == -1) {
        return make_terrace(model, param);
    }
    if (param.YaneMode != 1) {
        return 0;
    }
    if (param.N_Sou == 3) {
        write_console("３層屋根付は含まれません");
        spy("３層屋根付は含まれません");
        return 0;
    }
    return param.N_Sou == 1 || param.N_Sou == 2 ? make_yane2(model, param) : 0;
}

int make_storeys(Model& model, const Param& param) {
    if (make_gaichu(model, param) < 0) {
        return -1;
    }
    if (param.N_Sou == 2 && make_2kai(model, param) < 0) {
        return -1;
    }
    if (param.N_Sou == 3 && make_3kai(model, param) < 0) {
        return -1;
    }
    return make_top(model, param);
}

} // namespace

int make_unit(Model& model, const Param& param, Solids& solids) {
    trace_param(param);
    reset_model(model);
    reset_solids(solids);
    clear_points(solids);
    if (make_floor(model, param) < 0) {
        return -1;
    }
    if (param.SouMode == 1 && make_storeys(model, param) < 0) {
        return -1;
    }
    if (sort_node(model) < 0) {
        return -1;
    }
    make_men(model, solids);
    return 0;
}

} // namespace kigumi
