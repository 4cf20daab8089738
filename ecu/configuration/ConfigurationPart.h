#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>
#include <string>

class QXmlStreamReader;
class QXmlStreamWriter;

/// How a part moves between the tool and the ECU. The operations ask nothing, tell nothing and
/// return success.
struct EcuTransfer
{
    QString name; ///< as a failure is listed
    int turn = 0; ///< parts of a lower turn are exchanged first
    std::function<bool()> read;
    std::function<bool()> write;
};

/// One part of the configuration: how it stands in a settings file and how it is exchanged with
/// the ECU. The functions reach who holds the part, who must live as long as they are called.
struct ConfigurationPart
{
    QString element;   ///< the name of its element in a settings file
    QString errorName; ///< what a failure to read it from a file is announced by

    /// Writes the content of the part's open element.
    std::function<void(QXmlStreamWriter&)> writeXml;

    /// Reads the content; the reader stands on the part's start element, has nothing but this
    /// element before it and may be left anywhere. False with the reason in the string.
    std::function<bool(QXmlStreamReader&, std::string&)> readFromXml;

    /// None for a part that is not exchanged with the others.
    std::optional<EcuTransfer> ecu = {};
};

/// How the parts are exchanged with the ECU, in the order of the turns.
QVector<EcuTransfer> transfersInTurn(const QVector<ConfigurationPart>& parts);

/// Reads every part from the ECU, also after a failure of another one. The names of those that
/// failed, in the order of the turns.
QStringList readAllFromEcu(const QVector<ConfigurationPart>& parts);

/// The same for writing.
QStringList writeAllToEcu(const QVector<ConfigurationPart>& parts);
