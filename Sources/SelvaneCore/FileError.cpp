#include "SelvaneCore/FileError.h"

namespace selvane {

std::string FileError::localizedDescription() const {
    return code.message();
}

std::string FileError::description() const {
    return operation + " " + path.string() + ": " + code.message();
}

} // namespace selvane
