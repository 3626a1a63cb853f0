// The legend of a result picture: what its colours and widths mean, with the largest values.
#pragma once

#include "analysis/result_input.h"

#include <string>
#include <vector>

namespace kigumi {

struct ResultView;

// One line of the legend.
struct LegendLine {
    int colour = -1; // PenColour of the sample line; -1 for words alone
    int width = 1;   // of the sample, pixels
    std::string words;
};

// The legend of the picture as `shown` says: signs and colours, band, largest tension and
// compression (kgf), magnification and largest displacement (cm), the selection. `scale` is the
// magnification of the displaced shape. It begins with the words for results that are not of the
// present input. Empty for a mode without a picture.
std::vector<LegendLine> result_legend(const Result& result, const ResultView& shown, float scale,
                                      ResultAge age);

// What the picture shows, in a few words: "太さ色分", "変位10倍　古い結果"; for its title.
std::string result_title(const ResultView& shown, float scale, ResultAge age);

} // namespace kigumi
