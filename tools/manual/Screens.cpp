#include "tools/manual/Screens.h"

#include "platform/host/Resources.h"
#include "tools/manual/Style.h"

#include <QImage>
#include <QMap>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>
#include <QTextLayout>
#include <QTextOption>

namespace manual {

namespace {

constexpr double kPointsPerPixel = 0.47;  // the widest dialog fills the text's width
constexpr double kTitleBar = 30;          // pixels, as everything in a screen
constexpr double kFontPixels = 13;
constexpr double kMenuRow = 26;
constexpr short kFirstIcon = 32758;
constexpr int kItalian = 0;  // number of the language

const QColor kWindow(0xf6, 0xf7, 0xf8);
const QColor kFrame(0x9a, 0xa5, 0xad);
const QColor kDisabled(0xa5, 0xad, 0xb3);

QFont screenFont(bool bold = false) {
    QFont font(style::kTextFamily);
    font.setPixelSize(static_cast<int>(kFontPixels));
    font.setWeight(bold ? QFont::DemiBold : QFont::Normal);
    return font;
}

/// The add-on's texts in Italian.
class Texts {
public:
    explicit Texts(RSResModule module) : module_(module) {}

    QString addOn(short index) const { return string(32530, index); }
    QString framework(short index) const { return string(32710, index); }
    QString menuItem(short index) const { return string(32510, index); }
    QString description() const {
        QString joined;
        for (short index = 5; index <= 12; ++index)
            joined += addOn(index);
        return joined;
    }

private:
    QString string(short resID, short index) const {
        unsigned short units[kRSStringBufferUnits];
        if (!RSGetIndString_ParamAdapter(RSStringLocalised, units, resID, index, module_))
            return QStringLiteral("?");
        return QString::fromUtf16(reinterpret_cast<const char16_t*>(units));
    }

    RSResModule module_;
};

struct Screen {
    short dialog = 0;
    QString title;
    QMap<short, QString> items;
    QList<short> hidden;
    QList<short> icons;  ///< of the rows of a list
    int selectedRow = 0;
};

Screen aboutScreen(const Texts& texts) {
    return {32500,
            texts.addOn(4),
            {{1, texts.framework(64)}, {4, texts.description()}, {6, texts.addOn(13)}, {7, texts.addOn(14)}},
            {2},
            {},
            0};
}

Screen infoScreen(const Texts& texts) {
    return {32501,
            QStringLiteral("TessaroLibrary"),
            {{1, texts.framework(64)},
             {2, texts.framework(5)},
             {4, QStringLiteral("TessaroLibrary")},
             {5, texts.addOn(16) + QStringLiteral(" 22.0.4.2200")},
             {6, texts.addOn(17) + QStringLiteral(" 03/08/2018")},
             {7, texts.addOn(18) + QStringLiteral(" Mactel")},
             {8, QStringLiteral("ArchiCAD 22")},
             {16, texts.addOn(20)}},
            {},
            {},
            0};
}

Screen languageScreen(const Texts& texts) {
    return {32734,
            QStringLiteral("TessaroLibrary"),
            {{1, texts.framework(64)}, {2, texts.framework(5)}, {6, texts.framework(65)}},
            {},
            {kFirstIcon, kFirstIcon + 1},
            0};
}

Screen updateScreen(const Texts& texts) {
    const auto named = [&](short index) {
        return texts.framework(index)
            .replace(QStringLiteral("ADDONNAME"), QStringLiteral("TessaroLibrary"))
            .replace(QStringLiteral("ADDONLIBNAME"), QStringLiteral("Tessaro"));
    };
    return {32755,
            QStringLiteral("TessaroLibrary"),
            {{1, texts.framework(37)},
             {2, texts.framework(5)},
             {3, texts.framework(34)},
             {4, named(81)},
             {5, texts.framework(79)},
             {6, named(82)},
             {7, texts.framework(84)}},
            {},
            {},
            0};
}

void paintWindow(QPainter& painter, const QSizeF& content, const QString& title) {
    const QRectF window(0.5, 0.5, content.width(), content.height() + kTitleBar);
    QPainterPath outline;
    outline.addRoundedRect(window, 7, 7);
    painter.setPen(QPen(kFrame, 1));
    painter.fillPath(outline, kWindow);
    painter.save();
    painter.setClipRect(QRectF(0, 0, window.width() + 1, kTitleBar), Qt::IntersectClip);
    painter.fillPath(outline, QColor(0xe2, 0xe6, 0xe9));
    painter.restore();
    painter.drawPath(outline);
    painter.drawLine(QPointF(0.5, kTitleBar), QPointF(window.right(), kTitleBar));
    for (int button = 0; button < 3; ++button) {
        const QColor colors[] = {QColor(0xe9, 0x7d, 0x73), QColor(0xe8, 0xc1, 0x63),
                                 QColor(0x86, 0xc0, 0x7f)};
        painter.setBrush(colors[button]);
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(18 + button * 18, kTitleBar / 2), 5.5, 5.5);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(style::kInk);
    painter.setFont(screenFont(true));
    painter.drawText(QRectF(0, 0, window.width(), kTitleBar), Qt::AlignCenter, title);
}

void paintButton(QPainter& painter, const QRectF& rect, const QString& text, bool isDefault) {
    painter.setPen(QPen(isDefault ? style::kAccent : kFrame, 1));
    painter.setBrush(isDefault ? QBrush(style::kAccent) : QBrush(Qt::white));
    painter.drawRoundedRect(rect, 5, 5);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(isDefault ? QColor(Qt::white) : style::kInk);
    painter.setFont(screenFont());
    painter.drawText(rect, Qt::AlignCenter, text);
}

void paintIcon(QPainter& painter, const platform::IconResource& icon, const QRectF& row) {
    QSvgRenderer renderer(QByteArray::fromStdString(icon.image));
    QSizeF size = renderer.defaultSize();
    if (size.isEmpty()) return;
    size.scale(size.width(), std::min(size.height(), row.height() - 6), Qt::KeepAspectRatio);
    renderer.render(
        &painter, QRectF(row.left() + 5, row.center().y() - size.height() / 2, size.width(), size.height()));
}

void paintList(QPainter& painter, const QRectF& rect, const Screen& screen, RSResModule module) {
    constexpr double kRowHeight = 30;
    painter.setPen(QPen(kFrame, 1));
    painter.setBrush(Qt::white);
    painter.drawRect(rect);
    painter.setBrush(Qt::NoBrush);
    for (int row = 0; row < screen.icons.size(); ++row) {
        const QRectF line(rect.left(), rect.top() + row * kRowHeight, rect.width(), kRowHeight);
        if (row == screen.selectedRow) painter.fillRect(line, QColor(0xcf, 0xe2, 0xf0));
        const platform::IconResource* const icon = platform::findIcon(module, screen.icons[row]);
        if (icon != nullptr) paintIcon(painter, *icon, line);
    }
}

void paintDialog(QPainter& painter, const Screen& screen, RSResModule module) {
    const platform::DialogLayout* const layout = platform::findDialogLayout(module, screen.dialog);
    paintWindow(painter, QSizeF(layout->width, layout->height), screen.title);
    painter.translate(0, kTitleBar);
    for (const platform::LayoutItem& item : layout->items) {
        if (screen.hidden.contains(item.number)) continue;
        const QRectF rect(item.rect.left, item.rect.top, item.rect.width, item.rect.height);
        const QString text = screen.items.contains(item.number)
                                 ? screen.items[item.number]
                                 : QString::fromStdString(platform::dialogItemText(module, screen.dialog,
                                                                                   item.number, kItalian));
        switch (item.kind) {
            case platform::DialogItemKind::Button:
                paintButton(painter, rect, text, item.number == layout->defaultItem);
                break;
            case platform::DialogItemKind::List:
                paintList(painter, rect, screen, module);
                break;
            case platform::DialogItemKind::Separator:
                painter.setPen(QPen(QColor(0xd5, 0xda, 0xde), 1));
                painter.drawLine(rect.topLeft(), rect.topRight());
                break;
            case platform::DialogItemKind::Text:
                painter.setPen(style::kInk);
                painter.setFont(screenFont(item.bold));
                painter.drawText(rect, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text);
                break;
            case platform::DialogItemKind::Icon:
                break;
        }
    }
}

void paintMenu(QPainter& painter, const QString& title, const Texts& texts, double width) {
    painter.setFont(screenFont(true));
    painter.setPen(style::kInk);
    painter.fillRect(QRectF(0, 0, width, kMenuRow), QColor(0xe2, 0xe6, 0xe9));
    const QRectF titleBox(120, 0, 140, kMenuRow);
    painter.fillRect(titleBox, style::kAccent);
    painter.setPen(Qt::white);
    painter.drawText(titleBox, Qt::AlignCenter, title);
    painter.setFont(screenFont());
    painter.setPen(style::kQuietInk);
    painter.drawText(QRectF(16, 0, 90, kMenuRow), Qt::AlignVCenter, QStringLiteral("Finestra"));
    painter.drawText(QRectF(276, 0, 90, kMenuRow), Qt::AlignVCenter, QStringLiteral("Aiuto"));

    const QRectF box(120, kMenuRow, 300, 5 * kMenuRow + 12);
    painter.setPen(QPen(kFrame, 1));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(box, 4, 4);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(style::kInk);
    for (short item = 1; item <= 5; ++item) {
        const QRectF row(box.left(), box.top() + 6 + (item - 1) * kMenuRow, box.width(), kMenuRow);
        if (item == 4) painter.drawText(row.adjusted(10, 0, 0, 0), Qt::AlignVCenter, QStringLiteral("✓"));
        painter.drawText(row.adjusted(30, 0, 0, 0), Qt::AlignVCenter, texts.menuItem(item));
    }
}

Picture screenPicture(const QSizeF& pixels, std::function<void(QPainter&)> paint) {
    return {pixels * kPointsPerPixel, [paint = std::move(paint)](QPainter& painter) {
                painter.setRenderHint(QPainter::Antialiasing);
                painter.scale(kPointsPerPixel, kPointsPerPixel);
                paint(painter);
            }};
}

}  // namespace

Screens::Screens(const QString& bundlePath) : module_(RSOpenResourceFile(bundlePath.toUtf8().constData())) {}

Screens::~Screens() {
    RSCloseResourceFile(module_);
}

Picture Screens::picture(const QString& name) const {
    const Texts texts(module_);
    if (name == QStringLiteral("menu")) {
        platform::MenuResource menu;
        if (!platform::getMenuResource(module_, 32500, menu)) return {};
        const QString title = QString::fromStdString(menu.title);
        constexpr double kWidth = 560;
        return screenPicture(QSizeF(kWidth, 6 * kMenuRow + 14),
                             [title, texts](QPainter& painter) { paintMenu(painter, title, texts, kWidth); });
    }
    const QMap<QString, Screen (*)(const Texts&)> dialogs{{QStringLiteral("about"), aboutScreen},
                                                          {QStringLiteral("info"), infoScreen},
                                                          {QStringLiteral("language"), languageScreen},
                                                          {QStringLiteral("update"), updateScreen}};
    if (!dialogs.contains(name)) return {};
    const Screen screen = dialogs[name](texts);
    const platform::DialogLayout* const layout = platform::findDialogLayout(module_, screen.dialog);
    if (layout == nullptr) return {};
    return screenPicture(
        QSizeF(layout->width + 1, layout->height + kTitleBar + 1),
        [screen, module = module_](QPainter& painter) { paintDialog(painter, screen, module); });
}

}  // namespace manual
