#pragma once

#include "tools/manual/Picture.h"

#include <QObject>
#include <QPainter>
#include <QStringList>
#include <QTextFormat>
#include <QTextObjectInterface>

namespace manual {

/// Lets a text document hold pictures that are drawn, not copied pixel by pixel. `unit` is a point in units
/// of the device that the document is laid out for.
class PictureObject : public QObject, public QTextObjectInterface {
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    PictureObject(const PictureSource& pictures, double unit) : pictures_(pictures), unit_(unit) {}

    /// Names of pictures that do not exist.
    QStringList missing;

    QSizeF intrinsicSize(QTextDocument*, int, const QTextFormat& format) override {
        const QString name = format.toImageFormat().name();
        const QSizeF size = pictures_(name).size;
        if (size.isEmpty() && !missing.contains(name)) missing.append(name);
        return size * unit_;
    }
    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument*, int,
                    const QTextFormat& format) override {
        const Picture picture = pictures_(format.toImageFormat().name());
        if (picture.size.isEmpty()) return;
        painter->save();
        painter->translate(rect.topLeft());
        painter->scale(unit_, unit_);
        picture.paint(*painter);
        painter->restore();
    }

private:
    const PictureSource& pictures_;
    const double unit_;
};

}  // namespace manual
