#include "fuzz/InputScript.h"
#include "fuzz/painted.h"
#include "fuzz/view_properties.h"
#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/constants.h"
#include "views/live/OrvgLiveView.h"

#include <QRadioButton>
#include <QSplitter>

#include <array>

namespace {

constexpr int kMaxEvents = 40;

// Large pictures take long, and show no more.
constexpr int kLeastExtent = 120;

/// Two views that are given the same; one of them is painted whenever the input says so.
class LiveViews
{
public:
    LiveViews()
    {
        for (OrvgLiveView& view : mViews)
            showUnseen(view, {640, 360});
        mViews.back().setUpdatesEnabled(false); // not even what was put off paints it
    }

    void happen(InputScript& script)
    {
        switch (script.below(6)) {
        case 0:
        case 1:
            receive(script.block());
            break;
        case 2:
            painted(mViews.front());
            break;
        case 3:
            resize({kLeastExtent + 3 * script.byte(), kLeastExtent + 2 * script.byte()});
            break;
        case 4:
            select(static_cast<int>(script.below(orv::kSensorCount)));
            break;
        default:
            divide(script.word() % 800, script.word() % 800);
        }
    }

    bool lookAlike()
    {
        mViews.back().setUpdatesEnabled(true);
        return painted(mViews.front()) == painted(mViews.back());
    }

private:
    void receive(const std::vector<std::uint8_t>& datagram)
    {
        const auto result = orv::decodeDatagram<orv::OrvMeasurementResult>(datagram);
        for (OrvgLiveView& view : mViews) {
            if (result)
                view.onNewMeasResult(*result);
        }
    }

    void resize(QSize size)
    {
        for (OrvgLiveView& view : mViews) {
            view.resize(size);
            settle();
        }
    }

    void select(int sensor)
    {
        for (OrvgLiveView& view : mViews)
            view.findChild<QRadioButton*>(QString::number(sensor))->click();
    }

    void divide(int left, int right)
    {
        for (OrvgLiveView& view : mViews) {
            view.findChild<QSplitter*>()->setSizes({left, right});
            settle();
        }
    }

    std::array<OrvgLiveView, 2> mViews;
};

} // namespace

bool liveViewHolds(std::span<const std::uint8_t> bytes)
{
    InputScript script(bytes);
    LiveViews views;
    for (int i = 0; i < kMaxEvents && !script.isAtEnd(); ++i)
        views.happen(script);
    return views.lookAlike();
}
