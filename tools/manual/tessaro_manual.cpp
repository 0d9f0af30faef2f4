// Prints one part of the manual: Markdown text with figures and pictures of the add-on's dialogs, as a PDF
// file.

#include "tools/manual/ManualPrinter.h"
#include "tools/manual/Screens.h"

#include <cstdio>
#include <memory>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QSvgRenderer>

namespace {

enum ExitCode { kDone = 0, kUsage = 2, kUnreadable = 3 };

int fail(ExitCode code, const QString& reason) {
    std::fprintf(stderr, "tessaro-manual: %s\n", qPrintable(reason));
    return code;
}

manual::Picture figure(const QString& path) {
    const auto renderer = std::make_shared<QSvgRenderer>(path);
    if (!renderer->isValid()) return {};
    const QSizeF size = renderer->defaultSize();
    return {size,
            [renderer, size](QPainter& painter) { renderer->render(&painter, QRectF(QPointF(), size)); }};
}

}  // namespace

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, arguments);
    const QStringList words = QGuiApplication::arguments();
    if (words.size() != 4)
        return fail(kUsage, QStringLiteral("usage: tessaro-manual TEXT.md BUNDLE OUT.pdf"));

    QFile text(words[1]);
    if (!text.open(QIODevice::ReadOnly))
        return fail(kUnreadable, words[1] + QStringLiteral(": ") + text.errorString());
    const manual::Screens screens(words[2]);
    if (!screens.isOpen()) return fail(kUnreadable, words[2] + QStringLiteral(": no resources"));

    const QString folder = QFileInfo(words[1]).path();
    const manual::PictureSource pictures = [&](const QString& name) {
        const QString file = name.section(QLatin1Char(':'), 1);
        return name.startsWith(QStringLiteral("screen:")) ? screens.picture(file)
                                                          : figure(folder + QLatin1Char('/') + file);
    };
    const QString problem = manual::printManual(QString::fromUtf8(text.readAll()), pictures, words[3]);
    return problem.isEmpty() ? kDone : fail(kUnreadable, words[3] + QStringLiteral(": ") + problem);
}
