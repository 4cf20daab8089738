#include "app/IPItemValidator.h"

#include <algorithm>

namespace {

constexpr int kMaxOctet = 255;
constexpr int kMaxDigits = 3;

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

} // namespace

IPItemValidator::IPItemValidator(QObject* parent) : QIntValidator(0, kMaxOctet, parent) {}

QValidator::State IPItemValidator::validate(QString& input, int&) const
{
    if (input.isEmpty())
        return Intermediate;
    return isOctet(input) ? Acceptable : Invalid;
}

bool isOctet(const QString& text)
{
    return !text.isEmpty() && text.size() <= kMaxDigits &&
           std::all_of(text.begin(), text.end(), isDigit) && text.toInt() <= kMaxOctet;
}
