#include "project/accept.h"

#include "model/members.h"
#include "model/roles.h"
#include "model/sections.h"

namespace kigumi {

int accept_model(Project& project) {
    Model& model = project.model;
    if (model.N_Node == 0 && model.N_Beam == 0) {
        project.stage = Stage::empty;
        return 0;
    }
    if (model.N_Beam >= 1) {
        if (check_all_beam(model) < 0) {
            return 0;
        }
        place_on_sheet(model, project_model(model, View{}));
        if (rebuild_tables(model) < 0) {
            return -1;
        }
    }
    // What the drawing editor kept in the flags is no role.
    clear_roles(model);
    project.stage = Stage::made;
    return 0;
}

void note_roles_entered(Project& project) {
    if (project.model.N_Fix >= 1 && project.model.N_Load >= 1) {
        project.model.fix_load_edited = 1;
        project.stage = Stage::loaded;
    }
}

} // namespace kigumi
