#include "views/thresholds/OrvgThresholdView.h"

#include "orv_decoder/OrvCtrlClient.h"
#include "ui_OrvgThresholdView.h"
#include "views/common/WaitCursor.h"
#include "views/common/messages.h"
#include "views/thresholds/CalibrationDialog.h"
#include "views/thresholds/OrvgThreshItemModel.h"
#include "views/thresholds/OrvgThresholdItemDelegate.h"
#include "views/thresholds/threshold_section.h"

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
    , mCalibrationWaiting(sleepMs)
{
    mUi->setupUi(this);
    mUi->mPlot->setThresholdColor(QColor(QStringLiteral("orange")));
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
        mClient = client;
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
    if (!mClient || (!silent && !confirmOverwrite(this, tr("Read Thresholds"))))
        return;
    if (readSensor(sensor))
        selectSensor(sensor);
    else
        showCommunicationError(this, mClient->lastError());
}

void OrvgThresholdView::onAutoCalibrationStart()
{
    if (!mClient || mIsCalibrating)
        return;
    const std::uint8_t sensor = currentSensor();
    if (!mClient->startAutoCalibration(sensor)) {
        showCommunicationError(this, mClient->lastError());
        return;
    }
    mUi->mPlot->resetData();
    const QPointer<OrvgThresholdView> self(this);
    const CalibrationRun::Ending ending = waitForCalibration();
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
    if (!mClient || sensor == orv::kNoSensor)
        return false;
    if (!writeSensor(sensor)) {
        if (!silent)
            showCommunicationError(this, mClient->lastError());
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
    if (!mClient || (!silent && !confirmOverwrite(this, tr("Read Thresholds"))))
        return false;
    const QStringList errors = readAllSensors();
    if (!errors.isEmpty() && !silent)
        showCommunicationError(this, errors.join(QLatin1Char('\n')));
    if (sensor != orv::kNoSensor)
        showSensor(sensor);
    return errors.isEmpty();
}

bool OrvgThresholdView::onTransmitAll(bool silent)
{
    if (!mClient)
        return false;
    if (writeAllSensors())
        return true;
    if (!silent)
        showCommunicationError(this, mClient->lastError());
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

bool OrvgThresholdView::readSensor(std::uint8_t sensorId)
{
    orv::SensorThreshold record;
    if (!mClient->readThresholds(sensorId, record))
        return false;
    if (mModel->applyRead(record))
        showScale(record.scale);
    return true;
}

bool OrvgThresholdView::writeSensor(std::uint8_t sensorId)
{
    return mClient->writeThresholds(mModel->record(sensorId), true);
}

// One line for each sensor that could not be read.
QStringList OrvgThresholdView::readAllSensors()
{
    const WaitCursor waitCursor;
    QStringList errors;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        if (!readSensor(sensor))
            errors << tr("Sensor %1: %2")
                          .arg(QString::number(sensor + 1).rightJustified(2),
                               QString::fromStdString(mClient->lastError()));
    }
    return errors;
}

bool OrvgThresholdView::writeAllSensors()
{
    const WaitCursor waitCursor;
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        if (!writeSensor(sensor))
            return false;
    }
    return true;
}

// The events processed meanwhile may close the window or destroy the view.
CalibrationRun::Ending OrvgThresholdView::waitForCalibration()
{
    mIsCalibrating = true;
    const bool wasOpen = window()->isVisible();
    const QPointer<OrvgThresholdView> self(this);
    const QPointer<CalibrationDialog> dialog(new CalibrationDialog(parentWidget()));
    dialog->show();
    CalibrationRun run({
        .wait = mCalibrationWaiting,
        .show =
            [=](int value, bool inverted) {
                if (self && dialog)
                    dialog->showStep(value, inverted);
                return self && dialog && (self->window()->isVisible() || !wasOpen);
            },
        .readState = [client = mClient] { return client->readAutoCalibrationState(); },
    });
    const CalibrationRun::Ending ending = run.run();
    delete dialog;
    return ending;
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
        showCommunicationError(this, mClient->lastError());
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
