#include "fuzz/InputScript.h"
#include "fuzz/painted.h"
#include "fuzz/view_properties.h"
#include "orv_decoder/LiveRecord.h"
#include "views/plot/OrvgPlotWidget.h"

#include <algorithm>
#include <array>

namespace {

constexpr int kMaxEvents = 60;

/// Two plots that are given the same; one of them is painted whenever the input says so.
class Plots
{
public:
    Plots()
    {
        for (OrvgPlotWidget& plot : mPlots)
            showUnseen(plot, {300, 150});
        mPlots.back().setUpdatesEnabled(false); // not even what was put off paints it
    }

    void happen(InputScript& script)
    {
        switch (script.below(10)) {
        case 0:
        case 1:
        case 2:
            receive(script.block());
            break;
        case 3:
            painted(mPlots.front());
            break;
        default:
            change(script);
        }
    }

    bool lookAlike()
    {
        mPlots.back().setUpdatesEnabled(true);
        return painted(mPlots.front()) == painted(mPlots.back());
    }

private:
    template<typename Change>
    void both(Change change)
    {
        std::ranges::for_each(mPlots, change);
    }

    // Of each sensor's echoes, so that one datagram gives many sticks.
    void receive(const std::vector<std::uint8_t>& datagram)
    {
        const auto result = orv::decodeDatagram<orv::OrvMeasurementResult>(datagram);
        if (!result)
            return;
        for (const auto& block : result->echoes)
            both([&](OrvgPlotWidget& plot) { plot.addData(block.second); });
    }

    void change(InputScript& script)
    {
        const unsigned what = script.below(9);
        const std::uint8_t number = script.byte();
        if (what == 0)
            both([=](OrvgPlotWidget& plot) { plot.setMaximumMode(number & 1); });
        else if (what == 1)
            setThresholds(script);
        else if (what == 2)
            both([=](OrvgPlotWidget& plot) { plot.setThresholdsShown(number & 1); });
        else if (what == 3)
            both([=](OrvgPlotWidget& plot) { plot.setMarkedColumn(number % 16 - 2); });
        else if (what == 4)
            both([=](OrvgPlotWidget& plot) {
                plot.setThresholdColor(QColor::fromRgb(0xFF0000U | number));
            });
        else if (what == 5)
            both([](OrvgPlotWidget& plot) { plot.resetData(); });
        else if (what == 6)
            both([=](OrvgPlotWidget& plot) { plot.setSampleStore(SampleStore(number & 1)); });
        else
            resize({number * 3, script.byte() * 2});
    }

    void setThresholds(InputScript& script)
    {
        orv::ThresholdEntries entries;
        std::ranges::generate(entries, [&script] { return script.byte(); });
        both([&](OrvgPlotWidget& plot) { plot.setThresholds(entries); });
    }

    void resize(QSize size)
    {
        both([=](OrvgPlotWidget& plot) { plot.resize(size); });
    }

    std::array<OrvgPlotWidget, 2> mPlots;
};

} // namespace

bool plotHolds(std::span<const std::uint8_t> bytes)
{
    InputScript script(bytes);
    Plots plots;
    for (int i = 0; i < kMaxEvents && !script.isAtEnd(); ++i)
        plots.happen(script);
    return plots.lookAlike();
}
