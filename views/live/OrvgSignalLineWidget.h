#pragma once

#include "orv_decoder/metatypes.h"
#include "views/common/accessible_picture.h"
#include "views/live/TimelinePictures.h"

#include <QFrame>
#include <QList>
#include <QPoint>

#include <vector>

class OrvgSignalWidget;
class QHBoxLayout;
class QPainter;

/// One sensor's timeline: a picture for each result, the newest at the right end. It has as many
/// pictures as fit and scrolls to the left with each result.
class OrvgSignalLineWidget : public QFrame
{
    Q_OBJECT
    TARVIO_ACCESSIBLE_PICTURE

public:
    explicit OrvgSignalLineWidget(QWidget* parent = nullptr);

    /// Oldest first. The number of pictures follows the width with the next result only.
    const QList<OrvgSignalWidget*>& items() const { return mItems; }

    /// Number of pictures that the present width asks for; 0 when it is too narrow for one.
    int itemCount() const;

    /// Whether Tab stops here; a click and the keys of a neighbour always do.
    void setTabStop(bool isTabStop);

public slots:
    void addMeasurement(const std::vector<orv::OrvSensorEcho>& echos, orv::OrvSensorRole role);

signals:
    /// A picture was clicked, or a key has led to it.
    void signalWidgetClicked(OrvgSignalWidget* widget);

    /// The user wants to go on in the timeline above (-1) or below (1).
    void neighbourWanted(int step);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void prependEmptyItem();
    void adjustItems();
    void shiftLeft();
    void paintSlot(QPainter& painter, int position);
    void paintFocus(QPainter& painter) const;
    int focusedSlot() const;
    void focusSlot(int position);
    bool hasWholePixels() const;
    OrvgSignalWidget* itemAt(QPoint position) const;
    void showCursor();

    QHBoxLayout* mLayout;            // this widget's layout
    QList<OrvgSignalWidget*> mItems; // children: hidden, this widget paints them
    TimelinePictures mPictures;
    QPoint mPointer{-1, -1};  // where the mouse was last
    int mSlotsFromNewest = 0; // where the keys have led to
};
