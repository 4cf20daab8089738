#pragma once

#include <QProxyStyle>

/// Draws the title of a dock without the "&" that marks the mnemonic of its menu entry: not every
/// platform style takes it out there.
class DockTitleStyle : public QProxyStyle
{
    Q_OBJECT

public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};
