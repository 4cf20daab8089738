#pragma once

#include <QObject>
#include <QPoint>

#include <optional>

class QGraphicsView;

/// Zooms a view in small steps about one place. Every request runs an animation of its own; those
/// that overlap make the steps larger.
class AnimatedZoom : public QObject
{
    Q_OBJECT

public:
    /// The view becomes the parent.
    explicit AnimatedZoom(QGraphicsView* view);

    /// The place of the viewport that keeps showing what it shows; at first it is the middle.
    void setAnchor(QPoint anchor) { mAnchor = anchor; }

    /// False for 0 steps and at the end of the range, where nothing is started.
    bool start(int steps);

    /// Ends all animations.
    void stop();

    /// What the animations do: a step each 10 ms, and at their end one pending step less.
    void scaleOnce();
    void endAnimation();

private:
    QGraphicsView* mView;
    std::optional<QPoint> mAnchor;
    int mPendingSteps = 0;
};
