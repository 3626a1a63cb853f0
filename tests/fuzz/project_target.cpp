// Project files.
#include "target.h"

#include "project/project_fault.h"
#include "project/project_file.h"

#include <memory>

namespace kigumi::fuzz {

void read_project(Project& project, std::string_view input) {
    start_fresh(project);
    const std::string before = project_text(project);
    Fault fault;
    if (parse_project(input, project, fault) < 0) {
        KIGUMI_CHECK(!fault.sentence.empty() && !fault.reason.empty(), "refused in silence");
        KIGUMI_CHECK(project_text(project) == before, "a part of the file stays");
        return;
    }
    const char* unsound = find_project_fault(project);
    KIGUMI_CHECK(unsound == nullptr, "%s", unsound);
    const std::string written = project_text(project);
    const auto again = std::make_unique<Project>();
    const int status = parse_project(written, *again, fault);
    KIGUMI_CHECK(status == 0, "what was read is not written: %s", fault.text().c_str());
    KIGUMI_CHECK(project_text(*again) == written, "another text of the same project");
}

} // namespace kigumi::fuzz
