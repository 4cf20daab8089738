#pragma once

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QWidget>

/// Gives the application another palette for as long as it lives.
class PaletteScope
{
public:
    explicit PaletteScope(const QPalette& palette) { apply(palette); }
    ~PaletteScope() { apply(mFormer); }
    PaletteScope(const PaletteScope&) = delete;
    PaletteScope& operator=(const PaletteScope&) = delete;

private:
    // Qt 6 leaves a widget that was never shown the palette that it was made with.
    static void apply(const QPalette& palette)
    {
        QApplication::setPalette(palette);
        for (QWidget* widget : QApplication::allWidgets()) {
            if (!widget->testAttribute(Qt::WA_SetPalette))
                widget->setPalette(QPalette());
        }
    }

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
