#pragma once

#include <QWidget>

#include <string>

class QXmlStreamReader;
class QXmlStreamWriter;

namespace orv {
class OrvCtrlClient;
}

/// Edits the measurement sequence, reads it from the ECU and writes it.
class OrvgMseqView : public QWidget
{
    Q_OBJECT

public:
    /// The client is borrowed and may be null.
    explicit OrvgMseqView(QWidget* parent = nullptr, orv::OrvCtrlClient* ctrl = nullptr);

    /// A null client changes nothing.
    void setCtrlClient(orv::OrvCtrlClient* client);

public slots:
    bool readSteps(bool silent);
    bool writeSteps(bool silent);
    void writeXml(QXmlStreamWriter& writer);
    bool readFromXml(QXmlStreamReader& reader, std::string& error);
};
