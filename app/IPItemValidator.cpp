#include "app/IPItemValidator.h"

#include "ecu/store/ip_address.h"

IPItemValidator::IPItemValidator(QObject* parent) : QIntValidator(0, kMaxOctet, parent) {}

QValidator::State IPItemValidator::validate(QString& input, int&) const
{
    if (input.isEmpty())
        return Intermediate;
    return isOctet(input) ? Acceptable : Invalid;
}
