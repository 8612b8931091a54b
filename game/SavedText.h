// SavedText: a fingerprint of a game's bytes in its file, taken when the game is loaded or
// saved, so that a save in place can tell whether another program changed the file since.
#pragma once

#include <cstdint>

#include "platform/File.h"

namespace velmora {

struct TextFingerprint {
    bool known = false;
    std::uint32_t start = 0;  // the bytes from start up to end
    std::uint32_t end = 0;
    std::uint64_t hash = 0;

    bool operator==(const TextFingerprint&) const = default;
};

// Reads the bytes from start up to end of file and fingerprints them. A file that ends before
// end, or cannot be read, gives a fingerprint that is not known.
TextFingerprint FingerprintOf(platform::File& file, std::uint32_t start, std::uint32_t end);
// The same for the file at path (opened for shared reading).
TextFingerprint FingerprintOf(const std::u16string& path, std::uint32_t start, std::uint32_t end,
                              platform::FileSystem& fileSystem);

}  // namespace velmora
