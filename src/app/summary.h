// What the commands print of a frame and of its results.
#pragma once

namespace kigumi {

// Prints counts, levels, bounds and timber volume of the model, members also by category.
void print_frame_info();

// Prints the members by category with their timber volume, nodes, supports and loads.
void print_frame_summary();

// Prints the largest tension, compression and displacement of the results.
void print_result_summary();

} // namespace kigumi
