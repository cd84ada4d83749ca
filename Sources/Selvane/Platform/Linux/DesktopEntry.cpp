#include "Selvane/Platform/Linux/DesktopEntry.h"

#include <algorithm>
#include <utility>

namespace selvane {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// The key and the value of a line, the value as it is written; empty for comments and other lines.
std::pair<std::string_view, std::string_view> entry(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || line.starts_with('#'))
        return {};
    return {trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1))};
}

std::string unescaped(std::string_view written) {
    std::string result;
    for (std::size_t index = 0; index < written.size(); ++index) {
        if (written[index] != '\\' || index + 1 == written.size()) {
            result += written[index];
            continue;
        }
        switch (const char letter = written[++index]) {
        case 's':
            result += ' ';
            break;
        case 'n':
            result += '\n';
            break;
        case 't':
            result += '\t';
            break;
        case 'r':
            result += '\r';
            break;
        case '\\':
            result += '\\';
            break;
        default:
            result += '\\';
            result += letter;
        }
    }
    return result;
}

std::string escaped(std::string_view value) {
    std::string result;
    for (const char character : value) {
        switch (character) {
        case ' ':
            // Plain blanks at the ends of a value are no part of it.
            result += result.empty() ? "\\s" : " ";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\r':
            result += "\\r";
            break;
        case '\\':
            result += "\\\\";
            break;
        default:
            result += character;
        }
    }
    if (result.ends_with(' '))
        result.replace(result.size() - 1, 1, "\\s");
    return result;
}

} // namespace

DesktopEntry::DesktopEntry(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size());
        _lines.emplace_back(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
        if (!_begin && trimmed(_lines.back()) == "[Desktop Entry]")
            _begin = _lines.size();
    }
}

std::size_t DesktopEntry::end() const {
    const auto begin = _lines.begin() + static_cast<std::ptrdiff_t>(*_begin);
    const auto next = std::find_if(begin, _lines.end(),
                                   [](const std::string& line) { return trimmed(line).starts_with('['); });
    return static_cast<std::size_t>(next - _lines.begin());
}

std::optional<std::string> DesktopEntry::value(std::string_view key) const {
    if (!_begin)
        return std::nullopt;
    for (std::size_t index = end(); index-- > *_begin;) {
        if (const auto [name, written] = entry(_lines[index]); name == key)
            return unescaped(written);
    }
    return std::nullopt;
}

std::optional<bool> DesktopEntry::truth(std::string_view key) const {
    const auto written = value(key);
    // Old entries hold digits for these words.
    if (written == "true" || written == "1")
        return true;
    if (written == "false" || written == "0")
        return false;
    return std::nullopt;
}

std::vector<std::string> DesktopEntry::command() const {
    const std::string exec = value("Exec").value_or("");
    std::vector<std::string> words;
    std::string word;
    // A quoted word may be empty; one that was a field code alone is none.
    bool isQuoted = false;
    bool isInQuotes = false;
    const auto endWord = [&] {
        if (!word.empty() || isQuoted)
            words.push_back(std::exchange(word, {}));
        isQuoted = false;
    };
    for (std::size_t index = 0; index < exec.size(); ++index) {
        const char character = exec[index];
        const bool hasNext = index + 1 < exec.size();
        if (character == '"') {
            isInQuotes = !isInQuotes;
            isQuoted = true;
        } else if (isInQuotes && character == '\\' && hasNext) {
            word += exec[++index];
        } else if (character == '%' && hasNext) {
            if (exec[++index] == '%')
                word += '%';
        } else if (!isInQuotes && blanks.find(character) != std::string_view::npos) {
            endWord();
        } else {
            word += character;
        }
    }
    if (isInQuotes)
        return {};
    endWord();
    return words;
}

void DesktopEntry::set(std::string_view key, std::string_view value) {
    if (!_begin) {
        _lines.insert(_lines.begin(), "[Desktop Entry]");
        _begin = 1;
    }
    std::string line = std::string(key) + "=" + escaped(value);
    for (std::size_t index = end(); index-- > *_begin;) {
        if (entry(_lines[index]).first == key) {
            _lines[index] = std::move(line);
            return;
        }
    }
    // After the last line that says something, so that the blank ones still set the next group apart.
    std::size_t place = end();
    while (place > *_begin && trimmed(_lines[place - 1]).empty())
        --place;
    _lines.insert(_lines.begin() + static_cast<std::ptrdiff_t>(place), std::move(line));
}

void DesktopEntry::remove(std::string_view key) {
    if (!_begin)
        return;
    const auto begin = _lines.begin() + static_cast<std::ptrdiff_t>(*_begin);
    const auto end = _lines.begin() + static_cast<std::ptrdiff_t>(this->end());
    _lines.erase(
        std::remove_if(begin, end, [key](const std::string& line) { return entry(line).first == key; }), end);
}

std::string DesktopEntry::text() const {
    std::string result;
    for (const std::string& line : _lines)
        result.append(line).append("\n");
    return result;
}

std::string DesktopEntry::executable(std::string_view path) {
    std::string word;
    for (const char character : path) {
        if (character == '%')
            word += '%';
        else if (std::string_view("\"`$\\").find(character) != std::string_view::npos)
            word += '\\';
        word += character;
    }
    if (path.find_first_of(" \t\n\"'\\><~|&;$*?#()`") == std::string_view::npos)
        return word;
    return '"' + word + '"';
}

} // namespace selvane
