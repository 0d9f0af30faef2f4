#pragma once

#include <optional>
#include <QList>
#include <QTextBlock>
#include <QTextDocument>

namespace manual {

/// The page, from 0, of the block's first line.
int firstPageOf(const QTextDocument& document, const QTextBlock& block);

/// The number of a block that has to begin on a new page: a heading that would be left behind by its text, a
/// picture by its caption, a paragraph whose first or last line would be alone, a table with a torn row.
/// Only one, since a new break moves everything behind it. `known` are the breaks that are made already.
std::optional<int> findMissingBreak(const QTextDocument& document, const QList<int>& known);

/// Makes the block, or the table that begins with it, begin on a new page.
void breakPageBefore(const QTextBlock& block);

}  // namespace manual
