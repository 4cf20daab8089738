#include "views/sequence/OrvgMseqView.h"

#include "ecu/configuration/sequence_section.h"
#include "ecu/configuration/step_words.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/constants.h"
#include "ui_OrvgMseqView.h"
#include "views/common/item_tables.h"
#include "views/sequence/OrvgMseqStepItemModel.h"
#include "views/sequence/OrvgStepItemDelegate.h"

namespace {

// By itself Qt passes the focus on to the next button, where the key that is pressed once more does
// something else: it deletes.
void setUsable(QToolButton& button, bool isUsable, QTableView& table)
{
    if (!isUsable && button.hasFocus())
        table.setFocus();
    button.setEnabled(isUsable);
}

} // namespace

OrvgMseqView::OrvgMseqView(QWidget* parent, orv::OrvCtrlClient* ctrl)
    : QWidget(parent)
    , mUi(std::make_unique<Ui::OrvgMseqView>())
    , mModel(new OrvgMseqStepItemModel(this))
{
    mEcu.setClient(ctrl);
    mUi->setupUi(this);
    setUpTable();
    connectSignals();
}

OrvgMseqView::~OrvgMseqView() = default;

void OrvgMseqView::setUpTable()
{
    QTableView* table = mUi->mseqTable;
    table->setModel(mModel);
    table->setItemDelegate(new OrvgStepItemDelegate(table));
    stretchColumns(*table, stateWords().constFirst());
    // A new current row is painted as one; by itself the table repaints the two cells alone.
    connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, table->viewport(),
            QOverload<>::of(&QWidget::update));
}

void OrvgMseqView::connectSignals()
{
    connect(mUi->readMseqTb, &QToolButton::clicked, this, [this] { readSteps(false); });
    connect(mUi->writeMseqTb, &QToolButton::clicked, this, [this] { writeSteps(false); });
    connect(mUi->addStepTb, &QToolButton::clicked, this, &OrvgMseqView::addStep);
    connect(mUi->cloneStepTb, &QToolButton::clicked, this, &OrvgMseqView::cloneStep);
    connect(mUi->removeStepTb, &QToolButton::clicked, this, &OrvgMseqView::removeStep);
}

void OrvgMseqView::setCtrlClient(orv::OrvCtrlClient* client)
{
    mEcu.setClient(client);
}

void OrvgMseqView::setSteps(std::span<const orv::MseqStep> steps)
{
    mModel->setSteps(steps);
}

void OrvgMseqView::addStep()
{
    const QModelIndex current = mUi->mseqTable->currentIndex();
    mModel->insertEmptyStep(current.isValid() ? current.row() + 1 : mModel->rowCount());
    updateButtons();
}

void OrvgMseqView::removeStep()
{
    const QModelIndex current = mUi->mseqTable->currentIndex();
    if (current.isValid())
        mModel->removeStep(current.row());
    updateButtons();
}

void OrvgMseqView::cloneStep()
{
    const QModelIndex current = mUi->mseqTable->currentIndex();
    if (current.isValid())
        editedModel().cloneStep(current.row());
    updateButtons();
}

bool OrvgMseqView::readSteps(bool silent)
{
    std::vector<orv::MseqStep> held;
    const bool nothingToAsk = silent || mModel->rowCount() == 0;
    const auto read = [&held](orv::OrvCtrlClient& client) {
        return client.readMeasurementSequence(held);
    };
    if (!mEcu.mayOverwrite(nothingToAsk, tr("Read sequence")) || !mEcu.run(silent, read))
        return false;
    setSteps(held);
    updateButtons();
    return true;
}

bool OrvgMseqView::writeSteps(bool silent)
{
    return mEcu.run(silent, [this](orv::OrvCtrlClient& client) {
        return client.writeMeasurementSequence(editedModel().steps());
    });
}

void OrvgMseqView::writeXml(QXmlStreamWriter& writer)
{
    writeSequenceSection(writer, editedModel().steps());
}

bool OrvgMseqView::readFromXml(QXmlStreamReader& reader, std::string& error)
{
    return takeSection(readSequenceSection(reader), error,
                       [this](const auto& read) { setSteps(read); });
}

void OrvgMseqView::updateButtons()
{
    const int count = mModel->rowCount();
    const bool isEmpty = count == 0;
    const bool isFull = count >= static_cast<int>(orv::kMaxStepCount);
    QTableView& table = *mUi->mseqTable;
    setUsable(*mUi->addStepTb, !isFull, table);
    setUsable(*mUi->cloneStepTb, !isEmpty && !isFull, table);
    setUsable(*mUi->removeStepTb, !isEmpty, table);
    setUsable(*mUi->writeMseqTb, !isEmpty, table);
}

// The model with what stands in an open editor.
OrvgMseqStepItemModel& OrvgMseqView::editedModel()
{
    commitOpenEditor(*mUi->mseqTable);
    return *mModel;
}
