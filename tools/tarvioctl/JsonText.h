#pragma once

#include <QByteArray>
#include <QString>

namespace tarvioctl {

/// Builds the text of a JSON object: five times as fast as by Qt's objects, which a live stream
/// needs. Names and texts must need no escapes.
class JsonText
{
public:
    void begin(char bracket)
    {
        separate();
        mText += bracket;
        mNeedsComma = false;
    }

    void end(char bracket)
    {
        mText += bracket;
        mNeedsComma = true;
    }

    /// Stands before the value of a field, or before the bracket that begins it.
    void name(const char* name)
    {
        separate();
        mText += '"';
        mText += name;
        mText += "\":";
        mNeedsComma = false;
    }

    void value(qint64 number) { rawValue(QByteArray::number(number)); }
    void value(double number) { rawValue(QByteArray::number(number)); }
    void value(const QString& text) { rawValue('"' + text.toUtf8() + '"'); }

    template<typename Value>
    void field(const char* fieldName, const Value& fieldValue)
    {
        name(fieldName);
        value(fieldValue);
    }

    QString text() const { return QString::fromUtf8(mText); }

private:
    void rawValue(const QByteArray& raw)
    {
        separate();
        mText += raw;
        mNeedsComma = true;
    }

    void separate()
    {
        if (mNeedsComma)
            mText += ',';
    }

    QByteArray mText;
    bool mNeedsComma = false;
};

} // namespace tarvioctl
