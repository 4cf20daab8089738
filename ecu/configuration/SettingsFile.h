#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <string>

class QXmlStreamReader;
class QXmlStreamWriter;

/// One section of a settings file and who writes and reads what stands in it.
struct SettingsSection
{
    QString element;   ///< the name of its element in the file
    QString errorName; ///< what a failure of this section is announced by

    /// Writes the content of the section's open element.
    std::function<void(QXmlStreamWriter&)> write;

    /// Reads the content; the reader stands on the section's start element, has nothing but this
    /// section before it and may be left anywhere. False with the reason in the string.
    std::function<bool(QXmlStreamReader&, std::string&)> read;
};

/// What an import could not do; empty texts when it did all.
struct ImportReport
{
    QString abortText;     ///< why the import ended early
    QString sectionErrors; ///< a line for each section that failed

    bool isComplete() const { return abortText.isEmpty() && sectionErrors.isEmpty(); }
};

/// The frame of the settings file: which sections there are, in which order, and what happens to
/// a file that is not as it should be. Knows nothing of what stands in a section.
class SettingsFile
{
public:
    using Selection = std::function<bool(const QString& element)>;

    /// The sections in the order of the file.
    explicit SettingsFile(QVector<SettingsSection> sections);

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
    void readSections(QXmlStreamReader& reader, const Selection& isSelected,
                      ImportReport& report) const;
    const SettingsSection& sectionNamed(const QString& element) const;

    QVector<SettingsSection> mSections;
};
