#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

/// Writes the decisions that an InputScript reads.
class ScriptText
{
public:
    ScriptText& byte(unsigned value)
    {
        mText.append(static_cast<char>(value));
        return *this;
    }

    ScriptText& word(unsigned value) { return byte(value >> 8 & 0xFF).byte(value & 0xFF); }

    ScriptText& block(const std::vector<std::uint8_t>& bytes)
    {
        word(static_cast<unsigned>(bytes.size()));
        mText.append(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
        return *this;
    }

    ScriptText& block(const QByteArray& bytes)
    {
        return block(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
    }

    const QByteArray& text() const { return mText; }

private:
    QByteArray mText;
};
