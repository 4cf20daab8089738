#pragma once

#include "ecu/configuration/ConfigurationPart.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/// What an import could not do; empty texts when it did all.
struct ImportReport
{
    QString abortText;     ///< why the import ended early
    QString sectionErrors; ///< a line for each section that failed

    bool isComplete() const { return abortText.isEmpty() && sectionErrors.isEmpty(); }
};

/// The frame of the settings file: a section for each part, in which order, and what happens to a
/// file that is not as it should be. Knows nothing of what stands in a section.
class SettingsFile
{
public:
    using Selection = std::function<bool(const QString& element)>;

    /// The parts in the order of the file.
    explicit SettingsFile(QVector<ConfigurationPart> parts);

    /// The whole file as it is to be written.
    QByteArray document() const;

    /// Reads the selected sections of a file one by one. What was read stays when a later section
    /// fails; a failed section does not keep the later ones from being read, but an unknown
    /// section, more sections than any file has and a broken file do.
    ImportReport read(const QString& fileName, const Selection& isSelected) const;

    /// The names of all sections in a file, as far as it can be read; empty for a file that is no
    /// settings file.
    static QStringList sectionsOf(const QString& fileName);

private:
    const ConfigurationPart* partOf(const QString& element) const;

    QVector<ConfigurationPart> mParts;
};
