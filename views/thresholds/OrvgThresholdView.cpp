#include "views/thresholds/OrvgThresholdView.h"

#include "ecu/configuration/all_thresholds.h"
#include "ecu/configuration/threshold_section.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "ui_OrvgThresholdView.h"
#include "views/common/item_tables.h"
#include "views/common/threshold_style.h"
#include "views/thresholds/CalibrationSession.h"
#include "views/thresholds/OrvgThreshItemModel.h"
#include "views/thresholds/OrvgThresholdItemDelegate.h"

#include <QMessageBox>

namespace {

bool isSensorRow(const QModelIndex& index)
{
    return index.isValid() && index.row() < orv::kSensorCount;
}

} // namespace

OrvgThresholdView::OrvgThresholdView(QWidget* parent, CalibrationClock* calibrationClock)
    : QWidget(parent)
    , mUi(std::make_unique<Ui::OrvgThresholdView>())
    , mModel(new OrvgThreshItemModel(this))
    , mCalibration(new CalibrationSession(calibrationClock, this))
{
    mUi->setupUi(this);
    mUi->mPlot->setThresholdColor(kThresholdColor);
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
    connect(mUi->mScaleCb, QOverload<int>::of(&QComboBox::activated), this,
            &OrvgThresholdView::onScaleChanged);
    connect(mUi->mCalibrateTb, &QToolButton::clicked, this,
            &OrvgThresholdView::onAutoCalibrationStart);
    connect(mCalibration, &CalibrationSession::ended, this, &OrvgThresholdView::selectSensor);
    connect(mCalibration, &CalibrationSession::succeeded, this, &OrvgThresholdView::takeCalibrated);
    connect(mUi->mReadTb, &QToolButton::clicked, this, [this] { onReadThresholds(); });
    connect(mUi->mReadAllTb, &QToolButton::clicked, this, [this] { onReceiveAll(); });
    connect(mUi->mWriteTb, &QToolButton::clicked, this, [this] { onWriteThresholds(); });
    connect(mUi->mWriteAllTb, &QToolButton::clicked, this, [this] { onTransmitAll(); });
    connect(mUi->mResetTb, &QToolButton::clicked, mUi->mPlot, &OrvgPlotWidget::resetData);
}

void OrvgThresholdView::setCtrlClient(orv::OrvCtrlClient* client)
{
    mEcu.setClient(client);
}

QByteArray OrvgThresholdView::saveState() const
{
    return mUi->mSplitter->saveState();
}

bool OrvgThresholdView::restoreState(const QByteArray& state)
{
    return mUi->mSplitter->restoreState(state);
}

void OrvgThresholdView::setRecords(std::span<const orv::SensorThreshold> records)
{
    OrvgThreshItemModel& model = editedModel();
    for (const orv::SensorThreshold& record : records)
        model.setRecord(record);
    if (const std::uint8_t sensor = currentSensor(); sensor != orv::kNoSensor)
        showCurve(sensor);
}

void OrvgThresholdView::onReadThresholds(bool silent)
{
    const std::uint8_t sensor = currentSensor();
    if (sensor == orv::kNoSensor) {
        QMessageBox::information(this, tr("Read Thresholds"), tr("Please select sensor first."));
        return;
    }
    const auto read = [this, sensor](orv::OrvCtrlClient& client) {
        orv::SensorThreshold record;
        const bool isRead = client.readThresholds(sensor, record);
        if (isRead)
            takeRead(record);
        return isRead;
    };
    // Who asks nothing is told a failure all the same.
    if (mEcu.mayOverwrite(silent, tr("Read Thresholds")) && mEcu.run(false, read))
        selectSensor(sensor);
}

void OrvgThresholdView::onAutoCalibrationStart()
{
    if (mCalibration->start(mEcu, currentSensor()))
        mUi->mPlot->resetData();
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
    const auto write = [this, sensor](orv::OrvCtrlClient& client) {
        return client.writeThresholds(editedModel().record(sensor), true);
    };
    if (sensor == orv::kNoSensor || !mEcu.run(silent, write))
        return false;
    mUi->mPlot->resetData();
    selectSensor(sensor);
    return true;
}

void OrvgThresholdView::onNewMeasResult(const orv::OrvMeasurementResult& result)
{
    const std::uint8_t sensor = currentSensor();
    if (sensor != orv::kNoSensor && !result.echoesOf(sensor).empty())
        mUi->mPlot->addData(result.echoesOf(sensor));
}

void OrvgThresholdView::writeXml(QXmlStreamWriter& writer)
{
    writeThresholdSection(writer, editedModel().records());
}

bool OrvgThresholdView::readFromXml(QXmlStreamReader& reader, std::string& errString)
{
    return takeSection(readThresholdSection(reader), errString,
                       [this](const auto& records) { setRecords(records); });
}

bool OrvgThresholdView::onReceiveAll(bool silent)
{
    const std::uint8_t sensor = currentSensor();
    if (!mEcu.mayOverwrite(silent, tr("Read Thresholds")))
        return false;
    const auto readAll = [this](orv::OrvCtrlClient& client) {
        const ThresholdReading reading = readAllThresholds(client);
        for (const orv::SensorThreshold& record : reading.records)
            takeRead(record);
        return reading.failures;
    };
    const bool isComplete = mEcu.runAll(silent, readAll);
    if (sensor != orv::kNoSensor)
        showSensor(sensor);
    return isComplete;
}

bool OrvgThresholdView::onTransmitAll(bool silent)
{
    return mEcu.run(silent, [this](orv::OrvCtrlClient& client) {
        return writeAllThresholds(client, editedModel().records());
    });
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

// The model with what stands in an open editor, which it closes.
OrvgThreshItemModel& OrvgThresholdView::editedModel()
{
    commitOpenEditor(*mUi->mTableView);
    return *mModel;
}

void OrvgThresholdView::takeRead(const orv::SensorThreshold& record)
{
    if (editedModel().applyRead(record))
        showScale(record.scale);
}

void OrvgThresholdView::takeCalibrated(std::uint8_t sensorId)
{
    onReadThresholds(true);
    if (sensorId != orv::kNoSensor)
        showCurve(sensorId);
}
