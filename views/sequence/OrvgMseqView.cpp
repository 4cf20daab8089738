#include "views/sequence/OrvgMseqView.h"

#include "ecu/configuration/sequence_section.h"
#include "ecu/configuration/step_words.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "orv_decoder/constants.h"
#include "ui_OrvgMseqView.h"
#include "views/common/WaitCursor.h"
#include "views/common/item_tables.h"
#include "views/common/messages.h"
#include "views/sequence/OrvgMseqStepItemModel.h"
#include "views/sequence/OrvgStepItemDelegate.h"

OrvgMseqView::OrvgMseqView(QWidget* parent, orv::OrvCtrlClient* ctrl)
    : QWidget(parent)
    , mUi(std::make_unique<Ui::OrvgMseqView>())
    , mModel(new OrvgMseqStepItemModel(this))
    , mClient(ctrl)
{
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
    stretchColumns(*table, stateWords().first());
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
    if (client)
        mClient = client;
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
    commitOpenEditor(*mUi->mseqTable);
    const QModelIndex current = mUi->mseqTable->currentIndex();
    if (current.isValid())
        mModel->cloneStep(current.row());
    updateButtons();
}

bool OrvgMseqView::readSteps(bool silent)
{
    if (!mClient)
        return false;
    if (mModel->rowCount() > 0 && !silent && !confirmOverwrite(this, tr("Read sequence")))
        return false;
    std::vector<orv::MseqStep> steps;
    if (!readSequence(steps)) {
        if (!silent)
            showCommunicationError(this, mClient->lastError());
        return false;
    }
    mModel->setSteps(steps);
    updateButtons();
    return true;
}

bool OrvgMseqView::writeSteps(bool silent)
{
    if (!mClient)
        return false;
    commitOpenEditor(*mUi->mseqTable);
    if (writeSequence())
        return true;
    if (!silent)
        showCommunicationError(this, mClient->lastError());
    return false;
}

void OrvgMseqView::writeXml(QXmlStreamWriter& writer)
{
    commitOpenEditor(*mUi->mseqTable);
    writeSequenceSection(writer, mModel->steps());
}

bool OrvgMseqView::readFromXml(QXmlStreamReader& reader, std::string& error)
{
    std::vector<orv::MseqStep> steps;
    if (!readSequenceSection(reader, steps, error))
        return false;
    mModel->setSteps(steps);
    return true;
}

void OrvgMseqView::updateButtons()
{
    const int count = mModel->rowCount();
    const bool isEmpty = count == 0;
    const bool isFull = count >= static_cast<int>(orv::kMaxStepCount);
    mUi->addStepTb->setEnabled(!isFull);
    mUi->cloneStepTb->setEnabled(!isEmpty && !isFull);
    mUi->removeStepTb->setEnabled(!isEmpty);
    mUi->writeMseqTb->setEnabled(!isEmpty);
}

bool OrvgMseqView::readSequence(std::vector<orv::MseqStep>& steps)
{
    const WaitCursor waitCursor;
    return mClient->readMeasurementSequence(steps);
}

bool OrvgMseqView::writeSequence()
{
    const WaitCursor waitCursor;
    return mClient->writeMeasurementSequence(mModel->steps());
}
