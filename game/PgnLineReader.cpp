// PgnLineReader: 255-byte lines cut at a line break or a blank, read ahead in large blocks.
#include "game/PgnLineReader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace velmora {
namespace {

constexpr std::uint32_t kLineBytes = PgnLineReader::kLineSize - 1;
constexpr std::uint32_t kChunk = 64;

}  // namespace

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
        // A chunk's worth beyond the end, zeroed, so that the last chunk can be read whole.
        buffer_ = std::make_unique<char[]>(blockSize_ + kLineBytes + kChunk);
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
        if (got < blockSize_) break;  // end of file
    }
    return 1;
}

// Returns the CR/LF mask of the chunk that holds buffer index at; a chunk's mask is made once
// however many lines it holds. Bits past the buffer's data may be anything: callers never
// look past the 255 bytes of a line, all of which are data.
std::uint64_t PgnLineReader::ChunkBreaks(std::uint32_t at) {
    const std::uint32_t chunk = at / kChunk;
    if (chunk != maskChunk_) {
        maskChunk_ = chunk;
        breakMask_ = BreakMask(buffer_.get() + chunk * kChunk);
    }
    return breakMask_;
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
