#pragma once

#include <QApplication>
#include <QPalette>
#include <QStyle>

/// Gives the application another palette for as long as it lives.
class PaletteScope
{
public:
    explicit PaletteScope(const QPalette& palette) { QApplication::setPalette(palette); }
    ~PaletteScope() { QApplication::setPalette(mFormer); }
    PaletteScope(const PaletteScope&) = delete;
    PaletteScope& operator=(const PaletteScope&) = delete;

private:
    const QPalette mFormer = QApplication::palette();
};

inline QPalette lightPalette()
{
    return QApplication::style()->standardPalette();
}

/// Light text on dark ground, as desktops set it.
inline QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53), QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}
