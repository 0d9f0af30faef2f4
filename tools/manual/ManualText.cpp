#include "tools/manual/ManualText.h"

#include "tools/manual/Style.h"

#include <algorithm>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>
#include <vector>

namespace manual {

namespace {

// Margins and table measures of a text document are pixels of 96 dpi, whatever it is printed on.
double pixels(double points) {
    return points * 96 / 72;
}

constexpr double kParagraphGap = 7;  // points

void setMargins(QTextBlockFormat& format, double top, double bottom) {
    format.setTopMargin(pixels(top));
    format.setBottomMargin(pixels(bottom));
}

bool isCaption(const QTextBlock& block) {
    const auto first = block.begin();
    return !first.atEnd() && first.fragment().charFormat().fontItalic() &&
           block.text().startsWith(QStringLiteral("Figura "));
}

bool isImage(const QTextBlock& block) {
    return block.text() == QString(QChar::ObjectReplacementCharacter);
}

void styleBlockFormat(const QTextBlock& block, bool inTable) {
    const QTextBlockFormat old = block.blockFormat();
    QTextBlockFormat format = old;
    format.setLineHeight(style::kLineHeightPercent, QTextBlockFormat::ProportionalHeight);
    if (const int level = old.headingLevel(); level > 0) {
        setMargins(format, level == 2 ? 22 : 14, level == 2 ? 7 : 5);
        format.setLineHeight(100, QTextBlockFormat::ProportionalHeight);
    } else if (old.hasProperty(QTextFormat::BlockCodeFence)) {
        const auto isCode = [](const QTextBlock& other) {
            return other.isValid() && other.blockFormat().hasProperty(QTextFormat::BlockCodeFence);
        };
        setMargins(format, isCode(block.previous()) ? 0 : 6, isCode(block.next()) ? 0 : 9);
        format.setLineHeight(100, QTextBlockFormat::ProportionalHeight);
        format.setBackground(style::kShade);
        format.setLeftMargin(pixels(0));
        format.setIndent(0);
        format.setTextIndent(pixels(6));
    } else if (block.text().isEmpty()) {  // what the import leaves behind a table
        setMargins(format, 0, 0);
        format.setLineHeight(1, QTextBlockFormat::FixedHeight);
    } else if (inTable) {
        setMargins(format, 0, 0);
        format.setLineHeight(pixels(14.2), QTextBlockFormat::MinimumHeight);
    } else if (isImage(block)) {
        setMargins(format, 6, 3);
        format.setLineHeight(100, QTextBlockFormat::ProportionalHeight);
    } else if (isCaption(block)) {
        setMargins(format, 0, 11);
    } else if (block.textList() != nullptr) {
        const bool last = block.next().textList() != block.textList();
        setMargins(format, 0, last ? kParagraphGap : 2.5);
    } else {
        setMargins(format, 0, kParagraphGap);
    }
    QTextCursor(block).setBlockFormat(format);
}

QTextCharFormat styledCharFormat(const QTextBlock& block, const QTextCharFormat& old, bool header) {
    const int level = block.blockFormat().headingLevel();
    const bool code = old.fontFixedPitch() || block.blockFormat().hasProperty(QTextFormat::BlockCodeFence);
    QTextCharFormat format = old;
    format.clearProperty(QTextFormat::FontSizeAdjustment);
    format.clearProperty(QTextFormat::FontFixedPitch);
    format.setFontFamilies({code ? style::kCodeFamily : style::kTextFamily});
    format.setForeground(style::kInk);
    format.setFontPointSize(code ? style::kCodeSize : style::kTextSize);
    if (level > 0) {
        format.setFontPointSize(style::kHeadingSizes[std::min(level, 3) - 1]);
        format.setFontWeight(QFont::DemiBold);
        format.setForeground(style::kAccent);
    } else if (isCaption(block)) {
        format.setFontPointSize(style::kCaptionSize);
        format.setForeground(style::kQuietInk);
    } else if (header) {
        format.setFontWeight(QFont::DemiBold);
    } else if (old.isAnchor()) {
        format.setForeground(style::kAccent);
        format.setFontUnderline(false);
    } else if (old.fontWeight() > QFont::Normal) {
        format.setFontWeight(QFont::DemiBold);
    }
    return format;
}

void styleFragments(const QTextBlock& block, bool header) {
    struct Piece {
        int position;
        int length;
        QTextCharFormat format;
    };
    std::vector<Piece> pieces;
    for (auto each = block.begin(); !each.atEnd(); ++each) {
        const QTextFragment fragment = each.fragment();
        if (fragment.charFormat().isImageFormat()) continue;
        pieces.push_back(
            {fragment.position(), fragment.length(), styledCharFormat(block, fragment.charFormat(), header)});
    }
    for (const Piece& piece : pieces) {
        QTextCursor cursor(block);
        cursor.setPosition(piece.position);
        cursor.setPosition(piece.position + piece.length, QTextCursor::KeepAnchor);
        cursor.setCharFormat(piece.format);
    }
    QTextCursor(block).setBlockCharFormat(styledCharFormat(block, block.charFormat(), header));
}

/// Long first columns would otherwise squeeze the column that explains them.
QList<QTextLength> columnWidths(const QTextTable& table) {
    if (table.columns() == 3) {
        return {QTextLength(QTextLength::PercentageLength, 10),
                QTextLength(QTextLength::PercentageLength, 35),
                QTextLength(QTextLength::PercentageLength, 55)};
    }
    return {QTextLength(QTextLength::PercentageLength, 36), QTextLength(QTextLength::PercentageLength, 64)};
}

bool hasHeader(const QTextTable& table) {
    return !table.cellAt(0, 0).firstCursorPosition().block().text().isEmpty();
}

void styleTable(QTextTable& table) {
    const bool header = hasHeader(table);
    if (!header) table.removeRows(0, 1);
    QTextTableFormat format = table.format();
    format.setBorder(0.5);
    format.setBorderCollapse(true);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_None);
    format.setCellPadding(pixels(3.5));
    format.setCellSpacing(0);
    format.setTopMargin(pixels(5));
    format.setBottomMargin(pixels(11));
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    format.setColumnWidthConstraints(columnWidths(table));
    format.setHeaderRowCount(header ? 1 : 0);
    table.setFormat(format);
    for (int row = 0; row < table.rows(); ++row) {
        for (int column = 0; column < table.columns(); ++column) {
            QTextTableCell cell = table.cellAt(row, column);
            QTextTableCellFormat cellFormat = cell.format().toTableCellFormat();
            cellFormat.setBottomBorder(0.5);
            cellFormat.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            cellFormat.setBottomBorderBrush(style::kRule);
            if (header && row == 0) cellFormat.setBackground(style::kShade);
            cell.setFormat(cellFormat);
        }
    }
}

}  // namespace

Cover takeCover(QString& markdown) {
    static const QRegularExpression pattern(
        QStringLiteral("\\A# ([^\\n]+)\\n\\n([^\\n]+)\\n\\n([^\\n]+)\\n\\n"));
    const QRegularExpressionMatch match = pattern.match(markdown);
    if (!match.hasMatch()) return {};
    markdown.remove(0, match.capturedLength());
    return {match.captured(1), match.captured(2), match.captured(3)};
}

void setStyledMarkdown(QTextDocument& document, const QString& markdown) {
    document.setDefaultFont(style::font(style::kTextSize));
    document.setMarkdown(markdown, QTextDocument::MarkdownDialectGitHub);
    document.setIndentWidth(pixels(16));
    for (QTextFrame* const frame : document.rootFrame()->childFrames()) {
        if (auto* const table = qobject_cast<QTextTable*>(frame)) styleTable(*table);
    }
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextTable* const table = QTextCursor(block).currentTable();
        const bool header = table != nullptr && table->format().headerRowCount() > 0 &&
                            table->cellAt(block.position()).row() == 0;
        styleFragments(block, header);
        styleBlockFormat(block, table != nullptr);
    }
}

}  // namespace manual
