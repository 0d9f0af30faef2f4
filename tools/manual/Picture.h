#pragma once

#include <functional>
#include <QSizeF>

class QPainter;

namespace manual {

/// Something drawn into the text. The painter's units are points, the origin is the top left corner.
struct Picture {
    QSizeF size;  ///< in points; empty for a picture that does not exist
    std::function<void(QPainter&)> paint;
};

/// Finds the picture of an image reference in the Markdown text.
using PictureSource = std::function<Picture(const QString& name)>;

}  // namespace manual
