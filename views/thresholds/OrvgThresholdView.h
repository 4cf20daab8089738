#pragma once

#include "orv_decoder/metatypes.h"

#include <QByteArray>
#include <QWidget>

#include <string>

class QXmlStreamReader;
class QXmlStreamWriter;

namespace orv {
class OrvCtrlClient;
}

/// Edits the echo thresholds of the twelve sensors, reads them from the ECU and writes them.
class OrvgThresholdView : public QWidget
{
    Q_OBJECT

public:
    explicit OrvgThresholdView(QWidget* parent = nullptr);

    /// The client is borrowed; a null one changes nothing.
    void setCtrlClient(orv::OrvCtrlClient* client);

    QByteArray saveState() const;
    bool restoreState(const QByteArray& state);

public slots:
    void onNewMeasResult(orv::OrvMeasurementResult result);
    void writeXml(QXmlStreamWriter& writer);
    bool readFromXml(QXmlStreamReader& reader, std::string& errString);
    bool onReceiveAll(bool silent = false);
    bool onTransmitAll(bool silent = false);
};
