#pragma once

#include <QSGNode>
#include <QSGTexture>
#include <QSize>

#include <memory>

class QImage;
class QQuickWindow;

namespace selvane {

/// Draws a picture at its size or larger. What it lacks is put into its middle: its middle column and its
/// middle row of pixels are repeated, so that the rest stays as it is. The render thread, the window's only.
class StretchedPicture final : public QSGNode {
public:
    /// `full` is the size to fill, in device pixels, of which there are `pixels` to a pixel of the window; it
    /// is at least that of the picture.
    StretchedPicture(const QImage& picture, QSize full, double pixels, QQuickWindow& window);

private:
    std::unique_ptr<QSGTexture> _texture;
};

} // namespace selvane
