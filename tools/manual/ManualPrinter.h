#pragma once

#include "tools/manual/ManualText.h"
#include "tools/manual/Picture.h"

namespace manual {

/// Prints the Markdown text as a PDF file: a cover with the table of contents, then the text, with page
/// numbers. Returns what went wrong; empty for success.
QString printManual(QString markdown, const PictureSource& pictures, const QString& pdfPath);

}  // namespace manual
