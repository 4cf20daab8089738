#include "views/live/OrvgLiveView.h"

#include "ui_OrvgLiveView.h"
#include "views/live/EchoCellDelegate.h"
#include "views/live/OrvgSignalLineWidget.h"
#include "views/live/OrvgSignalWidget.h"
#include "views/live/echo_texts.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QRadioButton>
#include <QSpacerItem>
#include <QStyle>
#include <QTableWidgetItem>

#include <algorithm>

namespace {

enum EchoColumn { TimeOfFlightColumn, MagnitudeColumn, EchoColumnCount };

int headerMargins(const QHeaderView& header)
{
    return 2 * header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header);
}

QString headerText(const QHeaderView& header, int section)
{
    return header.model()->headerData(section, header.orientation()).toString();
}

// What the longest word of a header needs, in any language; it may stand in the margins.
int narrowestSection(const QHeaderView& header)
{
    int width = 0;
    for (int section = 0; section < header.count(); ++section) {
        const QStringList words = headerText(header, section).split(QLatin1Char(' '));
        for (const QString& word : words)
            width = std::max(width, header.fontMetrics().tightBoundingRect(word).width());
    }
    return width;
}

// A header that wraps its texts asks for the height of one line only.
int wrappedHeaderHeight(const QHeaderView& header, int sectionWidth)
{
    const QRect room(0, 0, sectionWidth - headerMargins(header), 0);
    int height = 0;
    for (int section = 0; section < header.count(); ++section)
        height =
            std::max(height, header.fontMetrics()
                                 .boundingRect(room, Qt::TextWordWrap, headerText(header, section))
                                 .height());
    return height + headerMargins(header) / 2;
}

bool hasFirstEcho(const std::vector<orv::OrvSensorEcho>& echoes)
{
    return !echoes.empty() && echoes.front().timeOfFlight != 0;
}

} // namespace

OrvgLiveView::OrvgLiveView(QWidget* parent)
    : QWidget(parent), mUi(std::make_unique<Ui::OrvgLiveView>())
{
    mUi->setupUi(this);
    createEchoTable();
    createTimelines();
}

OrvgLiveView::~OrvgLiveView() = default;

QByteArray OrvgLiveView::saveState() const
{
    return mUi->mSplitter->saveState();
}

bool OrvgLiveView::restoreState(const QByteArray& state)
{
    return mUi->mSplitter->restoreState(state);
}

void OrvgLiveView::onRadioButtonToggled(bool state)
{
    if (state && sender())
        selectSensor(sender()->objectName().toInt());
}

void OrvgLiveView::onSignalWidgetClicked(OrvgSignalWidget* widget)
{
    if (widget)
        showSignalInfo(widget->echoes());
}

void OrvgLiveView::onNewMeasResult(const orv::OrvMeasurementResult& result)
{
    for (std::uint8_t sensor = 0; sensor < orv::kSensorCount; ++sensor) {
        const auto& echoes = result.echoesOf(sensor);
        mLines[sensor]->addMeasurement(echoes, result.role(sensor));
        if (sensor == mSelectedSensor && hasFirstEcho(echoes))
            showSignalInfo(echoes);
    }
}

void OrvgLiveView::createEchoTable()
{
    QTableWidget* table = mUi->echoTable;
    table->setItemDelegate(new EchoCellDelegate(table));
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->verticalHeader()->setMinimumSectionSize(table->fontMetrics().lineSpacing());
    setUpEchoHeader();
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < EchoColumnCount; ++column) {
            auto* cell = new QTableWidgetItem;
            cell->setTextAlignment(Qt::AlignCenter);
            table->setItem(row, column, cell);
        }
    }
}

// The narrowest pane breaks the longer header into several lines; with longer words it scrolls.
void OrvgLiveView::setUpEchoHeader()
{
    const QTableWidget& table = *mUi->echoTable;
    QHeaderView& header = *table.horizontalHeader();
    const int narrowest = narrowestSection(header);
    header.setSectionResizeMode(QHeaderView::Stretch);
    header.setMinimumSectionSize(narrowest);
    header.setMinimumHeight(wrappedHeaderHeight(header, narrowest));
    for (int column = 0; column < EchoColumnCount; ++column)
        table.horizontalHeaderItem(column)->setData(Qt::TextAlignmentRole,
                                                    int{Qt::AlignCenter} | int{Qt::TextWordWrap});
}

void OrvgLiveView::createTimelines()
{
    for (int sensor = 0; sensor < orv::kSensorCount; ++sensor)
        createTimeline(sensor);
    setTabOrder(mLines.back(), mUi->echoTable);
    mUi->verticalLayout->addItem(
        new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void OrvgLiveView::createTimeline(int sensor)
{
    auto* button = new QRadioButton(QString::number(sensor + 1), mUi->scrollAreaWidgetContents);
    button->setObjectName(QString::number(sensor));
    button->setAccessibleName(tr("Sensor %1").arg(sensor + 1));
    button->setMinimumWidth(40);
    button->setChecked(sensor == mSelectedSensor);
    auto* line = new OrvgSignalLineWidget(mUi->scrollAreaWidgetContents);
    line->setTabStop(sensor == mSelectedSensor);
    line->setAccessibleName(tr("Timeline of sensor %1").arg(sensor + 1));
    mLines[static_cast<std::size_t>(sensor)] = line;

    auto* row = new QHBoxLayout;
    row->addSpacing(2);
    row->addWidget(button, 1);
    row->addSpacing(5);
    row->addWidget(line, 50);
    mUi->verticalLayout->addLayout(row);

    connectTimeline(sensor, button);
}

void OrvgLiveView::connectTimeline(int sensor, QRadioButton* button)
{
    const auto* line = mLines[static_cast<std::size_t>(sensor)];
    connect(button, &QRadioButton::toggled, this, &OrvgLiveView::onRadioButtonToggled);
    connect(line, &OrvgSignalLineWidget::signalWidgetClicked, this,
            &OrvgLiveView::onSignalWidgetClicked);
    connect(line, &OrvgSignalLineWidget::neighbourWanted, this,
            [this, sensor](int step) { focusTimeline(sensor + step); });
}

// The Tab key stops at one timeline, not at twelve.
void OrvgLiveView::selectSensor(int sensor)
{
    mSelectedSensor = sensor;
    for (int other = 0; other < orv::kSensorCount; ++other)
        mLines[static_cast<std::size_t>(other)]->setTabStop(other == sensor);
    mUi->scrollArea->ensureWidgetVisible(mLines[static_cast<std::size_t>(sensor)], 0);
}

void OrvgLiveView::focusTimeline(int sensor)
{
    if (sensor < 0 || sensor >= orv::kSensorCount)
        return;
    OrvgSignalLineWidget* line = mLines[static_cast<std::size_t>(sensor)];
    line->setFocus();
    mUi->scrollArea->ensureWidgetVisible(line, 0);
}

void OrvgLiveView::showSignalInfo(const std::vector<orv::OrvSensorEcho>& echoes)
{
    mUi->signalWidget->setSignal(echoes);
    // Rows beyond the echoes keep the texts of an earlier, longer list.
    const int rows = std::min(mUi->echoTable->rowCount(), static_cast<int>(echoes.size()));
    for (int row = 0; row < rows; ++row)
        showEchoRow(row, echoes[static_cast<std::size_t>(row)]);
}

void OrvgLiveView::showEchoRow(int row, const orv::OrvSensorEcho& echo)
{
    const EchoTexts texts = echoTexts(echo);
    mUi->echoTable->item(row, TimeOfFlightColumn)->setText(texts.timeOfFlight);
    mUi->echoTable->item(row, MagnitudeColumn)->setText(texts.magnitude);
}
