#pragma once

#include "orv_decoder/MseqStep.h"
#include "views/common/EcuExchange.h"

#include <QWidget>

#include <memory>
#include <span>
#include <string>

class OrvgMseqStepItemModel;
class QXmlStreamReader;
class QXmlStreamWriter;

namespace orv {
class OrvCtrlClient;
}

namespace Ui {
class OrvgMseqView;
}

/// Edits the measurement sequence, reads it from the ECU and writes it.
///
/// Exchanges with the ECU block. A `silent` call asks nothing and shows no failure. A choice that
/// is still in its editor counts as made when the steps are cloned, written or saved.
class OrvgMseqView : public QWidget
{
    Q_OBJECT

public:
    /// The client is borrowed and may be null.
    explicit OrvgMseqView(QWidget* parent = nullptr, orv::OrvCtrlClient* ctrl = nullptr);
    ~OrvgMseqView() override;

    /// A null client changes nothing.
    void setCtrlClient(orv::OrvCtrlClient* client);

    /// Leaves the buttons as they are.
    void setSteps(std::span<const orv::MseqStep> steps);

public slots:
    /// Inserts an empty step behind the current row, at the end when there is none.
    void addStep();
    void removeStep();
    /// Inserts a copy of the current step above it.
    void cloneStep();
    /// False without a client, when the user declines and when the exchange failed.
    bool readSteps(bool silent);
    bool writeSteps(bool silent);
    /// Writes the content of the open section of a settings file.
    void writeXml(QXmlStreamWriter& writer);
    /// Takes the steps of the current section, the first twelve at most, and leaves the reader
    /// behind the last one; on failure the model is unchanged.
    bool readFromXml(QXmlStreamReader& reader, std::string& error);

private:
    void setUpTable();
    void connectSignals();
    void updateButtons();
    OrvgMseqStepItemModel& editedModel();

    std::unique_ptr<Ui::OrvgMseqView> mUi;
    OrvgMseqStepItemModel* mModel;
    EcuExchange mEcu{this};
};
