#pragma once

#include "Selvane/UI/Controls/StillItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

#include <utility>

namespace selvane {

/// A switch: a knob on a track. One item, so that it can be drawn faint as a whole. The track is 32 by 18;
/// around it lies room for the ring that tells where the keyboard is. Main thread.
class SwitchShape : public selvane::StillItem {
    Q_OBJECT
    QML_ELEMENT

    /// From 0 for off to 1 for on; the knob may swing a little beyond either while it moves.
    Q_PROPERTY(double position READ position WRITE setPosition NOTIFY shapeChanged FINAL)
    Q_PROPERTY(QColor trackOff READ trackOff WRITE setTrackOff NOTIFY shapeChanged FINAL)
    Q_PROPERTY(QColor trackOn READ trackOn WRITE setTrackOn NOTIFY shapeChanged FINAL)
    Q_PROPERTY(QColor knobOff READ knobOff WRITE setKnobOff NOTIFY shapeChanged FINAL)
    Q_PROPERTY(QColor knobOn READ knobOn WRITE setKnobOn NOTIFY shapeChanged FINAL)
    Q_PROPERTY(QColor edgeColor READ edgeColor WRITE setEdgeColor NOTIFY shapeChanged FINAL)
    Q_PROPERTY(bool ringed READ isRinged WRITE setRinged NOTIFY shapeChanged FINAL)
    Q_PROPERTY(QColor ringColor READ ringColor WRITE setRingColor NOTIFY shapeChanged FINAL)

public:
    static constexpr double trackWidth = 32;
    static constexpr double trackHeight = 18;
    /// Between the knob and the track's edge.
    static constexpr double margin = 2;
    /// Around the track, for the ring.
    static constexpr double spread = 4;

    explicit SwitchShape(QQuickItem* parent = nullptr);

    [[nodiscard]] double position() const { return _position; }
    void setPosition(double position) { set(_position, position); }
    [[nodiscard]] const QColor& trackOff() const { return _trackOff; }
    void setTrackOff(const QColor& color) { set(_trackOff, color); }
    [[nodiscard]] const QColor& trackOn() const { return _trackOn; }
    void setTrackOn(const QColor& color) { set(_trackOn, color); }
    [[nodiscard]] const QColor& knobOff() const { return _knobOff; }
    void setKnobOff(const QColor& color) { set(_knobOff, color); }
    [[nodiscard]] const QColor& knobOn() const { return _knobOn; }
    void setKnobOn(const QColor& color) { set(_knobOn, color); }
    [[nodiscard]] const QColor& edgeColor() const { return _edgeColor; }
    void setEdgeColor(const QColor& color) { set(_edgeColor, color); }
    [[nodiscard]] bool isRinged() const { return _ringed; }
    void setRinged(bool ringed) { set(_ringed, ringed); }
    [[nodiscard]] const QColor& ringColor() const { return _ringColor; }
    void setRingColor(const QColor& color) { set(_ringColor, color); }

    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void shapeChanged();

private:
    template <typename Value>
    void set(Value& member, const Value& value) {
        if (std::exchange(member, value) == value)
            return;
        update();
        Q_EMIT shapeChanged();
    }

    double _position = 0;
    QColor _trackOff;
    QColor _trackOn;
    QColor _knobOff;
    QColor _knobOn;
    QColor _edgeColor;
    bool _ringed = false;
    QColor _ringColor;
};

} // namespace selvane
