// PgnLineReader: 255-byte lines cut at a line break or a blank, read ahead in large blocks.
#include "game/PgnLineReader.h"

#include <algorithm>
#include <cstring>

namespace velmora {
namespace {

constexpr std::uint32_t kLineBytes = PgnLineReader::kLineSize - 1;

bool IsLineBreak(char c) {
    return c == '\r' || c == '\n';
}

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
    bufferStart_ = position_ = offset;
    return 1;
}

// Tops the buffer up block by block until it holds 255 bytes from position_ or the file has
// ended. Returns 0 on a read error, after putting the file back where the buffer ends.
int PgnLineReader::Fill() {
    std::uint32_t used = position_ - bufferStart_;
    if (size_ - used >= kLineBytes) return 1;
    if (!buffer_) buffer_ = std::make_unique_for_overwrite<char[]>(blockSize_ + kLineBytes);
    std::memmove(buffer_.get(), buffer_.get() + used, size_ - used);
    size_ -= used;
    bufferStart_ = position_;
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

// Cuts the next line out of the 255 bytes at position_. A CR/LF run is counted only among
// those 255 bytes: when it reaches the 255th byte, the bytes after it are read as the next
// line, which then starts on a line break and comes out empty. A blank in the first byte is
// never a cut point, since cutting there would return the same empty line for ever.
int PgnLineReader::ReadLine(char* buffer, int* length) {
    if (!Fill()) return 0;
    const char* bytes = buffer_.get() + (position_ - bufferStart_);
    std::uint32_t count = std::min(kLineBytes, size_ - (position_ - bufferStart_));
    if (count == 0) return 0;

    std::uint32_t end = count;   // where the line ends
    std::uint32_t next = count;  // where the next line begins
    const void* lineFeed = std::memchr(bytes, '\n', count);
    std::uint32_t searched =
        lineFeed ? static_cast<std::uint32_t>(static_cast<const char*>(lineFeed) - bytes) : count;
    const void* carriageReturn = std::memchr(bytes, '\r', searched);
    if (carriageReturn) {
        searched = static_cast<std::uint32_t>(static_cast<const char*>(carriageReturn) - bytes);
    }
    if (searched < count) {
        end = next = searched;
        while (next < count && IsLineBreak(bytes[next]))
            ++next;
    } else {
        for (std::uint32_t k = count - 1; k > 0; --k) {
            if (bytes[k] == ' ') {
                end = next = k;
                break;
            }
        }
    }
    std::memcpy(buffer, bytes, end);
    buffer[end] = 0;
    *length = static_cast<int>(end);
    position_ += next;
    return 1;
}

}  // namespace velmora
