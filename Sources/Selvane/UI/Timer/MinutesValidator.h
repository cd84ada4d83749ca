#pragma once

#include <QValidator>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// Leaves out of what is typed what a draft of minutes doesn't keep; the cursor stays where it was among the
/// rest. Every text is acceptable: whether it is a number is asked at the end. Main thread.
class MinutesValidator : public QValidator {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit MinutesValidator(QObject* parent = nullptr) : QValidator(parent) {}

    State validate(QString& input, int& position) const override;
};

} // namespace selvane
