// PgnLineReader: reads a PGN file line by line, at most 255 bytes a line, cut at a blank.
#pragma once

#include <bit>
#include <cstdint>
#include <memory>

#include "platform/File.h"

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
    // What ForEachLine does after a line: cut the next one, pass over the lines up to the next
    // that begins with '[' (as SkipToTagLine), or end.
    enum class After { NextLine, SkipToTagLine, Stop };
    // Cuts lines from Position() on, as NextLine would, and calls
    // visit(line, length, lineStart, nextLineStart) for each, with the offsets where it and the
    // next line begin; visit returns what comes after. Ends at the end of the file. The lines
    // are cut here, with the reader's state held in locals, from the masks of the chunks that
    // hold them; lines that do not end within 64 bytes are left to NextLine.
    template <typename Visit>
    void ForEachLine(Visit&& visit);
    // Passes over the lines that do not begin with '[': Position() is then where the next line
    // that does begins. Returns 0 when the file ends (or cannot be read) first. The lines passed
    // over are exactly those NextLine would return, but most are never cut: every line that
    // follows a line break is one of them, and only a line of 255 bytes or more without a
    // break holds other places where a line may begin.
    int SkipToTagLine();
    // The offset where the next line begins.
    std::uint32_t Position() const { return position_; }
    platform::File& File() { return file_; }

  private:
    // Makes the buffer hold the 255 bytes from position_, or all that is left of the file.
    int Fill();
    // Keeps the bytes from position_ and reads one more block behind them. Returns 0 when they
    // leave no room for a block, or on a read error.
    int ReadMore();
    // Returns 1 with position_ at the first line that begins with '[' among the lines that
    // begin in the buffer after position_, 2 when a line of 255 bytes or more without a break
    // must be cut first (position_ is then its start), 0 when the buffer holds neither: then
    // position_ is the last place known to begin a line.
    int ScanForTagLine();
    // Returns the mask of the CR and LF bytes of the 64-byte chunk of the buffer that holds at.
    std::uint64_t ChunkBreaks(std::uint32_t at);
    // Makes breakMasks_ those of chunk and the chunk after it.
    void MoveMasks(std::uint32_t chunk);
    // Returns a mask of the CR and LF bytes among the 64 bytes at bytes, bit i for bytes[i].
    static std::uint64_t BreakMask(const char* bytes);

    platform::File& file_;
    std::uint32_t blockSize_;
    // Read-ahead: bytes [bufferStart_, bufferStart_ + size_) of the file; the file's own
    // position is always the end of that range. Allocated on the first read, never cleared.
    std::unique_ptr<char[]> buffer_;
    std::uint32_t size_ = 0;
    std::uint32_t bufferStart_ = 0;
    std::uint32_t position_ = 0;
    bool ended_ = false;  // the last read reached the end of the file
    // Which bytes of two 64-byte chunks of the buffer, maskChunk_ and the next, are CR or LF,
    // one bit each: lines are cut from these masks rather than by searching each line's bytes.
    // Bits past the buffer's data may be anything.
    std::uint32_t maskChunk_ = kNoChunk;
    std::uint64_t breakMasks_[2] = {};
    static constexpr std::uint32_t kNoChunk = 0xFFFFFFFF;
    static constexpr std::uint32_t kChunkSize = 64;
};

template <typename Visit>
void PgnLineReader::ForEachLine(Visit&& visit) {
    for (;;) {
        After after = After::NextLine;
        if (buffer_) {
            const char* const bytes = buffer_.get();
            const std::uint32_t base = bufferStart_;
            // Lines that begin before safeEnd have their 255 bytes read.
            const std::uint32_t safeEnd = size_ >= kLineSize - 1 ? size_ - (kLineSize - 2) : 0;
            std::uint32_t at = position_ - base;
            std::uint32_t chunk = maskChunk_;
            std::uint64_t masks[2] = {breakMasks_[0], breakMasks_[1]};
            while (at < safeEnd) {
                const std::uint32_t atChunk = at / kChunkSize;
                if (atChunk != chunk) {
                    masks[0] = chunk != kNoChunk && atChunk == chunk + 1
                                   ? masks[1]
                                   : BreakMask(bytes + atChunk * kChunkSize);
                    masks[1] = BreakMask(bytes + (atChunk + 1) * kChunkSize);
                    chunk = atChunk;
                }
                const std::uint32_t bit = at % kChunkSize;
                const std::uint64_t ahead =
                    bit == 0 ? masks[0] : (masks[0] >> bit) | (masks[1] << (kChunkSize - bit));
                const std::uint32_t end = std::countr_zero(ahead);  // 64 when there is none
                const std::uint64_t rest = end < kChunkSize - 1 ? ~ahead >> (end + 1) : 0;
                if (rest == 0) break;
                const std::uint32_t next = at + end + 1 + std::countr_zero(rest);
                after = visit(bytes + at, end, base + at, base + next);
                at = next;
                if (after != After::NextLine) break;
            }
            position_ = base + at;
            maskChunk_ = chunk;
            breakMasks_[0] = masks[0];
            breakMasks_[1] = masks[1];
        }
        if (after == After::NextLine) {
            const std::uint32_t lineStart = position_;
            const char* line = nullptr;
            std::uint32_t length = 0;
            if (!NextLine(&line, &length)) return;
            after = visit(line, length, lineStart, position_);
        }
        if (after == After::Stop) return;
        if (after == After::SkipToTagLine && !SkipToTagLine()) return;
    }
}

}  // namespace velmora
