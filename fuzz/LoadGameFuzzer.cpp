// Fuzz target: the input as a PGN file; every game the index finds is loaded, then offset 0,
// through the file system, again through one reader kept open, and checked without building
// it: all three must agree.
#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzDrivers.h"
#include "game/UserMessages.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // The default messages show nothing and answer at once: a file that cannot be opened or a
    // load error must not wait for anyone.
    velmora::SetUserMessages(nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    fuzz::LoadRun run = fuzz::RunLoadGames({reinterpret_cast<const char*>(data), size});
    fuzz::Require(run.sharedCodes == run.codes && run.sharedEnds == run.ends,
                  "a game loads the same through an open reader as from its file");
    fuzz::Require(run.checkMessages == run.messages,
                  "checking a game gives the code and message that loading it gives");
    return 0;
}
