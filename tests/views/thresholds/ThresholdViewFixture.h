#pragma once

#include "tests/support/ManualClock.h"
#include "tests/views/common/EditorFixture.h"
#include "views/plot/OrvgPlotWidget.h"
#include "views/thresholds/OrvgThreshItemModel.h"
#include "views/thresholds/OrvgThresholdView.h"
#include "views/thresholds/ThresholdEditor.h"

#include <QComboBox>

#include <vector>

/// The clock of the fixture's calibration: there before the view and after it.
struct CalibrationTime
{
    ManualClock clock;
};

/// A threshold view with a scripted ECU.
class ThresholdViewFixture : public CalibrationTime,
                             public EditorFixture<OrvgThresholdView, OrvgThreshItemModel>
{
public:
    ThresholdViewFixture() : EditorFixture(nullptr, &clock) { view.resize(900, 700); }

    QComboBox& scaleBox() { return part<QComboBox>("mScaleCb"); }
    OrvgPlotWidget& plot() { return part<OrvgPlotWidget>("mPlot"); }

    /// The editor that a double click on the cell opened, or null.
    ThresholdEditor* openEditor(int row, int column)
    {
        view.show();
        view.activateWindow();
        if (!QTest::qWaitForWindowActive(&view))
            return nullptr;
        doubleClick(row, column);
        return table().findChild<ThresholdEditor*>();
    }

    /// Whether a rise of the echo at `timeOfFlight` is drawn in the plot's bottom rows.
    bool plotHasStickAt(int timeOfFlight)
    {
        const QImage image = plot().grab().toImage();
        const int x = int(plot().width() * timeOfFlight / 30000 * plot().devicePixelRatioF());
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
};
