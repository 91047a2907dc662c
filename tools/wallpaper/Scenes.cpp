#include "tools/wallpaper/Scenes.h"

namespace wallpaper {
namespace {

Scene dusk() {
    return {.name = "dusk",
            .sky = {{0.00, light(0x070b24)},
                    {0.22, light(0x141a4a)},
                    {0.42, light(0x3a2f7c)},
                    {0.56, light(0x84499a)},
                    {0.66, light(0xd8688e)},
                    {0.73, light(0xff9f86)},
                    {0.80, light(0xffd3a0)},
                    {1.00, light(0xffe3bd)}},
            .glow = {light(0xffb27a), 0.074, 0.735, 0.20, 0.55},
            .rim = 0.22,
            .starry = 1,
            .aurora = 1,
            .ridges = {{0.715, 0.060, 2.2, 0.46, light(0xc9799c), light(0xf7a694), 11},
                       {0.755, 0.075, 1.9, 0.48, light(0x8a5496), light(0xc9718f), 23},
                       {0.805, 0.085, 1.7, 0.50, light(0x54407f), light(0x87518f), 37},
                       {0.865, 0.090, 1.5, 0.50, light(0x2c2c5e), light(0x4b3b78), 53},
                       {0.935, 0.095, 1.3, 0.52, light(0x11163a), light(0x1d2150), 71}}};
}

Scene day() {
    return {.name = "day",
            .sky = {{0.00, light(0x6fb9e0)},
                    {0.30, light(0x9fd3ea)},
                    {0.50, light(0xd3e8ea)},
                    {0.64, light(0xf8e3c8)},
                    {1.00, light(0xffe9c9)}},
            .glow = {light(0xfff6dd), -0.092, 0.60, 0.16, 0.16},
            .rim = 0.22,
            .starry = 0,
            .aurora = 0,
            .ridges = {{0.640, 0.050, 1.6, 0.40, light(0xdfe4da), light(0xf7ead4), 5},
                       {0.690, 0.075, 1.3, 0.42, light(0xb9cfc4), light(0xdfe0cc), 9},
                       {0.760, 0.085, 1.2, 0.42, light(0x86b0a4), light(0xb7cbb2), 15},
                       {0.845, 0.090, 1.0, 0.44, light(0x4f8a84), light(0x7fab97), 27},
                       {0.935, 0.085, 0.9, 0.44, light(0x24585c), light(0x3d7876), 33}}};
}

Scene night() {
    return {.name = "night",
            .sky = {{0.00, light(0x03060f)},
                    {0.35, light(0x06142b)},
                    {0.60, light(0x0b2d46)},
                    {0.74, light(0x17586a)},
                    {0.82, light(0x2a7f83)},
                    {1.00, light(0x3c9a94)}},
            .glow = {light(0x7ff0d0), -0.046, 0.735, 0.20, 0.10},
            .rim = 0.07,
            .starry = 1,
            .aurora = 1,
            .ridges = {{0.745, 0.055, 2.0, 0.46, light(0x1d5a6a), light(0x2a7f83), 12},
                       {0.795, 0.075, 1.7, 0.48, light(0x123f52), light(0x1d5f6c), 29},
                       {0.855, 0.085, 1.5, 0.50, light(0x0a2739), light(0x114052), 43},
                       {0.930, 0.090, 1.3, 0.52, light(0x04101d), light(0x081d2d), 61}}};
}

} // namespace

std::vector<Scene> scenes() {
    return {dusk(), day(), night()};
}

} // namespace wallpaper
