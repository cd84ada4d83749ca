#include "Selvane/UI/Timer/MinutesValidator.h"

#include "Selvane/UI/Timer/MinutesDraft.h"

namespace selvane {

QValidator::State MinutesValidator::validate(QString& input, int& position) const {
    position = static_cast<int>(MinutesDraft::cleaned(input.left(position)).size());
    input = MinutesDraft::cleaned(input);
    return Acceptable;
}

} // namespace selvane
