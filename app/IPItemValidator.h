#pragma once

#include <QIntValidator>

/// Accepts one octet of an IPv4 address, 0..255 in up to three decimal digits, and nothing that
/// could not become one: the plain integer validator lets 256..999 stand as unfinished.
class IPItemValidator : public QIntValidator
{
    Q_OBJECT

public:
    explicit IPItemValidator(QObject* parent = nullptr);

    State validate(QString& input, int& position) const override;
};
