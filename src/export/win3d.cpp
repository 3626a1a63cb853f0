#include "export/win3d.h"

#include "base/message.h"
#include "solid/solid.h"
#include "trace/spy.h"

namespace kigumi {

int save_win3d(const Solids& solids, const fs::path& path) {
    spy("N_CHOUTEN %5d N_Trio %5d", static_cast<int>(solids.points.size()), solids.n_trio);
    std::string reason;
    std::span<const Trio> records;
    if (solids.n_trio > 0) {
        const auto read = saved_records(solids);
        if (!read) {
            return refuse("Error: Unable to open TRIO_FILE 04");
        }
        records = *read;
    }
    // Usual lengths of the two kinds of line, so that the text grows in one piece.
    constexpr size_t point_bytes = 50;
    constexpr size_t face_bytes = 24;
    TextWriter out;
    out.reserve(solids.points.size() * point_bytes + records.size() * face_bytes);
    for (const SolidPoint& p : solids.points) {
        out.line(" %5d %12.5e %12.5e %12.5e", p.no, p.x, p.y, p.z);
    }
    out.line("Faces:");
    for (const Trio& trio : records) {
        out.line(" %5d %5d %5d.", trio.bangou[0], -trio.bangou[1], trio.bangou[2]);
    }
    return out.save(path, &reason) < 0 ? refuse("Error: Unable to open OUT_FILE", reason) : 0;
}

} // namespace kigumi
