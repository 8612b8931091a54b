// PgnLineReader: reads a PGN file line by line, at most 255 bytes a line, cut at a blank.
#pragma once

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
    // The offset where the next line begins.
    std::uint32_t Position() const { return position_; }
    platform::File& File() { return file_; }

  private:
    // Makes the buffer hold the 255 bytes from position_, or all that is left of the file.
    int Fill();

    platform::File& file_;
    std::uint32_t blockSize_;
    // Read-ahead: bytes [bufferStart_, bufferStart_ + size_) of the file; the file's own
    // position is always the end of that range. Allocated on the first read, never cleared.
    std::unique_ptr<char[]> buffer_;
    std::uint32_t size_ = 0;
    std::uint32_t bufferStart_ = 0;
    std::uint32_t position_ = 0;
};

}  // namespace velmora
