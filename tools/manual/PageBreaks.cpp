#include "tools/manual/PageBreaks.h"

#include <cmath>
#include <QAbstractTextDocumentLayout>
#include <QTextCursor>
#include <QTextLayout>
#include <QTextTable>

namespace manual {

namespace {

int pageOfLine(const QTextDocument& document, const QTextBlock& block, int line) {
    const QRectF rect = document.documentLayout()->blockBoundingRect(block);  // lays the block out
    const QTextLayout& layout = *block.layout();
    const QTextLine textLine = layout.lineAt(line);
    const double middle = textLine.isValid() ? textLine.y() + textLine.height() / 2 : 0;
    return static_cast<int>(std::floor((rect.top() + middle) / document.pageSize().height()));
}

int lastPageOf(const QTextDocument& document, const QTextBlock& block) {
    return pageOfLine(document, block, block.layout()->lineCount() - 1);
}

bool belongsToNext(const QTextBlock& block) {
    const bool image = block.text() == QString(QChar::ObjectReplacementCharacter);
    return block.isValid() && (block.blockFormat().headingLevel() > 0 || image);
}

/// The first of the headings and pictures that must be on the same page as the block.
QTextBlock leaderOf(QTextBlock block) {
    while (belongsToNext(block.previous()))
        block = block.previous();
    return block;
}

bool leavesALineAlone(const QTextDocument& document, const QTextBlock& block) {
    const int lines = block.layout()->lineCount();
    if (lines < 2) return false;
    return pageOfLine(document, block, 0) != pageOfLine(document, block, 1) ||
           pageOfLine(document, block, lines - 2) != pageOfLine(document, block, lines - 1);
}

QTextTable* tableOf(const QTextBlock& block) {
    return QTextCursor(block).currentTable();
}

bool isTorn(const QTextDocument& document, const QTextTable& table) {
    for (int row = 0; row < table.rows(); ++row) {
        const int page = firstPageOf(document, table.cellAt(row, 0).firstCursorPosition().block());
        for (int column = 0; column < table.columns(); ++column) {
            const QTextBlock block = table.cellAt(row, column).lastCursorPosition().block();
            if (lastPageOf(document, block) != page || firstPageOf(document, block) != page) return true;
        }
    }
    return false;
}

bool mustMove(const QTextDocument& document, const QTextBlock& block) {
    if (const QTextTable* const table = tableOf(block))
        return table->firstCursorPosition().block() == block && isTorn(document, *table);
    if (belongsToNext(block) && block.next().isValid())
        return firstPageOf(document, block) != firstPageOf(document, block.next());
    return leavesALineAlone(document, block);
}

}  // namespace

int firstPageOf(const QTextDocument& document, const QTextBlock& block) {
    return pageOfLine(document, block, 0);
}

std::optional<int> findMissingBreak(const QTextDocument& document, const QList<int>& known) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (!mustMove(document, block)) continue;
        const int leader = leaderOf(block).blockNumber();
        if (!known.contains(leader)) return leader;
    }
    return std::nullopt;
}

void breakPageBefore(const QTextBlock& block) {
    if (QTextTable* const table = tableOf(block)) {
        QTextTableFormat format = table->format();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        table->setFormat(format);
        return;
    }
    QTextBlockFormat format = block.blockFormat();
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCursor(block).setBlockFormat(format);
}

}  // namespace manual
