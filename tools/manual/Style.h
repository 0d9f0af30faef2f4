#pragma once

#include <QColor>
#include <QFont>
#include <QString>

/// Fonts, colours and measures of the manual. Lengths are points unless they say otherwise.
namespace manual::style {

inline const QString kTextFamily = QStringLiteral("Open Sans");
inline const QString kCodeFamily = QStringLiteral("DejaVu Sans Mono");

inline constexpr double kPageWidth = 595.28;  // A4
inline constexpr double kPageHeight = 841.89;
inline constexpr double kSideMargin = 71;
inline constexpr double kTopMargin = 68;
inline constexpr double kBottomMargin = 80;
inline constexpr double kTextWidth = kPageWidth - 2 * kSideMargin;
inline constexpr double kTextHeight = kPageHeight - kTopMargin - kBottomMargin;

inline constexpr double kTextSize = 9.6;
inline constexpr double kCodeSize = 8.2;
inline constexpr double kCaptionSize = 8.4;
inline constexpr double kFooterSize = 7.8;
inline constexpr double kHeadingSizes[] = {28, 16, 12};  // of levels 1 to 3
inline constexpr int kLineHeightPercent = 115;

inline const QColor kInk(0x22, 0x30, 0x3c);
inline const QColor kQuietInk(0x5b, 0x6b, 0x78);
inline const QColor kAccent(0x1f, 0x5f, 0x8b);
inline const QColor kShade(0xee, 0xf3, 0xf7);
inline const QColor kRule(0xc9, 0xd3, 0xda);

inline QFont font(double size, QFont::Weight weight = QFont::Normal, bool italic = false) {
    QFont result(kTextFamily);
    result.setPointSizeF(size);
    result.setWeight(weight);
    result.setItalic(italic);
    return result;
}

}  // namespace manual::style
