// PgnLineReader: 255-byte lines cut at a line break or a blank, read ahead in large blocks.
#include "game/PgnLineReader.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace velmora {
namespace {

constexpr std::uint32_t kLineBytes = PgnLineReader::kLineSize - 1;
constexpr std::uint32_t kChunk = 64;

bool IsLineBreak(char c) {
    return c == '\r' || c == '\n';
}

}  // namespace

std::uint64_t PgnLineReader::BreakMask(const char* bytes) {
#if defined(__SSE2__)
    const __m128i lineFeed = _mm_set1_epi8('\n');
    const __m128i carriageReturn = _mm_set1_epi8('\r');
    std::uint64_t mask = 0;
    for (int k = 0; k < 4; ++k) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 16 * k));
        const __m128i hits =
            _mm_or_si128(_mm_cmpeq_epi8(v, lineFeed), _mm_cmpeq_epi8(v, carriageReturn));
        mask |= static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(hits)))
                << (16 * k);
    }
    return mask;
#else
    std::uint64_t mask = 0;
    for (std::uint32_t i = 0; i < kChunk; ++i)
        mask |= static_cast<std::uint64_t>(IsLineBreak(bytes[i])) << i;
    return mask;
#endif
}

PgnLineReader::PgnLineReader(platform::File& file, std::uint32_t blockSize)
    : file_(file), blockSize_(std::max<std::uint32_t>(blockSize, 1)) {
    std::int64_t start = 0;
    if (file_.Seek(0, platform::SeekOrigin::Current, &start) != 0) start = 0;
    bufferStart_ = position_ = static_cast<std::uint32_t>(start);
}

// Reuses the read-ahead when offset lies inside it; otherwise drops it and seeks the file.
int PgnLineReader::Seek(std::uint32_t offset) {
    if (offset >= bufferStart_ && offset - bufferStart_ <= size_) {
        position_ = offset;
        return 1;
    }
    if (file_.Seek(offset, platform::SeekOrigin::Begin, nullptr) != 0) return 0;
    size_ = 0;
    ended_ = false;
    maskChunk_ = kNoChunk;
    bufferStart_ = position_ = offset;
    return 1;
}

// Tops the buffer up block by block until it holds 255 bytes from position_ or the file has
// ended. Returns 0 on a read error, after putting the file back where the buffer ends.
int PgnLineReader::Fill() {
    std::uint32_t used = position_ - bufferStart_;
    if (size_ - used >= kLineBytes) return 1;
    if (!buffer_) {
        // Two chunks' worth beyond the end, zeroed, so that the masks of the two chunks that
        // hold the last byte can be made.
        buffer_ = std::make_unique<char[]>(blockSize_ + kLineBytes + 2 * kChunk);
    }
    std::memmove(buffer_.get(), buffer_.get() + used, size_ - used);
    size_ -= used;
    bufferStart_ = position_;
    maskChunk_ = kNoChunk;
    while (size_ < kLineBytes) {
        std::uint32_t got = 0;
        platform::ErrorCode error = file_.Read(buffer_.get() + size_, blockSize_, &got);
        if (error != 0) {
            // How far the failed read moved the file is unknown: start over at position_.
            size_ = 0;
            file_.Seek(position_, platform::SeekOrigin::Begin, nullptr);
            return 0;
        }
        size_ += got;
        if (got < blockSize_) {  // end of file
            ended_ = true;
            break;
        }
    }
    return 1;
}

int PgnLineReader::ReadMore() {
    const std::uint32_t used = position_ - bufferStart_;
    if (size_ - used > kLineBytes) return 0;
    std::memmove(buffer_.get(), buffer_.get() + used, size_ - used);
    size_ -= used;
    bufferStart_ = position_;
    maskChunk_ = kNoChunk;
    std::uint32_t got = 0;
    if (file_.Read(buffer_.get() + size_, blockSize_, &got) != 0) {
        size_ = 0;
        file_.Seek(position_, platform::SeekOrigin::Begin, nullptr);
        return 0;
    }
    size_ += got;
    ended_ = got < blockSize_;
    return 1;
}

// Looks at the lines that begin after a break: their first byte, and whether the stretch of
// bytes from each line's start to its break stays under 255 (else that line is cut in several
// lines, any of which may begin with '['). The first line start, position_, needs the same
// test, whatever kind of start it is. Lines that begin inside a run of CR and LF bytes begin
// with one of them and are never looked for.
int PgnLineReader::ScanForTagLine() {
    const char* bytes = buffer_.get();
    const std::uint32_t first = position_ - bufferStart_;
    std::uint32_t lineStart = first;  // the last line start met
    bool open = true;                 // no break after lineStart yet
    std::uint32_t chunk = first / kChunk * kChunk;
    std::uint64_t breakBefore = chunk > 0 && IsLineBreak(bytes[chunk - 1]) ? 1 : 0;
    // Line starts at or before first are not looked at again.
    std::uint64_t wanted =
        first % kChunk == kChunk - 1 ? 0 : ~std::uint64_t{0} << (first % kChunk + 1);
    for (; chunk < size_; chunk += kChunk, wanted = ~std::uint64_t{0}) {
        std::uint64_t breaks = BreakMask(bytes + chunk);
        const std::uint32_t valid = std::min(kChunk, size_ - chunk);
        if (valid < kChunk) {
            breaks &= (std::uint64_t{1} << valid) - 1;
            wanted &= (std::uint64_t{1} << valid) - 1;
        }
        std::uint64_t starts = ~breaks & ((breaks << 1) | breakBefore) & wanted;
        breakBefore = breaks >> (kChunk - 1);
        if (open) {
            // The first break at or after lineStart, or the end of the data in this chunk.
            const std::uint64_t ahead =
                lineStart > chunk ? breaks >> (lineStart - chunk) << (lineStart - chunk) : breaks;
            const std::uint32_t end = ahead != 0 ? chunk + std::countr_zero(ahead) : chunk + valid;
            if (end - lineStart >= kLineBytes) {
                position_ = bufferStart_ + lineStart;
                return 2;
            }
            open = ahead == 0;
        }
        if (starts == 0) continue;
        for (std::uint64_t rest = starts; rest != 0; rest &= rest - 1) {
            const std::uint32_t at = chunk + std::countr_zero(rest);
            if (bytes[at] == '[') {
                position_ = bufferStart_ + at;
                return 1;
            }
        }
        // The last line that starts here is still open when no break follows it: its highest
        // bit is above every break's.
        lineStart = chunk + 63 - std::countl_zero(starts);
        open = starts > breaks;
    }
    position_ = bufferStart_ + lineStart;
    return 0;
}

// Scans what is read ahead; where a long line must be cut, or the read-ahead runs out without
// room for more, one line is cut as NextLine cuts it, and the scan goes on from there.
int PgnLineReader::SkipToTagLine() {
    for (;;) {
        if (!Fill()) return 0;
        const std::uint32_t at = position_ - bufferStart_;
        if (at == size_) return 0;
        if (buffer_[at] == '[') return 1;
        const int found = ScanForTagLine();
        if (found == 1) return 1;
        if (found == 0 && ended_) {
            position_ = bufferStart_ + size_;
            return 0;
        }
        if (found == 0 && ReadMore()) continue;
        const char* line = nullptr;
        std::uint32_t length = 0;
        if (!NextLine(&line, &length)) return 0;
    }
}

// Returns the CR/LF mask of the chunk that holds buffer index at; a chunk's mask is made once
// however many lines it holds. Bits past the buffer's data may be anything: callers never
// look past the 255 bytes of a line, all of which are data.
std::uint64_t PgnLineReader::ChunkBreaks(std::uint32_t at) {
    const std::uint32_t chunk = at / kChunk;
    if (chunk != maskChunk_) MoveMasks(chunk);
    return breakMasks_[0];
}

// Moving on to the next chunk reuses the mask already made for it.
void PgnLineReader::MoveMasks(std::uint32_t chunk) {
    if (maskChunk_ != kNoChunk && chunk == maskChunk_ + 1) {
        breakMasks_[0] = breakMasks_[1];
    } else {
        breakMasks_[0] = BreakMask(buffer_.get() + chunk * kChunk);
    }
    breakMasks_[1] = BreakMask(buffer_.get() + (chunk + 1) * kChunk);
    maskChunk_ = chunk;
}

// Cuts the next line out of the 255 bytes at position_. A CR/LF run is counted only among
// those 255 bytes: when it reaches the 255th byte, the bytes after it are read as the next
// line, which then starts on a line break and comes out empty. A blank in the first byte is
// never a cut point, since cutting there would return the same empty line for ever.
int PgnLineReader::NextLine(const char** line, std::uint32_t* length) {
    std::uint32_t start = position_ - bufferStart_;
    if (size_ - start < kLineBytes) {
        if (!Fill()) return 0;
        start = position_ - bufferStart_;
        if (size_ == start) return 0;
    }
    const std::uint32_t count = std::min(kLineBytes, size_ - start);
    const std::uint32_t limit = start + count;

    std::uint32_t end = start;  // where the line ends: its first CR or LF
    for (;;) {
        const std::uint64_t hits = ChunkBreaks(end) >> (end % kChunk);
        if (hits != 0) {
            end += std::countr_zero(hits);
            break;
        }
        end = (end / kChunk + 1) * kChunk;
        if (end >= limit) break;
    }
    const char* bytes = buffer_.get() + start;
    std::uint32_t next = limit;  // where the next line begins
    if (end < limit) {
        // The run of CR and LF bytes, as far as it lies within the 255 bytes.
        for (std::uint32_t at = end + 1; at < limit;) {
            const std::uint64_t others = ~ChunkBreaks(at) >> (at % kChunk);
            if (others != 0) {
                next = std::min(limit, at + std::countr_zero(others));
                break;
            }
            at = (at / kChunk + 1) * kChunk;
        }
    } else {
        end = limit;
        for (std::uint32_t k = count - 1; k > 0; --k) {
            if (bytes[k] == ' ') {
                end = next = start + k;
                break;
            }
        }
    }
    *line = bytes;
    *length = end - start;
    position_ += next - start;
    return 1;
}

int PgnLineReader::ReadLine(char* buffer, int* length) {
    const char* line = nullptr;
    std::uint32_t count = 0;
    if (!NextLine(&line, &count)) return 0;
    std::memcpy(buffer, line, count);
    buffer[count] = 0;
    *length = static_cast<int>(count);
    return 1;
}

}  // namespace velmora
