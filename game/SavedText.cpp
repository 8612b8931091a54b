// Fingerprints of a game's bytes in its file (64-bit FNV-1a, with the length).
#include "game/SavedText.h"

#include <memory>

namespace velmora {

TextFingerprint FingerprintOf(platform::File& file, std::uint32_t start, std::uint32_t end) {
    TextFingerprint print;
    if (end < start || file.Seek(start, platform::SeekOrigin::Begin, nullptr) != 0) return print;
    std::uint64_t hash = 0xcbf29ce484222325ull;
    std::uint32_t left = end - start;
    unsigned char block[4096];
    while (left > 0) {
        const std::uint32_t wanted = left < sizeof block ? left : sizeof block;
        std::uint32_t got = 0;
        if (file.Read(block, wanted, &got) != 0 || got == 0) return print;
        for (std::uint32_t i = 0; i < got; ++i)
            hash = (hash ^ block[i]) * 0x100000001b3ull;
        left -= got;
    }
    print.known = true;
    print.start = start;
    print.end = end;
    print.hash = hash;
    return print;
}

TextFingerprint FingerprintOf(const std::u16string& path, std::uint32_t start, std::uint32_t end,
                              platform::FileSystem& fileSystem) {
    platform::ErrorCode error = 0;
    std::unique_ptr<platform::File> file =
        fileSystem.Open(path, platform::OpenMode::ReadShared, &error);
    if (!file) return {};
    return FingerprintOf(*file, start, end);
}

}  // namespace velmora
