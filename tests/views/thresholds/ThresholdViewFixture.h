#pragma once

#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/CursorWatchingSocket.h"
#include "tests/support/ManualClock.h"
#include "tests/support/MessageBoxWatcher.h"
#include "views/plot/OrvgPlotWidget.h"
#include "views/thresholds/OrvgThreshItemModel.h"
#include "views/thresholds/OrvgThresholdView.h"
#include "views/thresholds/ThresholdEditor.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QTableView>
#include <QToolButton>
#include <QtTest>

#include <vector>

/// A threshold view with a scripted ECU, its parts found by their names.
class ThresholdViewFixture
{
public:
    ThresholdViewFixture()
    {
        view.resize(900, 700);
        view.setCtrlClient(&client);
    }

    template<typename Widget>
    Widget& part(const char* name)
    {
        return *view.findChild<Widget*>(QLatin1String(name));
    }

    QTableView& table() { return part<QTableView>("mTableView"); }
    QComboBox& scaleBox() { return part<QComboBox>("mScaleCb"); }
    OrvgPlotWidget& plot() { return part<OrvgPlotWidget>("mPlot"); }
    OrvgThreshItemModel& model() { return static_cast<OrvgThreshItemModel&>(*table().model()); }
    void click(const char* button) { part<QToolButton>(button).click(); }

    void select(int row, int column = 0) { table().setCurrentIndex(model().index(row, column)); }

    /// The editor that a double click on the cell opened, or null.
    ThresholdEditor* openEditor(int row, int column)
    {
        view.show();
        view.activateWindow();
        if (!QTest::qWaitForWindowActive(&view))
            return nullptr;
        const QModelIndex cell = model().index(row, column);
        table().scrollTo(cell);
        const QPoint center = table().visualRect(cell).center();
        QTest::mouseDClick(view.windowHandle(), Qt::LeftButton, {},
                           table().viewport()->mapTo(&view, center));
        return table().findChild<ThresholdEditor*>();
    }

    /// Whether a rise of the echo at `timeOfFlight` is drawn in the plot's bottom rows.
    bool plotHasStickAt(int timeOfFlight)
    {
        const QImage image = plot().grab().toImage();
        const int x = plot().width() * timeOfFlight / 30000 * plot().devicePixelRatio();
        return image.pixelColor(x, image.height() - 1) == QColor(Qt::yellow);
    }

    void receiveEcho(std::uint8_t sensor, std::uint16_t timeOfFlight)
    {
        orv::OrvMeasurementResult result;
        result.echoes[sensor] = {{.magnitude = 13, .timeOfFlight = timeOfFlight}};
        view.onNewMeasResult(result);
    }

    /// Twelve equal entries.
    static std::vector<std::uint8_t> wireRecord(std::uint8_t sensor, std::uint8_t entry = 0x5F,
                                                std::uint8_t scale = 1)
    {
        std::vector<std::uint8_t> bytes(14, entry);
        bytes.front() = sensor;
        bytes.back() = scale;
        return bytes;
    }

    CursorWatchingSocket socket;
    orv::OrvCtrlClient client{&socket};
    ManualClock clock;
    OrvgThresholdView view{nullptr, &clock};
    QAbstractItemModelTester tester{&model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};
