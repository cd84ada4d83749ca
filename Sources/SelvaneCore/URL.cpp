#include "SelvaneCore/URL.h"

#include <uriparser/Uri.h>

#include <cstddef>
#include <memory>

namespace selvane {

namespace {

struct Free {
    void operator()(UriUriA* parts) const { uriFreeUriMembersA(parts); }
};

std::optional<std::string_view> view(const UriTextRangeA& range) {
    if (range.first == nullptr)
        return std::nullopt;
    return std::string_view(range.first, static_cast<std::size_t>(range.afterLast - range.first));
}

std::optional<std::string> copy(std::optional<std::string_view> text) {
    return text ? std::optional<std::string>(*text) : std::nullopt;
}

/// Whether a port, which is a row of digits or nothing, is one that exists.
bool isPort(std::string_view digits) {
    constexpr int largest = 65535;
    int port = 0;
    for (const char digit : digits) {
        port = port * 10 + (digit - '0');
        if (port > largest)
            return false;
    }
    return true;
}

/// The host; an IP literal gets back the brackets that the parser strips, lest it pass for a name.
std::optional<std::string> hostOf(const UriUriA& parts) {
    const auto text = view(parts.hostText);
    if (text && (parts.hostData.ip6 != nullptr || parts.hostData.ipFuture.first != nullptr))
        return '[' + std::string(*text) + ']';
    return copy(text);
}

char hexadecimalValue(char digit) {
    if (digit <= '9')
        return static_cast<char>(digit - '0');
    return static_cast<char>((digit | 0x20) - 'a' + 10);
}

/// The parser lets a percent sign pass only before two hexadecimal digits.
std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            result += text[index];
            continue;
        }
        result +=
            static_cast<char>(hexadecimalValue(text[index + 1]) << 4 | hexadecimalValue(text[index + 2]));
        index += 2;
    }
    return result;
}

} // namespace

std::optional<URL> URL::parse(std::string_view text) {
    // No text at all is the empty address, which the parser wants to see.
    if (text.data() == nullptr)
        text = "";
    UriUriA parts;
    const char* problem = nullptr;
    if (uriParseSingleUriExA(&parts, text.data(), text.data() + text.size(), &problem) != URI_SUCCESS)
        return std::nullopt;
    const std::unique_ptr<UriUriA, Free> owner(&parts);

    URL url{copy(view(parts.scheme)), hostOf(parts), {}};
    if (!isPort(view(parts.portText).value_or("")) || (url.host && url.host->find('%') != std::string::npos))
        return std::nullopt;
    for (const UriPathSegmentA* segment = parts.pathHead; segment != nullptr; segment = segment->next) {
        if (const auto piece = view(segment->text); piece && !piece->empty())
            url.path.push_back(percentDecoded(*piece));
    }
    return url;
}

} // namespace selvane
