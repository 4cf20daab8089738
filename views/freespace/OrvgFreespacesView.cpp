#include "views/freespace/OrvgFreespacesView.h"

#include "orv_decoder/constants.h"
#include "ui_OrvgFreespacesView.h"
#include "views/common/item_tables.h"
#include "views/freespace/OrvgSensorParameterWidget.h"
#include "views/positions/OrvgSensorPositionView.h"

#include <QHeaderView>
#include <QScrollBar>

#include <limits>

namespace {

QString distanceText(std::uint16_t distanceMm)
{
    return OrvgFreespacesView::tr("%1 mm").arg(distanceMm);
}

// With a scroll bar beside them.
int widthOfAllColumns(const QTableWidget& table)
{
    return table.columnCount() * table.horizontalHeader()->minimumSectionSize() +
           table.verticalHeader()->sizeHint().width() + 2 * table.frameWidth() +
           table.verticalScrollBar()->sizeHint().width();
}

// All sensors at a glance, also in a low view.
void makeRowsCompact(QTableWidget& table)
{
    const int height = table.fontMetrics().height() + 2;
    table.verticalHeader()->setMinimumSectionSize(height);
    table.verticalHeader()->setDefaultSectionSize(height);
}

} // namespace

OrvgFreespacesView::OrvgFreespacesView(OrvgSensorPositionView* positions, QWidget* parent)
    : QWidget(parent)
    , mPositions(positions)
    , mUi(std::make_unique<Ui::OrvgFreespacesView>())
    , mSelectedSensor(orv::kNoSensor)
{
    mUi->setupUi(this);
    createParameterWidget();
    createDistanceCells();
    keepWidthInBothModes();
    showMode(false);
    mUi->graphicsView->scene()->clearSelection();
    connectSignals();
}

OrvgFreespacesView::~OrvgFreespacesView()
{
    // The picture announces the end of a drag when it is hidden, which is after this object's own
    // part.
    mUi->graphicsView->disconnect(this);
}

QByteArray OrvgFreespacesView::saveState() const
{
    return mUi->splitter->saveState();
}

bool OrvgFreespacesView::restoreState(const QByteArray& state)
{
    return mUi->splitter->restoreState(state);
}

void OrvgFreespacesView::onLoadButtonClicked()
{
    mPositions->onReadSensorPositionTbClicked(false);
    placeSensors();
}

void OrvgFreespacesView::onNewFreespacePackage(const orv::OrvFreespacePackage& fspPackage)
{
    mUi->graphicsView->onNewFreespacePackage(fspPackage);
    for (const orv::OrvFreespaceEntry& entry : fspPackage.entries) {
        if (entry.sensorId < orv::kSensorCount)
            showDistances(entry);
    }
}

void OrvgFreespacesView::onSetEditMode(bool state)
{
    showMode(state);
    if (state) {
        emit editModeActivated();
        placeSensors();
    } else {
        mUi->graphicsView->scene()->clearSelection();
    }
}

void OrvgFreespacesView::onSensorSelected(uint8_t fspId, orv::OrvSensorPosition sensorPosition)
{
    mSelectedSensor = fspId;
    mParameters->showSensor(fspId, sensorPosition);
    mPositions->setPosition(fspId, sensorPosition);
}

void OrvgFreespacesView::onSensorParameterChanged(orv::OrvSensorPosition sensorPosition)
{
    mUi->graphicsView->setSelectedPosition(sensorPosition);
    if (mSelectedSensor < orv::kSensorCount)
        mPositions->setPosition(mSelectedSensor, sensorPosition);
}

void OrvgFreespacesView::createParameterWidget()
{
    mParameters = new OrvgSensorParameterWidget(mUi->mSensorParameterPage);
    mUi->mSensorParameterLayout->insertWidget(0, mParameters);
}

void OrvgFreespacesView::createDistanceCells()
{
    stretchColumns(*mUi->mTable, distanceText(std::numeric_limits<std::uint16_t>::max()));
    makeRowsCompact(*mUi->mTable);
    mUi->mTable->setMinimumWidth(widthOfAllColumns(*mUi->mTable));
    for (int row = 0; row < mUi->mTable->rowCount(); ++row) {
        for (int column = 0; column < mUi->mTable->columnCount(); ++column) {
            auto* cell = new QTableWidgetItem;
            cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            mUi->mTable->setItem(row, column, cell);
        }
    }
}

// Otherwise the picture would grow and shrink, and so move, with every change of the mode.
void OrvgFreespacesView::keepWidthInBothModes()
{
    QSizePolicy policy = mUi->mWedgeDistancesGB->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    mUi->mWedgeDistancesGB->setSizePolicy(policy);
}

void OrvgFreespacesView::connectSignals()
{
    OrvgFreespaceGraphicsView* picture = mUi->graphicsView;
    connect(mUi->mModeButton, &QToolButton::toggled, this, &OrvgFreespacesView::onSetEditMode);
    connect(picture, &OrvgFreespaceGraphicsView::fspSelected, this,
            &OrvgFreespacesView::onSensorSelected);
    connect(mParameters, &OrvgSensorParameterWidget::sensorParameterChanged, this,
            &OrvgFreespacesView::onSensorParameterChanged);
    connect(mPositions, &OrvgSensorPositionView::positionsChanged, this,
            &OrvgFreespacesView::followPositions);
    connect(mUi->mLoadButton, &QToolButton::clicked, this,
            &OrvgFreespacesView::onLoadButtonClicked);
    // The button's checked state is not the slot's silent flag.
    connect(mUi->mProgramButton, &QToolButton::clicked, mPositions,
            [this] { mPositions->onWriteSensorPositionTbClicked(false); });
    connect(mUi->mZoomInButton, &QToolButton::clicked, picture,
            &OrvgFreespaceGraphicsView::onZoomIn);
    connect(mUi->mZoomOutButton, &QToolButton::clicked, picture,
            &OrvgFreespaceGraphicsView::onZoomOut);
}

void OrvgFreespacesView::showMode(bool editMode)
{
    mPositions->setEditMode(editMode);
    mUi->graphicsView->onSetEditMode(editMode);
    mUi->mWedgeDistancesGB->setVisible(!editMode);
    mUi->mRightStackedWidget->setCurrentWidget(editMode ? mUi->mSensorParameterPage
                                                        : mUi->mWedgeDistancesPage);
    mUi->mLoadButton->setEnabled(editMode);
    mUi->mProgramButton->setEnabled(editMode);
}

void OrvgFreespacesView::placeSensors()
{
    emit loadPositions();
    mUi->graphicsView->setPositions(mPositions->positions());
}

// Also what the picture and the panel changed themselves comes back here, as what they show
// already. A range and not the whole table: of a dragged group the table knows one sensor until the
// end.
void OrvgFreespacesView::followPositions(int firstSensor, int lastSensor)
{
    if (!mUi->graphicsView->isEditMode())
        return;
    const orv::SensorMountPositions positions = mPositions->positions();
    for (int id = firstSensor; id <= lastSensor; ++id) {
        const auto position = orv::planarPosition(positions[static_cast<std::size_t>(id)]);
        mUi->graphicsView->setPosition(static_cast<std::uint8_t>(id), position);
        if (id == mSelectedSensor && mParameters->position() != position)
            mParameters->showSensor(mSelectedSensor, position);
    }
}

void OrvgFreespacesView::showDistances(const orv::OrvFreespaceEntry& entry)
{
    for (std::size_t i = 0; i < entry.distances.size(); ++i) {
        const orv::OrvDistanceItem& item = entry.distances[i];
        const QString text = item.isPresent() ? distanceText(item.distanceMm) : QString();
        QTableWidgetItem* cell = mUi->mTable->item(entry.sensorId, static_cast<int>(i));
        if (cell->text() != text) // an unchanged cell needs no repaint
            cell->setText(text);
    }
}
