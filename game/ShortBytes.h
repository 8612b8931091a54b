// ShortBytes: comparing and copying the short byte texts of tag values without a library call.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace velmora {

// Tag values are mostly under 16 bytes: those are compared and copied with two overlapping
// eight-byte moves, shorter ones a byte at a time, longer ones by the C library.

inline bool SameBytes(std::string_view a, std::string_view b) {
    const std::size_t n = a.size();
    if (n != b.size()) return false;
    if (n < 8) {
        for (std::size_t i = 0; i < n; ++i) {
            if (a[i] != b[i]) return false;
        }
        return true;
    }
    if (n > 16) return std::memcmp(a.data(), b.data(), n) == 0;
    std::uint64_t x[2], y[2];  // the first and the last eight bytes
    std::memcpy(&x[0], a.data(), 8);
    std::memcpy(&y[0], b.data(), 8);
    std::memcpy(&x[1], a.data() + n - 8, 8);
    std::memcpy(&y[1], b.data() + n - 8, 8);
    return x[0] == y[0] && x[1] == y[1];
}

// Copies bytes to out, which has room for them; returns the end of the copy.
inline char* CopyBytes(char* out, std::string_view bytes) {
    const std::size_t n = bytes.size();
    if (n < 8) {
        for (std::size_t i = 0; i < n; ++i)
            out[i] = bytes[i];
    } else if (n > 16) {
        std::memcpy(out, bytes.data(), n);
    } else {
        std::uint64_t first, last;
        std::memcpy(&first, bytes.data(), 8);
        std::memcpy(&last, bytes.data() + n - 8, 8);
        std::memcpy(out, &first, 8);
        std::memcpy(out + n - 8, &last, 8);
    }
    return out + n;
}

}  // namespace velmora
