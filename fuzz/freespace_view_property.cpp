#include "fuzz/InputScript.h"
#include "fuzz/painted.h"
#include "fuzz/view_properties.h"
#include "orv_decoder/LiveRecord.h"
#include "orv_decoder/constants.h"
#include "views/freespace/FreespaceItem.h"
#include "views/freespace/FreespaceScene.h"
#include "views/freespace/OrvgFreespaceGraphicsView.h"
#include "views/freespace/OrvgFreespacesView.h"
#include "views/freespace/OrvgSensorItem.h"
#include "views/positions/OrvgSensorPositionView.h"

#include <QToolButton>

#include <cmath>

namespace {

constexpr int kMaxEvents = 40;

/// The view beside the table of positions, as in the window.
class ViewAndTable
{
public:
    ViewAndTable() { showUnseen(mView, {600, 350}); }

    void happen(InputScript& script)
    {
        switch (script.below(8)) {
        case 0:
        case 1:
            receive(script.block());
            break;
        case 2:
            painted(mView);
            break;
        case 3:
            place(script.block());
            break;
        case 4:
            mView.onSetEditMode(script.flag());
            break;
        case 5:
            zoom(script.below(4));
            break;
        case 6:
            select(script.byte(), script.flag());
            break;
        default:
            mView.resize(100 + 2 * script.byte(), 100 + 2 * script.byte());
        }
    }

    bool holds() { return painted(mView) == painted(mView) && itemsHold() && isFinite(); }

private:
    OrvgFreespaceGraphicsView* picture() const
    {
        return mView.findChild<OrvgFreespaceGraphicsView*>();
    }

    template<typename Item>
    std::vector<Item*> items() const
    {
        std::vector<Item*> found;
        for (QGraphicsItem* item : picture()->scene()->items()) {
            if (auto* wanted = dynamic_cast<Item*>(item))
                found.push_back(wanted);
        }
        return found;
    }

    bool itemsHold() const
    {
        const std::size_t freespaces = items<FreespaceItem>().size();
        return items<OrvgSensorItem>().size() <= orv::kSensorCount &&
               freespaces <= (picture()->isEditMode() ? 0U : orv::kSensorCount);
    }

    bool isFinite() const
    {
        const QRectF rect = picture()->scene()->itemsBoundingRect();
        return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width()) &&
               std::isfinite(rect.height()) && picture()->transform().isInvertible();
    }

    void receive(const std::vector<std::uint8_t>& datagram)
    {
        if (const auto package = orv::decodeDatagram<orv::OrvFreespacePackage>(datagram))
            mView.onNewFreespacePackage(*package);
    }

    void place(std::vector<std::uint8_t> bytes)
    {
        bytes.resize(orv::kSensorCount * orv::SensorMountPosition::kWireSize);
        mTable.setPositions(orv::decodeMountPositions(bytes).value());
    }

    void select(std::uint8_t number, bool selected)
    {
        const auto sensors = items<OrvgSensorItem>();
        if (!sensors.empty())
            sensors[number % sensors.size()]->setSelected(selected);
    }

    // As the timers of the animation do.
    void zoom(unsigned what)
    {
        if (what == 0)
            picture()->onZoomIn();
        else if (what == 1)
            picture()->onZoomOut();
        else if (what == 2)
            picture()->scalingTime();
        else
            picture()->animationFinished();
    }

    OrvgSensorPositionView mTable;
    OrvgFreespacesView mView{&mTable};
};

} // namespace

bool freespaceViewHolds(std::span<const std::uint8_t> bytes)
{
    InputScript script(bytes);
    ViewAndTable view;
    for (int i = 0; i < kMaxEvents && !script.isAtEnd(); ++i)
        view.happen(script);
    return view.holds();
}
