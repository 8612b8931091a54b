// OwnedText: a heap copy of a UTF-16 text that also knows "no value", in one pointer.
#pragma once

#include <cstring>
#include <string>
#include <string_view>

namespace velmora {

// Several game fields may be absent as well as empty, and the two behave differently (a missing
// White name is written as "?", an empty one as nothing). OwnedText keeps that distinction:
// null means no value. The text is allocated at its exact length plus the terminator and is
// replaced whole by each Set.
class OwnedText {
  public:
    OwnedText() = default;
    explicit OwnedText(const char16_t* text) { Set(text); }
    OwnedText(const OwnedText& other) { Set(other.text_); }
    OwnedText(OwnedText&& other) noexcept : text_(other.text_) { other.text_ = nullptr; }
    OwnedText& operator=(const OwnedText& other) {
        if (this != &other) Set(other.text_);
        return *this;
    }
    OwnedText& operator=(OwnedText&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~OwnedText() { delete[] text_; }

    // Copies text, or stores no value for null.
    void Set(const char16_t* text) {
        if (text == nullptr) {
            Reset();
            return;
        }
        Set(std::u16string_view(text));
    }
    void Set(std::u16string_view text) {
        char16_t* copy = new char16_t[text.size() + 1];
        std::memcpy(copy, text.data(), text.size() * sizeof(char16_t));
        copy[text.size()] = 0;
        delete[] text_;
        text_ = copy;
    }
    void Reset() {
        delete[] text_;
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

  private:
    char16_t* text_ = nullptr;
};

}  // namespace velmora
