#include "views/positions/OrvgSensorPositionView.h"

#include "ecu/configuration/position_section.h"
#include "orv_decoder/OrvCtrlClient.h"
#include "ui_OrvgSensorPositionView.h"
#include "views/common/item_tables.h"
#include "views/positions/OrvgSensorPositionItemDelegate.h"
#include "views/positions/OrvgSensorPositionItemModel.h"

#include <QIcon>
#include <QPixmap>

namespace {

// An icon picks the picture for the screen's pixel ratio, a pixmap alone does not.
QPixmap explanation()
{
    constexpr QSize kSize(420, 230);
    return QIcon(QStringLiteral(":/icons/icons/xyheightypr.png")).pixmap(kSize);
}

} // namespace

OrvgSensorPositionView::OrvgSensorPositionView(QWidget* parent)
    : QWidget(parent)
    , mUi(std::make_unique<Ui::OrvgSensorPositionView>())
    , mModel(new OrvgSensorPositionItemModel(this))
{
    mUi->setupUi(this);
    mUi->label->setPixmap(explanation());
    setUpTable();
    connectSignals();
}

OrvgSensorPositionView::~OrvgSensorPositionView()
{
    // An open editor is taken into the model when it is hidden, which is after this object's own
    // part.
    mModel->disconnect(this);
}

void OrvgSensorPositionView::setUpTable()
{
    QTableView* table = mUi->tableView;
    table->setModel(mModel);
    table->setItemDelegate(new OrvgSensorPositionItemDelegate(table));
    stretchColumns(*table, QStringLiteral("-32768"));
    setEditMode(false);
}

void OrvgSensorPositionView::connectSignals()
{
    connect(mUi->readSensorPositionTb, &QToolButton::clicked, this,
            [this] { onReadSensorPositionTbClicked(); });
    connect(mUi->writeSensorPositionTb, &QToolButton::clicked, this,
            [this] { onWriteSensorPositionTbClicked(); });
    connect(mModel, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
                emit positionsChanged(topLeft.column(), bottomRight.column());
            });
}

void OrvgSensorPositionView::setCtrlClient(orv::OrvCtrlClient* client)
{
    mEcu.setClient(client);
}

orv::SensorMountPositions OrvgSensorPositionView::positions() const
{
    return mModel->positions();
}

void OrvgSensorPositionView::setPositions(const orv::SensorMountPositions& positions)
{
    editedModel().setPositions(positions);
}

void OrvgSensorPositionView::setPosition(std::uint8_t sensorId,
                                         const orv::OrvSensorPosition& position)
{
    if (sensorId >= orv::kSensorCount) {
        mUi->tableView->clearSelection();
        return;
    }
    mModel->moveSensor(sensorId, position);
    mUi->tableView->selectColumn(sensorId);
}

bool OrvgSensorPositionView::onReadSensorPositionTbClicked(bool silent)
{
    orv::SensorMountPositions positions;
    const auto read = [&positions](orv::OrvCtrlClient& client) {
        return client.readSensorPositions(positions);
    };
    if (!mEcu.mayOverwrite(silent, tr("Read Positions")) || !mEcu.run(silent, read))
        return false;
    setPositions(positions);
    return true;
}

bool OrvgSensorPositionView::onWriteSensorPositionTbClicked(bool silent)
{
    return mEcu.run(silent, [this](orv::OrvCtrlClient& client) {
        return client.writeSensorPositions(editedModel().positions());
    });
}

void OrvgSensorPositionView::setEditMode(bool editMode)
{
    commitOpenEditor(*mUi->tableView);
    mUi->tableView->setEditTriggers(editMode ? QAbstractItemView::NoEditTriggers
                                             : QAbstractItemView::DoubleClicked |
                                                   QAbstractItemView::EditKeyPressed);
    mUi->readSensorPositionTb->setVisible(!editMode);
    mUi->writeSensorPositionTb->setVisible(!editMode);
}

void OrvgSensorPositionView::writeXml(QXmlStreamWriter& writer)
{
    writePositionSection(writer, editedModel().positions());
}

bool OrvgSensorPositionView::readFromXml(QXmlStreamReader& reader, std::string& errString)
{
    return takeSection(readPositionSection(reader), errString,
                       [this](const auto& positions) { setPositions(positions); });
}

// The model with what stands in an open editor, which it closes.
OrvgSensorPositionItemModel& OrvgSensorPositionView::editedModel()
{
    commitOpenEditor(*mUi->tableView);
    return *mModel;
}
