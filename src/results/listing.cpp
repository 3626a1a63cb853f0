#include "results/listing.h"

#include "analysis/result.h"
#include "base/message.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

// Deliberate: this one line ends in LF CR.
constexpr std::string_view heading =
    " No    部材　Ｉ節点　節点名  J節点  節点名    軸力       最大値％\n\r";

} // namespace

int save_listing(const Result& result, const fs::path& path) {
    spy("Enter save_listing()");
    if (result.N_Stress <= 0) {
        show_message("保存するデータが存在しない");
        return -1;
    }
    TextWriter writer;
    constexpr size_t usual_line = 80;
    writer.reserve((static_cast<size_t>(result.N_Stress) + 2) * usual_line);
    writer.line("%s %5d", utf8_of(path).c_str(), result.N_Stress);
    writer.text(heading);
    for (int i = 0; i < result.N_Stress; ++i) {
        const Stress& s = result.stress[i];
        writer.line(" %5d %5d %5d %s %5d %s %12.5e %10.1f", number_at(i), s.no, s.old_noi, s.iname,
                    s.old_noj, s.jname, s.force, s.percent);
    }
    std::string reason;
    return writer.save(path, &reason) < 0 ? refuse("書きこみに失敗しました", reason) : 0;
}

} // namespace kigumi
