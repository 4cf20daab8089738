#pragma once

#include <QByteArray>
#include <QRandomGenerator>
#include <QtEndian>

/// Damages bytes in the ways in which files are damaged and numbers are dangerous; the same seed
/// gives the same damage.
class Mutator
{
public:
    explicit Mutator(quint32 seed) : mRandom(seed) {}

    QByteArray operator()(QByteArray bytes)
    {
        const int damages = 1 + below(3);
        for (int damage = 0; damage < damages; ++damage)
            bytes = damaged(bytes);
        return bytes;
    }

private:
    int below(int end) { return mRandom.bounded(end); }

    QByteArray damaged(QByteArray bytes)
    {
        if (bytes.isEmpty())
            return QByteArray(1 + below(200), char(below(256)));
        const int at = below(int(bytes.size()));
        switch (below(6)) {
        case 0:
            bytes[at] = char(bytes[at] ^ char(1 << below(8)));
            return bytes;
        case 1:
            bytes[at] = char(below(256));
            return bytes;
        case 2:
            return bytes.left(at);
        case 3:
            return bytes.insert(at, QByteArray(1 + below(8), char(below(256))));
        case 4:
            return bytes.remove(at, 1 + below(8));
        default:
            return withNumber(bytes, at);
        }
    }

    // Numbers in saved states are most often four bytes long, with the highest first.
    QByteArray withNumber(QByteArray bytes, int at)
    {
        static constexpr qint32 kNumbers[] = {0x7FFFFFFF, -0x7FFFFFFF, -1,     0,   1,    100'000,
                                              0x10000000, 32767,       -32768, 999, 5000, 16777215};
        if (bytes.size() - at >= int(sizeof(qint32)))
            qToBigEndian(kNumbers[below(std::size(kNumbers))], bytes.data() + at);
        return bytes;
    }

    QRandomGenerator mRandom;
};
