#pragma once

class QString;

inline constexpr int kOctetCount = 4;
inline constexpr int kMaxOctet = 255;
inline constexpr int kMaxOctetDigits = 3;

/// True for the decimal text of 0..255, of at most three digits.
bool isOctet(const QString& text);

/// An octet without its leading zeros; empty for an empty text.
QString withoutLeadingZeros(const QString& octet);

/// The address of four octets as everything else in the program expects it: without blanks around
/// it and without leading zeros, which make an octet octal for some. Empty for what is no complete
/// address.
QString completeAddress(const QString& text);
