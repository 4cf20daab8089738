#pragma once

#include "ecu/configuration/ConfigurationPart.h"

#include <QCommandLineOption>
#include <QStringList>

class QCommandLineParser;

namespace tarvioctl {

/// The parts of a configuration that a command deals with: those that "--only" names, else all.
class PartSelection
{
public:
    static QCommandLineOption option();

    /// Throws std::invalid_argument for a name that no part has.
    explicit PartSelection(const QCommandLineParser& parser);

    /// @param element of a settings file
    bool contains(const QString& element) const;

    QVector<ConfigurationPart> of(const QVector<ConfigurationPart>& parts) const;

private:
    QStringList mElements; // empty = all
};

} // namespace tarvioctl
