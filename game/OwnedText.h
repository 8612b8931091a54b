// OwnedText: an immutable UTF-16 text on the heap that also knows "no value", in one pointer.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

namespace velmora {

// Several game fields may be absent as well as empty, and the two behave differently (a missing
// White name is written as "?", an empty one as nothing). OwnedText keeps that distinction:
// null means no value. The text is allocated at its exact length plus the terminator, after a
// reference count: it is never changed in place, only replaced whole by each Set, so copies
// share it. A game list of a large file holds the same event, site and player names many times
// over; sharing keeps one copy of each.
class OwnedText {
  public:
    OwnedText() = default;
    explicit OwnedText(const char16_t* text) { Set(text); }
    explicit OwnedText(std::u16string_view text) { Set(text); }
    OwnedText(const OwnedText& other) : text_(other.text_) { AddReference(); }
    OwnedText(OwnedText&& other) noexcept : text_(other.text_) { other.text_ = nullptr; }
    OwnedText& operator=(const OwnedText& other) {
        if (text_ != other.text_) {
            Release();
            text_ = other.text_;
            AddReference();
        }
        return *this;
    }
    OwnedText& operator=(OwnedText&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~OwnedText() { Release(); }

    // Copies text, or stores no value for null.
    void Set(const char16_t* text) {
        if (text == nullptr) {
            Reset();
            return;
        }
        Set(std::u16string_view(text));
    }
    void Set(std::u16string_view text) {
        void* block = ::operator new(sizeof(Header) + (text.size() + 1) * sizeof(char16_t));
        Header* header = new (block) Header{{1}, 0};
        char16_t* copy = reinterpret_cast<char16_t*>(header + 1);
        std::memcpy(copy, text.data(), text.size() * sizeof(char16_t));
        copy[text.size()] = 0;
        Release();
        text_ = copy;
    }
    void Reset() {
        Release();
        text_ = nullptr;
    }

    bool IsNull() const { return text_ == nullptr; }
    // The text, or null when there is none.
    const char16_t* Get() const { return text_; }
    // The text, or the fallback when there is none.
    std::u16string_view Or(std::u16string_view fallback) const {
        return text_ ? std::u16string_view(text_) : fallback;
    }
    // The text, with no value read as empty.
    std::u16string_view View() const { return Or(u""); }
    // The heap block that holds the text (shared by every copy), or null; for measuring memory.
    const void* Block() const { return text_ ? HeaderOf() : nullptr; }

  private:
    struct Header {
        std::atomic<std::uint32_t> references;
        std::uint32_t unused;  // keeps the characters 8-byte aligned
    };
    Header* HeaderOf() const { return reinterpret_cast<Header*>(const_cast<char16_t*>(text_)) - 1; }
    void AddReference() {
        if (text_) HeaderOf()->references.fetch_add(1, std::memory_order_relaxed);
    }
    void Release() {
        if (text_ && HeaderOf()->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            Header* header = HeaderOf();
            header->~Header();
            ::operator delete(header);
        }
    }

    const char16_t* text_ = nullptr;
};

}  // namespace velmora
