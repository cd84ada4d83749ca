#include "Selvane/UI/Timer/MinutesDraft.h"

#include "Selvane/UI/QtText.h"
#include "SelvaneCore/Text.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace selvane {

namespace {

constexpr int longestDraft = 3;
constexpr double widthOfSize = 1.25;
/// Beside the digits, for the cursor.
constexpr double cursorRoom = 2;

} // namespace

void MinutesDraft::startEditing(double remainingSeconds) {
    if (!canEdit() || _isEditing)
        return;
    setText(QString::number(std::llround(remainingSeconds / 60)));
    _phase = _face->phase();
    _isEditing = true;
    Q_EMIT isEditingChanged();
}

void MinutesDraft::finish(Ending ending) {
    if (!_isEditing)
        return;
    _isEditing = false;
    const bool freesKeyboard = std::exchange(_hasKeyboard, false);
    // Read first: the view that types goes away with the next line.
    const std::optional<int> typed = minutes(_text);
    Q_EMIT isEditingChanged();
    if (ending == Ending::save && typed && _face)
        _face->setMinutes(*typed);
    if (freesKeyboard)
        Q_EMIT keyboardFreed();
}

void MinutesDraft::focusChanged(bool hasFocus) {
    _hasKeyboard = hasFocus && _isEditing;
    if (!hasFocus)
        save();
}

void MinutesDraft::setFace(TimerFaceModel* face) {
    if (face == _face)
        return;
    cancel();
    if (_face)
        _face->disconnect(this);
    _face = face;
    if (_face) {
        connect(_face, &TimerFaceModel::stateChanged, this, &MinutesDraft::follow);
        connect(_face, &TimerFaceModel::typingEnded, this, &MinutesDraft::save);
    }
    Q_EMIT faceChanged();
}

void MinutesDraft::follow() {
    if (!canEdit() || _face->phase() != _phase)
        cancel();
}

double MinutesDraft::fieldWidth(double size, double contentWidth) {
    return std::max(widthOfSize * size, std::ceil(contentWidth) + cursorRoom);
}

void MinutesDraft::setText(const QString& text) {
    const QString kept = cleaned(text);
    const bool differs = kept != _text;
    _text = kept;
    if (differs || kept != text)
        Q_EMIT textChanged();
}

QString MinutesDraft::cleaned(const QString& text) {
    const std::string utf8 = text.toStdString();
    QString kept;
    int count = 0;
    for (const std::string_view character : Text::characters(utf8)) {
        if (count == longestDraft)
            break;
        if (!Text::isNumber(character))
            continue;
        kept += qtText(character);
        ++count;
    }
    return kept;
}

std::optional<int> MinutesDraft::minutes(const QString& text) {
    bool parses = false;
    // In the C locale's digits; others stay in the draft but are no number.
    const int number = text.toInt(&parses, 10);
    if (!parses || number <= 0)
        return std::nullopt;
    return number;
}

} // namespace selvane
