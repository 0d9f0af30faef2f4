#pragma once

#include <QString>
#include <QTextDocument>

namespace manual {

/// What the cover shows: the level 1 heading and the two paragraphs after it.
struct Cover {
    QString title;
    QString subtitle;
    QString edition;
};

/// Takes the cover off the Markdown text.
Cover takeCover(QString& markdown);

/// Fills the document with the Markdown text in the manual's style.
void setStyledMarkdown(QTextDocument& document, const QString& markdown);

}  // namespace manual
