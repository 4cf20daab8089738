#include "views/thresholds/OrvgThresholdView.h"

#include "ecu/configuration/threshold_section.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "ui_OrvgThresholdView.h"
#include "views/common/messages.h"
#include "views/thresholds/CalibrationDialog.h"
#include "views/thresholds/OrvgThreshItemModel.h"
#include "views/thresholds/OrvgThresholdItemDelegate.h"
#include "views/thresholds/ThresholdTransfer.h"

#include <QMessageBox>
#include <QPointer>
#include <QThread>

#include <utility>

namespace {

bool isSensorRow(const QModelIndex& index)
{
    return index.isValid() && index.row() < orv::kSensorCount;
}

void sleepMs(int milliseconds)
{
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

} // namespace

OrvgThresholdView::OrvgThresholdView(QWidget* parent)
    : QWidget(parent)
    , mUi(std::make_unique<Ui::OrvgThresholdView>())
    , mModel(new OrvgThreshItemModel(this))
    , mTransfer(new ThresholdTransfer(mModel, this))
    , mCalibrationWaiting(sleepMs)
{
    mUi->setupUi(this);
    mUi->mPlot->setThresholdColor(QColor(QStringLiteral("orange")));
    mUi->mPlot->setSampleStore(SampleStore::DrawnValues); // runs all day
    for (const QString& name : {tr("50%"), tr("62.5%"), tr("81.25%"), tr("100%")})
        mUi->mScaleCb->addItem(name, mUi->mScaleCb->count());
    setUpTable();
    connectSignals();
}

OrvgThresholdView::~OrvgThresholdView() = default;

void OrvgThresholdView::setUpTable()
{
    QTableView* table = mUi->mTableView;
    table->setModel(mModel);
    table->setItemDelegate(new OrvgThresholdItemDelegate(table));
    table->resizeColumnsToContents();
    table->horizontalHeader()->setMinimumSectionSize(table->columnWidth(0));
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->resizeRowsToContents();
}

void OrvgThresholdView::connectSignals()
{
    const QItemSelectionModel* selection = mUi->mTableView->selectionModel();
    connect(selection, &QItemSelectionModel::currentRowChanged, this,
            &OrvgThresholdView::onSelectionChanged);
    connect(selection, &QItemSelectionModel::currentColumnChanged, this,
            &OrvgThresholdView::onSelectionChanged);
    connect(mModel, &OrvgThreshItemModel::dataChanged, this, &OrvgThresholdView::onDataChanged);
    connect(mTransfer, &ThresholdTransfer::recordRead, this,
            [this](const orv::SensorThreshold& record) { showScale(record.scale); });
    connect(mUi->mScaleCb, QOverload<int>::of(&QComboBox::activated), this,
            &OrvgThresholdView::onScaleChanged);
    connect(mUi->mCalibrateTb, &QToolButton::clicked, this,
            &OrvgThresholdView::onAutoCalibrationStart);
    connect(mUi->mReadTb, &QToolButton::clicked, this, [this] { onReadThresholds(); });
    connect(mUi->mReadAllTb, &QToolButton::clicked, this, [this] { onReceiveAll(); });
    connect(mUi->mWriteTb, &QToolButton::clicked, this, [this] { onWriteThresholds(); });
    connect(mUi->mWriteAllTb, &QToolButton::clicked, this, [this] { onTransmitAll(); });
    connect(mUi->mResetTb, &QToolButton::clicked, mUi->mPlot, &OrvgPlotWidget::resetData);
}

void OrvgThresholdView::setCtrlClient(orv::OrvCtrlClient* client)
{
    if (client)
        mTransfer->setClient(client);
}

void OrvgThresholdView::setCalibrationWaiting(Waiting waiting)
{
    mCalibrationWaiting = std::move(waiting);
}

QByteArray OrvgThresholdView::saveState() const
{
    return mUi->mSplitter->saveState();
}

bool OrvgThresholdView::restoreState(const QByteArray& state)
{
    return mUi->mSplitter->restoreState(state);
}

void OrvgThresholdView::onReadThresholds(bool silent)
{
    const std::uint8_t sensor = currentSensor();
    if (sensor == orv::kNoSensor) {
        QMessageBox::information(this, tr("Read Thresholds"), tr("Please select sensor first."));
        return;
    }
    if (!mTransfer->client() || (!silent && !confirmOverwrite(this, tr("Read Thresholds"))))
        return;
    if (mTransfer->read(sensor))
        selectSensor(sensor);
    else
        showCommunicationError(this, mTransfer->lastError());
}

void OrvgThresholdView::onAutoCalibrationStart()
{
    if (!mTransfer->client() || mIsCalibrating)
        return;
    const std::uint8_t sensor = currentSensor();
    if (!mTransfer->client()->startAutoCalibration(sensor)) {
        showCommunicationError(this, mTransfer->lastError());
        return;
    }
    mUi->mPlot->resetData();
    const QPointer<OrvgThresholdView> self(this);
    mIsCalibrating = true;
    const auto ending = watchCalibration(*this, *mTransfer->client(), mCalibrationWaiting);
    if (!self)
        return;
    mIsCalibrating = false;
    endCalibration(ending, sensor);
    selectSensor(sensor);
}

void OrvgThresholdView::onSelectionChanged(const QModelIndex& current, const QModelIndex&)
{
    if (!isSensorRow(current))
        return;
    if (current.row() != mLastSelectedRow)
        showSensor(static_cast<std::uint8_t>(current.row()));
    mUi->mPlot->setMarkedColumn(current.column());
}

void OrvgThresholdView::onDataChanged(const QModelIndex& changed)
{
    if (isSensorRow(changed))
        mUi->mPlot->setThresholds(mModel->record(changed.row()).entries);
}

void OrvgThresholdView::onScaleChanged(int32_t index)
{
    mModel->setScale(currentSensor(), index);
}

bool OrvgThresholdView::onWriteThresholds(bool silent)
{
    const std::uint8_t sensor = currentSensor();
    if (!mTransfer->client() || sensor == orv::kNoSensor)
        return false;
    if (!mTransfer->write(sensor)) {
        if (!silent)
            showCommunicationError(this, mTransfer->lastError());
        return false;
    }
    mUi->mPlot->resetData();
    selectSensor(sensor);
    return true;
}

void OrvgThresholdView::onNewMeasResult(orv::OrvMeasurementResult result)
{
    const auto echoes = result.echoes.find(currentSensor());
    if (echoes != result.echoes.end())
        mUi->mPlot->addData(echoes->second);
}

void OrvgThresholdView::writeXml(QXmlStreamWriter& writer)
{
    writeThresholdSection(writer, mModel->records());
}

bool OrvgThresholdView::readFromXml(QXmlStreamReader& reader, std::string& errString)
{
    std::vector<orv::SensorThreshold> records;
    if (!readThresholdSection(reader, records, errString))
        return false;
    for (const orv::SensorThreshold& record : records)
        mModel->setRecord(record);
    const std::uint8_t sensor = currentSensor();
    if (sensor != orv::kNoSensor)
        showCurve(sensor);
    return true;
}

bool OrvgThresholdView::onReceiveAll(bool silent)
{
    const std::uint8_t sensor = currentSensor();
    if (!mTransfer->client() || (!silent && !confirmOverwrite(this, tr("Read Thresholds"))))
        return false;
    const QStringList errors = mTransfer->readAll();
    if (!errors.isEmpty() && !silent)
        showCommunicationError(this, errors.join(QLatin1Char('\n')));
    if (sensor != orv::kNoSensor)
        showSensor(sensor);
    return errors.isEmpty();
}

bool OrvgThresholdView::onTransmitAll(bool silent)
{
    if (!mTransfer->client())
        return false;
    if (mTransfer->writeAll())
        return true;
    if (!silent)
        showCommunicationError(this, mTransfer->lastError());
    return false;
}

// 0..11, or kNoSensor when no row is current.
std::uint8_t OrvgThresholdView::currentSensor() const
{
    const QModelIndex current = mUi->mTableView->currentIndex();
    return isSensorRow(current) ? static_cast<std::uint8_t>(current.row()) : orv::kNoSensor;
}

void OrvgThresholdView::showSensor(std::uint8_t sensorId)
{
    mLastSelectedRow = sensorId;
    mUi->mPlot->resetData();
    showCurve(sensorId);
}

void OrvgThresholdView::showCurve(std::uint8_t sensorId)
{
    const orv::SensorThreshold record = mModel->record(sensorId);
    mUi->mPlot->setThresholds(record.entries);
    mUi->mPlot->setThresholdsShown(true);
    showScale(record.scale);
}

// A scale that the list does not offer leaves it without a choice.
void OrvgThresholdView::showScale(std::uint8_t scale)
{
    mUi->mScaleCb->setCurrentIndex(mUi->mScaleCb->findData(scale));
}

void OrvgThresholdView::selectSensor(std::uint8_t sensorId)
{
    if (sensorId != orv::kNoSensor)
        mUi->mTableView->selectRow(sensorId);
}

void OrvgThresholdView::endCalibration(CalibrationRun::Ending ending, std::uint8_t sensorId)
{
    using Ending = CalibrationRun::Ending;
    switch (ending) {
    case Ending::Finished:
        onReadThresholds(true);
        if (sensorId != orv::kNoSensor)
            showCurve(sensorId);
        break;
    case Ending::AbortedByEcu:
        showCalibrationError(tr("Calibration was aborted!\nPlease check sensor connection."));
        break;
    case Ending::ExchangeFailed:
        showCommunicationError(this, mTransfer->lastError());
        break;
    case Ending::TimedOut:
        showCalibrationError(tr("Calibration time out."));
        break;
    case Ending::Abandoned:
        break;
    }
}

void OrvgThresholdView::showCalibrationError(const QString& text)
{
    QMessageBox::warning(this, tr("Calibration error"), text);
}
