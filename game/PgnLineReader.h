// PgnLineReader: reads a PGN file line by line, at most 255 bytes a line, cut at a blank.
#pragma once

#include <bit>
#include <cstdint>
#include <memory>

#include "platform/File.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace velmora {

// Lines come out exactly as a reader that asks the file for 255 bytes at a time would cut
// them, whatever is read ahead:
//   - a line ends at the first CR or LF among the next 255 bytes, and the run of CR and LF
//     bytes that starts there is consumed as far as it lies within those 255 bytes, so blank
//     lines never come out, except where a run crosses the 255th byte: its rest then comes out
//     as one empty line;
//   - with no line break among them it ends at the last blank of the 255 bytes (not counting
//     the first byte), and that blank begins the next line;
//   - with neither, the 255 bytes are the line.
// Position() is always where the next line begins: the byte offsets the game index keeps.
class PgnLineReader {
  public:
    static constexpr int kLineSize = 256;  // 255 bytes and the terminator
    static constexpr std::uint32_t kDefaultBlockSize = 64 * 1024;

    // Reads file from its current position, blockSize bytes at a time (tests vary it to reach
    // every block boundary). The file is not owned.
    explicit PgnLineReader(platform::File& file, std::uint32_t blockSize = kDefaultBlockSize);

    // Continues reading at the byte offset; returns 0 when the file cannot seek there.
    int Seek(std::uint32_t offset);
    // Reads the next line into buffer (kLineSize bytes), terminated, and its length into
    // *length. Returns 1 for a line, 0 at end of file or on a read error.
    int ReadLine(char* buffer, int* length);
    // Cuts the next line as ReadLine does, without copying it: *line points into the read-ahead
    // and stays valid until the next read or Seek. The line is not terminated, and a NUL byte
    // in it is kept (ReadLine's copy ends, as a C string, at the first one).
    int NextLine(const char** line, std::uint32_t* length);
    // What ForEachLine does after a line: go on with the next one, pass over the lines that do
    // not begin with '[' (visit is called again for the first that does), or end.
    enum class After { NextLine, SkipToTagLine, Stop };
    // Cuts lines from Position() on, as NextLine would, and calls
    // visit(line, length, lineStart, nextLineStart) for each, with the offsets where it and the
    // next line begin; visit returns what comes after. Ends at the end of the file. This is
    // the fast way through a whole file: see the loop for how.
    template <typename Visit>
    void ForEachLine(Visit&& visit);
    // The offset where the next line begins.
    std::uint32_t Position() const { return position_; }
    platform::File& File() { return file_; }

  private:
    // Makes the buffer hold the 255 bytes from position_, or all that is left of the file.
    int Fill();
    // Returns the mask of the CR and LF bytes of the 64-byte chunk of the buffer that holds at.
    std::uint64_t ChunkBreaks(std::uint32_t at);
    // Returns a mask of the CR and LF bytes among the 64 bytes at bytes, bit i for bytes[i].
    static std::uint64_t BreakMask(const char* bytes) {
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
        for (std::uint32_t i = 0; i < kChunkSize; ++i)
            mask |= static_cast<std::uint64_t>(bytes[i] == '\r' || bytes[i] == '\n') << i;
        return mask;
#endif
    }

    platform::File& file_;
    std::uint32_t blockSize_;
    // Read-ahead: bytes [bufferStart_, bufferStart_ + size_) of the file; the file's own
    // position is always the end of that range. Allocated on the first read, never cleared.
    std::unique_ptr<char[]> buffer_;
    std::uint32_t size_ = 0;
    std::uint32_t bufferStart_ = 0;
    std::uint32_t position_ = 0;
    // Which bytes of the 64-byte chunk maskChunk_ of the buffer are CR or LF, one bit each:
    // lines are cut from these masks rather than by searching each line's bytes. Bits past the
    // buffer's data may be anything.
    std::uint32_t maskChunk_ = kNoChunk;
    std::uint64_t breakMask_ = 0;
    static constexpr std::uint32_t kNoChunk = 0xFFFFFFFF;
    static constexpr std::uint32_t kChunkSize = 64;
};

// The loop keeps the reader's state in locals and walks the buffer a 64-byte chunk at a time:
// from the chunk's mask of CR and LF bytes it finds where each line breaks and where the run
// of breaks after it ends, so that each line costs a few bit operations. A line is cut here
// when both lie within its 255 bytes and the read-ahead; NextLine cuts any other line (one of
// 255 bytes or more without a break, a run that reaches the 255th byte, the end of what is
// read), and the walk starts again behind it. Lines passed over after After::SkipToTagLine
// are cut the same way and dropped unless they begin with '['.
template <typename Visit>
void PgnLineReader::ForEachLine(Visit&& visit) {
    bool skipping = false;
    for (;;) {
        if (buffer_) {
            const char* const bytes = buffer_.get();
            const std::uint32_t base = bufferStart_;
            const std::uint32_t dataEnd = size_;
            std::uint32_t lineStart = position_ - base;
            std::uint32_t lineEnd = 0;
            bool inRun = false;  // lineEnd found, the run of breaks after it not yet passed
            bool stop = false;
            std::uint32_t bit = lineStart % kChunkSize;
            for (std::uint32_t chunk = lineStart - bit; chunk < dataEnd && !stop;
                 chunk += kChunkSize, bit = 0) {
                const std::uint32_t valid =
                    dataEnd - chunk < kChunkSize ? dataEnd - chunk : kChunkSize;
                const std::uint64_t inData =
                    valid == kChunkSize ? ~std::uint64_t{0} : (std::uint64_t{1} << valid) - 1;
                const std::uint64_t breaks = BreakMask(bytes + chunk) & inData;
                const std::uint64_t others = ~breaks & inData;
                for (;;) {
                    if (!inRun) {
                        const std::uint64_t ahead = breaks >> bit;
                        if (ahead == 0) break;  // the line goes on in the next chunk
                        bit += std::countr_zero(ahead);
                        lineEnd = chunk + bit;
                        inRun = true;
                        if (++bit == kChunkSize) break;
                    }
                    const std::uint64_t after = others >> bit;
                    if (after == 0) break;  // the run goes on in the next chunk
                    bit += std::countr_zero(after);
                    const std::uint32_t next = chunk + bit;
                    // Both must lie within the line's 255 bytes; else NextLine cuts it.
                    if (lineEnd - lineStart >= kLineSize - 1 || next - lineStart > kLineSize - 1) {
                        stop = true;
                        break;
                    }
                    if (!skipping || bytes[lineStart] == '[') {
                        const After what = visit(bytes + lineStart, lineEnd - lineStart,
                                                 base + lineStart, base + next);
                        if (what == After::Stop) {
                            position_ = base + next;
                            return;
                        }
                        skipping = what == After::SkipToTagLine;
                    }
                    lineStart = next;
                    inRun = false;
                }
                // A line still open 255 bytes after its start is left to NextLine.
                if (chunk + valid - lineStart >= kLineSize - 1) stop = true;
            }
            position_ = base + lineStart;
        }
        const std::uint32_t lineStart = position_;
        const char* line = nullptr;
        std::uint32_t length = 0;
        if (!NextLine(&line, &length)) return;
        if (skipping && (length == 0 || line[0] != '[')) continue;
        const After after = visit(line, length, lineStart, position_);
        if (after == After::Stop) return;
        skipping = after == After::SkipToTagLine;
    }
}

}  // namespace velmora
