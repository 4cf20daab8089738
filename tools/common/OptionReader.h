#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

class QCommandLineParser;

namespace cli {

/// Takes typed values out of a parsed command line. Each member throws std::invalid_argument with
/// a whole sentence when the value of the option `name` is none that it takes.
class OptionReader
{
public:
    /// The parser is borrowed.
    explicit OptionReader(const QCommandLineParser& parser) : mParser(parser) {}

    bool isSet(const char* name) const;
    QString text(const char* name) const;

    /// A number of a closed range, or `otherwise` when the option is not given.
    double number(const char* name, double from, double to, double otherwise) const;

    /// A whole number of a closed range.
    std::optional<int> wholeNumber(const char* name, int from, int to) const;

    /// 0 to 1; 0 when the option is not given.
    double share(const char* name) const;

    std::optional<std::uint16_t> port(const char* name, int lowest) const;

    /// A dotted IPv4 address.
    std::optional<QString> address(const char* name) const;

    /// The value of the word given, that of the first one when none is.
    template<typename Value>
    Value choice(const char* name, const std::vector<std::pair<QString, Value>>& choices) const;

    /// Any whole number of 64 bits, or `otherwise`.
    std::uint64_t seed(const char* name, std::uint64_t otherwise) const;

    /// A list like "3,7": sensors as they are shown, 1 to 12. Bit n is sensor n + 1.
    std::uint16_t sensorMask(const char* name) const;

    /// Repeated assignments like "2=5", each side 0 to 255.
    std::map<std::uint8_t, std::uint8_t> statuses(const char* name) const;

private:
    int integer(const char* name, const QString& digits, int from, int to) const;
    [[noreturn]] void refuse(const char* name, const QString& expected) const;

    const QCommandLineParser& mParser; // borrowed
};

template<typename Value>
Value OptionReader::choice(const char* name,
                           const std::vector<std::pair<QString, Value>>& choices) const
{
    if (!isSet(name))
        return choices.front().second;
    QStringList words;
    for (const auto& [word, value] : choices) {
        if (word == text(name))
            return value;
        words += word;
    }
    refuse(name, QStringLiteral("one of ") + words.join(QStringLiteral(", ")));
}

} // namespace cli
