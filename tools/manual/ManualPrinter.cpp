#include "tools/manual/ManualPrinter.h"

#include "tools/manual/PageBreaks.h"
#include "tools/manual/PictureObject.h"
#include "tools/manual/Style.h"

#include <cmath>
#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextTable>

namespace manual {

namespace {

constexpr int kResolution = 720;
constexpr double kUnit = kResolution / 72.0;  // device units in a point
constexpr double kCoverHeight = 250;          // points above the table of contents

struct Heading {
    QString text;
    int level;
    int page;  ///< from 1
};

QList<Heading> headingsOf(const QTextDocument& document) {
    QList<Heading> headings;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level > 0) headings.append({block.text(), level, firstPageOf(document, block) + 2});
    }
    return headings;
}

class Printer {
public:
    Printer(const Cover& cover, QPdfWriter& writer) : cover_(cover), writer_(writer), painter_(&writer) {}

    bool isActive() const { return painter_.isActive(); }

    void printCover(const QList<Heading>& headings, int pageCount) {
        pageCount_ = pageCount;
        painter_.save();
        painter_.scale(kUnit, kUnit);
        painter_.fillRect(QRectF(0, 0, style::kPageWidth, 190), style::kAccent);
        painter_.setPen(Qt::white);
        text(style::font(30, QFont::DemiBold), 92, cover_.title);
        text(style::font(15), 124, cover_.subtitle);
        painter_.setPen(QColor(0xd5, 0xe4, 0xee));
        text(style::font(8.6), 168, cover_.edition);
        double y = kCoverHeight;
        painter_.setPen(style::kAccent);
        text(style::font(style::kHeadingSizes[1], QFont::DemiBold), y, QStringLiteral("Sommario"));
        y += 12;
        for (const Heading& heading : headings)
            y = contentsLine(heading, y);
        painter_.restore();
        footer(1);
    }

    void printPage(const QTextDocument& document, int page) {
        writer_.newPage();
        const double height = document.pageSize().height();
        painter_.save();
        painter_.translate(style::kSideMargin * kUnit, style::kTopMargin * kUnit - (page * height));
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF(0, page * height, document.pageSize().width(), height - kUnit);
        context.palette.setColor(QPalette::Text, style::kInk);
        painter_.setClipRect(context.clip);
        document.documentLayout()->draw(&painter_, context);
        painter_.restore();
        footer(page + 2);
    }

private:
    void text(const QFont& font, double baseline, const QString& string) {
        painter_.setFont(scaled(font));
        painter_.drawText(QPointF(style::kSideMargin, baseline), string);
    }
    /// A font for the painter scaled to points.
    static QFont scaled(QFont font) {
        font.setPointSizeF(font.pointSizeF() / kUnit);
        return font;
    }

    double contentsLine(const Heading& heading, double y) {
        const bool chapter = heading.level == 2;
        const double lineHeight = chapter ? 19 : 15;
        const double left = style::kSideMargin + (chapter ? 0 : 14);
        y += lineHeight;
        painter_.setFont(scaled(style::font(style::kTextSize)));
        painter_.setPen(chapter ? style::kInk : style::kQuietInk);
        painter_.drawText(QPointF(left, y), heading.text);
        const QRectF number(style::kSideMargin, y - lineHeight, style::kTextWidth, lineHeight + 3);
        painter_.drawText(number, Qt::AlignRight | Qt::AlignBottom, QString::number(heading.page));
        painter_.setPen(QPen(style::kRule, 0.5));
        painter_.drawLine(QPointF(style::kSideMargin, y + 5),
                          QPointF(style::kPageWidth - style::kSideMargin, y + 5));
        return y;
    }

    void footer(int number) {
        painter_.save();
        painter_.scale(kUnit, kUnit);
        const double top = style::kPageHeight - style::kBottomMargin + 26;
        const QRectF line(style::kSideMargin, top + 5, style::kTextWidth, 14);
        painter_.setPen(QPen(style::kRule, 0.5));
        painter_.drawLine(line.topLeft() - QPointF(0, 4), line.topRight() - QPointF(0, 4));
        painter_.setPen(style::kQuietInk);
        painter_.setFont(scaled(style::font(style::kFooterSize)));
        painter_.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                          cover_.title + QStringLiteral(" · ") + cover_.subtitle);
        painter_.drawText(line, Qt::AlignRight | Qt::AlignVCenter,
                          QStringLiteral("%1 / %2").arg(number).arg(pageCount_));
        painter_.restore();
    }

    const Cover& cover_;
    QPdfWriter& writer_;
    QPainter painter_;
    int pageCount_ = 0;
};

}  // namespace

QString printManual(QString markdown, const PictureSource& pictures, const QString& pdfPath) {
    const Cover cover = takeCover(markdown);
    if (cover.title.isEmpty())
        return QStringLiteral("the text does not begin with title, subtitle and edition");

    QPdfWriter writer(pdfPath);
    writer.setTitle(cover.title + QStringLiteral(" - ") + cover.subtitle);
    writer.setCreator(QStringLiteral("Tessaro"));
    writer.setResolution(kResolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF());

    PictureObject pictureObject(pictures, kUnit);
    QList<int> breaks;
    std::unique_ptr<QTextDocument> document;
    std::optional<int> nextBreak;
    do {  // each break moves what follows: lay out again, from scratch, until none is missing
        document = std::make_unique<QTextDocument>();
        document->documentLayout()->setPaintDevice(&writer);
        document->documentLayout()->registerHandler(QTextFormat::ImageObject, &pictureObject);
        document->setDocumentMargin(0);
        setStyledMarkdown(*document, markdown);
        for (const int block : breaks)
            breakPageBefore(document->findBlockByNumber(block));
        document->setPageSize(QSizeF(style::kTextWidth, style::kTextHeight) * kUnit);
        nextBreak = findMissingBreak(*document, breaks);
        if (nextBreak) breaks.append(*nextBreak);
    } while (nextBreak);
    if (!pictureObject.missing.isEmpty())
        return QStringLiteral("no picture \"%1\"").arg(pictureObject.missing.join(QStringLiteral("\", \"")));

    Printer printer(cover, writer);
    if (!printer.isActive()) return QStringLiteral("cannot be written");
    const int pageCount = document->pageCount();
    printer.printCover(headingsOf(*document), pageCount + 1);
    for (int page = 0; page < pageCount; ++page)
        printer.printPage(*document, page);
    return {};
}

}  // namespace manual
