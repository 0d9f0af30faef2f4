#pragma once

#include <QString>
#include <QTextDocument>

namespace manual {

/// What stands on the cover: the level 1 heading and the two paragraphs behind it.
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
