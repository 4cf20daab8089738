#pragma once

class QColor;

/// How well text of one colour reads on the other one: 1 for the same colour to 21 for black on
/// white, by their relative luminance.
double contrastRatio(const QColor& first, const QColor& second);

/// The text colour of a palette where it reads well on this background, else black or white.
QColor readableTextColor(const QColor& ofPalette, const QColor& background);
