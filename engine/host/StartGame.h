// StartGame: what the "Start game" dialog shows and what the user chose in it.
#pragma once

#include <string>
#include <vector>

namespace velmora {

struct StartGameChoice {
    // In: the engine names, in the order of the engines folder listing.
    std::vector<std::u16string> names;
    // In: the engine already loaded in this run (its entry is selected and cannot be changed),
    // or -1.
    int loadedIndex = -1;
    // Out: the index in names of the engine chosen.
    int chosen = 0;
    // Out: "Play" (true) or "Analyze" (false).
    bool play = true;
    // Out: "Engine plays Black"; meaningful with play.
    bool enginePlaysBlack = true;
};

}  // namespace velmora
