#include "model/model.h"

#include "model/nodes.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace kigumi {

namespace {

constexpr const char* labels[kind_count] = {
    "// 無印",
    "// スペース床の柱部",
    "// スペース床の枠材",
    "// スペース床の弦材",
    "// スペース床の斜材",
    "// スペース床の筋交",
    "// 小屋組の柱",
    "// 屋根柱",
    "// 屋根桁",
    "// 隅合掌",
    "// 平合掌",
    "// 火打平合掌",
    "// 母屋",
};

} // namespace

const char* kind_label(int kind) {
    return kind >= 0 && kind < kind_count ? labels[kind] : nullptr;
}

const char* kind_name(int kind) {
    const char* label = kind_label(kind);
    return label != nullptr ? label + 3 : "区分外";
}

void reset_model(Model& model) {
    model.edit.fill({});
    model.N_Node = model.N_Beam = 0;
    model.N_Size = model.N_Mat = 0;
    model.N_Fix = model.N_Load = 0;
    model.N_X = model.N_Y = model.N_Z = 0;
    model.fix_load_edited = 0;
    forget_node_index(model);
}

void set_name(char (&field)[name_bytes], const char* name) {
    constexpr std::size_t longest = name_bytes - 1;
    const std::string_view whole(name);
    const auto continues = [whole](std::size_t at) {
        return (static_cast<unsigned char>(whole[at]) & 0xC0) == 0x80;
    };
    std::size_t length = std::min(whole.size(), longest);
    while (length > 0 && length < whole.size() && continues(length)) {
        --length;
    }
    std::memcpy(field, whole.data(), length);
    field[length] = '\0';
}

} // namespace kigumi
