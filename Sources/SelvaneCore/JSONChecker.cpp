#include "SelvaneCore/JSONChecker.h"

#include "SelvaneCore/Text.h"

#include <cmath>

namespace selvane {

void JSONChecker::value(std::string_view text) {
    if (_error == JSONWriteError{} && !Text::isValid(text))
        _error = JSONWriteError::textIsNotUTF8;
}

void JSONChecker::value(double number) {
    if (_error == JSONWriteError{} && !std::isfinite(number))
        _error = JSONWriteError::numberIsNotFinite;
}

tl::expected<void, JSONWriteError> JSONChecker::outcome() const {
    if (_error != JSONWriteError{})
        return tl::unexpected(_error);
    return {};
}

} // namespace selvane
