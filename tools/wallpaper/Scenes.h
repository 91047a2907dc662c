#pragma once

#include "tools/wallpaper/Light.h"

#include <optional>
#include <string>
#include <vector>

namespace wallpaper {

/// A sky over ridges that stand behind each other. Heights are from 0 at the top to 1 at the bottom; lengths are shares
/// of the height.
struct Scene {
    struct Stop {
        double height;
        Light light;
    };
    struct Glow {
        Light light;
        double x; ///< from the middle
        double height;
        double size;
        double strength;
    };
    struct Ridge {
        double height;  ///< of its middle
        double relief;  ///< from the middle to the highest crest
        double density; ///< how near crests stand to each other
        double roughness;
        Light crest;
        Light foot;
        int seed;
    };

    std::string name;
    std::vector<Stop> sky; ///< from the top
    Glow glow;
    double rim;                ///< how much of the glow the crests catch
    double starry;             ///< how bright stars are
    double aurora;             ///< how bright it is
    std::vector<Ridge> ridges; ///< the farthest first
};

std::vector<Scene> scenes();

} // namespace wallpaper
