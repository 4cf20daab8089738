#pragma once

#include <QByteArray>
#include <QDataStream>

#include <optional>

/// No desktop is wider or higher, in pixels.
constexpr int kMaxExtent = 32767;

/// Reads what Qt saved of a window, for a look at it before Qt restores it. Qt believes each number
/// in there: how much memory to take, how often to read on, how large to become.
class StateReader
{
public:
    explicit StateReader(const QByteArray& state) : mStream(state)
    {
        mStream.setVersion(QDataStream::Qt_5_0);
    }

    /// The next number or record; its zero value once the bytes have run out.
    template<typename T>
    T next()
    {
        T value{};
        mStream >> value;
        return value;
    }

    template<typename T>
    bool nextIs(T expected)
    {
        return next<T>() == expected;
    }

    bool nextIsWithin(int minimum, int maximum)
    {
        const auto value = next<qint32>();
        return value >= minimum && value <= maximum;
    }

    /// The bytes of the next text; none when it is longer than `maxBytes` or they are not there.
    std::optional<QByteArray> nextText(int maxBytes)
    {
        const auto length = next<quint32>();
        if (length > quint32(maxBytes) || length % sizeof(QChar) != 0)
            return {};
        QByteArray text(int(length), '\0');
        if (mStream.readRawData(text.data(), int(length)) != int(length))
            return {};
        return text;
    }

    /// True when everything was there and nothing is left.
    bool isComplete() const { return mStream.status() == QDataStream::Ok && mStream.atEnd(); }

private:
    QDataStream mStream;
};
