#pragma once

#include "Selvane/UI/Controls/KeyboardStop.h"

#include <QtQml/qqmlregistration.h>

namespace selvane {

/// What a slider from 0 to 1 does, whatever it looks like. The user moves it by a press or a drag of the
/// mouse, by the wheel, by the keys, and through assistive technology. The mouse brings it anywhere. The
/// arrows go a step, Page Up and Page Down several; Home and End go to the ends. Its owner sets `position`
/// and follows `moved`, which tells of the user alone. Main thread.
class SlideArea : public selvane::KeyboardStop {
    Q_OBJECT
    QML_ELEMENT

    /// From 0, at the left, to 1. What is not a number is ignored.
    Q_PROPERTY(double position READ position WRITE setPosition NOTIFY positionChanged FINAL)
    /// What a key and a turn of the wheel move it by. 0.1 in the beginning; more than 0.
    Q_PROPERTY(double stepSize READ stepSize WRITE setStepSize NOTIFY stepSizeChanged FINAL)
    /// The handle keeps within the item: its middle is half of this from the ends. In pixels of the window.
    Q_PROPERTY(double handleWidth READ handleWidth WRITE setHandleWidth NOTIFY handleWidthChanged FINAL)

    // The names that Qt looks for on behalf of assistive technology, which moves the slider by them.
    Q_PROPERTY(double value READ position WRITE moveTo NOTIFY valueChanged FINAL)
    Q_PROPERTY(double minimumValue READ minimumValue CONSTANT FINAL)
    Q_PROPERTY(double maximumValue READ maximumValue CONSTANT FINAL)

public:
    explicit SlideArea(QQuickItem* parent = nullptr);

    [[nodiscard]] double position() const { return _position; }
    void setPosition(double position);
    [[nodiscard]] double stepSize() const { return _stepSize; }
    void setStepSize(double step);
    [[nodiscard]] double handleWidth() const { return _handleWidth; }
    void setHandleWidth(double width);
    [[nodiscard]] static double minimumValue() { return 0; }
    [[nodiscard]] static double maximumValue() { return 1; }

    /// As the user does it.
    void moveTo(double position);
    Q_INVOKABLE void increase() { moveTo(_position + _stepSize); }
    Q_INVOKABLE void decrease() { moveTo(_position - _stepSize); }

Q_SIGNALS:
    /// The user has changed the position.
    void moved();

    void positionChanged();
    /// By this name assistive technology is told.
    void valueChanged();
    void stepSizeChanged();
    void handleWidthChanged();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Where the handle's middle is.
    [[nodiscard]] double handle() const;
    /// Brings the handle to the pointer, held where it was taken.
    void follow(const QPointF& pointer);

    double _position = 0;
    double _stepSize = 0.1;
    double _handleWidth = 0;
    /// From the handle's middle to the pointer that holds it.
    double _grip = 0;
};

} // namespace selvane
