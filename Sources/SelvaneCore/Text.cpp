#include "SelvaneCore/Text.h"

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace selvane::Text {

namespace {

bool isASCII(std::string_view text) {
    const char* from = text.data();
    std::size_t left = text.size();
    for (; left >= 8; from += 8, left -= 8) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, from, 8);
        if ((bytes & 0x8080808080808080U) != 0)
            return false;
    }
    return std::all_of(from, from + left, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

/// Negative if there is none.
UChar32 firstScalar(std::string_view text) {
    if (text.empty())
        return U_SENTINEL;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t offset = 0;
    UChar32 first = U_SENTINEL;
    U8_NEXT(bytes, offset, text.size(), first);
    return first;
}

bool hasNumericValue(UChar32 scalar) {
    return u_getIntPropertyValue(scalar, UCHAR_NUMERIC_TYPE) != U_NT_NONE;
}

/// The library fails only where its data is missing from the system or memory has run out.
void expectSuccess(UErrorCode status) {
    if (U_FAILURE(status))
        std::abort();
}

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<int32_t>(text.size())};
}

/// The user-perceived characters of a text, one boundary after another.
class Characters {
public:
    explicit Characters(std::string_view text) {
        UErrorCode status = U_ZERO_ERROR;
        _text.reset(utext_openUTF8(nullptr, text.data(), static_cast<int64_t>(text.size()), &status));
        _boundaries.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        expectSuccess(status);
        _boundaries->setText(_text.get(), status);
        expectSuccess(status);
        _boundaries->first();
    }

    /// Steps over one character, and gives the offset behind it; npos at the end.
    [[nodiscard]] std::size_t next() {
        const int32_t boundary = _boundaries->next();
        return boundary == icu::BreakIterator::DONE ? std::string_view::npos
                                                    : static_cast<std::size_t>(boundary);
    }

private:
    struct Close {
        void operator()(UText* text) const { utext_close(text); }
    };
    std::unique_ptr<UText, Close> _text;
    std::unique_ptr<icu::BreakIterator> _boundaries;
};

/// What a text is ordered by. The library takes quadratic time over marks upon marks, so a text that no name
/// comes near stands for itself.
std::string composed(std::string_view text) {
    constexpr std::size_t longest = 2048;
    if (text.size() > longest)
        return std::string(text);
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const normalizer = icu::Normalizer2::getNFCInstance(status);
    expectSuccess(status);
    std::string result;
    icu::StringByteSink<std::string> sink(&result, static_cast<int32_t>(text.size()));
    normalizer->normalizeUTF8(0, piece(text), sink, nullptr, status);
    expectSuccess(status);
    return result;
}

} // namespace

bool isValid(std::string_view text) {
    if (isASCII(text))
        return true;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t offset = 0;
    while (offset < text.size()) {
        UChar32 character = 0;
        U8_NEXT(bytes, offset, text.size(), character);
        if (character < 0)
            return false;
    }
    return true;
}

std::string wellFormed(std::string_view text) {
    constexpr std::string_view replacement = "\xef\xbf\xbd";
    std::string result;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t offset = 0;
    while (offset < text.size()) {
        const std::size_t start = offset;
        UChar32 character = 0;
        U8_NEXT(bytes, offset, text.size(), character);
        result += character < 0 ? replacement : text.substr(start, offset - start);
    }
    return result;
}

std::size_t count(std::string_view text) {
    if (isASCII(text)) {
        // A carriage return and the line feed after it are one character.
        std::size_t pairs = 0;
        for (auto at = text.find("\r\n"); at != std::string_view::npos; at = text.find("\r\n", at + 2))
            ++pairs;
        return text.size() - pairs;
    }
    Characters characters(text);
    std::size_t length = 0;
    while (characters.next() != std::string_view::npos)
        ++length;
    return length;
}

std::string_view prefix(std::string_view text, std::size_t length) {
    // No character is shorter than a byte.
    if (text.size() <= length)
        return text;
    if (isASCII(text)) {
        std::size_t end = 0;
        for (; length > 0 && end < text.size(); --length)
            end += text.substr(end).starts_with("\r\n") ? 2 : 1;
        return text.substr(0, end);
    }
    Characters characters(text);
    std::size_t end = 0;
    for (; length > 0 && end != std::string_view::npos; --length)
        end = characters.next();
    return text.substr(0, end);
}

std::vector<std::string_view> characters(std::string_view text) {
    std::vector<std::string_view> result;
    if (isASCII(text)) {
        for (std::size_t start = 0; start < text.size(); start += result.back().size())
            result.push_back(text.substr(start, text.substr(start).starts_with("\r\n") ? 2 : 1));
        return result;
    }
    Characters boundaries(text);
    std::size_t start = 0;
    for (std::size_t end = boundaries.next(); end != std::string_view::npos; end = boundaries.next()) {
        result.push_back(text.substr(start, end - start));
        start = end;
    }
    return result;
}

std::u32string scalars(std::string_view text) {
    constexpr char32_t replacement = U'\uFFFD';
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::u32string result;
    std::size_t offset = 0;
    while (offset < text.size()) {
        UChar32 character = 0;
        U8_NEXT(bytes, offset, text.size(), character);
        result += character < 0 ? replacement : static_cast<char32_t>(character);
    }
    return result;
}

bool isLetterOrNumber(std::string_view character) {
    const UChar32 first = firstScalar(character);
    return first >= 0 && (u_isUAlphabetic(first) || hasNumericValue(first));
}

bool isNumber(std::string_view character) {
    const UChar32 first = firstScalar(character);
    return first >= 0 && hasNumericValue(first);
}

std::string_view trimmed(std::string_view text) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t next = start;
        UChar32 character = 0;
        U8_NEXT(bytes, next, text.size(), character);
        if (character < 0 || !u_isUWhiteSpace(character))
            break;
        start = next;
    }
    std::size_t end = text.size();
    while (end > start) {
        // The library counts backwards in 32 bits, and no character is longer than four bytes.
        const auto window = static_cast<int32_t>(std::min<std::size_t>(end - start, 4));
        const std::uint8_t* const tail = bytes + end - window;
        int32_t previous = window;
        UChar32 character = 0;
        U8_PREV(tail, 0, previous, character);
        if (character < 0 || !u_isUWhiteSpace(character))
            break;
        end -= static_cast<std::size_t>(window - previous);
    }
    return text.substr(start, end - start);
}

std::string lowercased(std::string_view text) {
    std::string result;
    if (isASCII(text)) {
        result = text;
        for (char& character : result) {
            if (character >= 'A' && character <= 'Z')
                character = static_cast<char>(character - 'A' + 'a');
        }
        return result;
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::StringByteSink<std::string> sink(&result, static_cast<int32_t>(text.size()));
    icu::CaseMap::utf8ToLower("", 0, piece(text), sink, nullptr, status);
    expectSuccess(status);
    return result;
}

std::strong_ordering compare(std::string_view left, std::string_view right) {
    // The order of bytes in UTF-8 is the order of scalar values.
    if (left == right || (isASCII(left) && isASCII(right)))
        return left <=> right;
    return composed(left) <=> composed(right);
}

} // namespace selvane::Text
