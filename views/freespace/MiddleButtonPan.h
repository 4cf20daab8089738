#pragma once

#include <QObject>
#include <QPoint>

class QAbstractScrollArea;
class QMouseEvent;
class QWidget;

/// Scrolls an area while the middle mouse button is held: the place that was gripped stays under
/// the pointer. Keeps these events from the area's own handlers.
class MiddleButtonPan : public QObject
{
    Q_OBJECT

public:
    /// The area becomes the parent.
    explicit MiddleButtonPan(QAbstractScrollArea* area);

    bool eventFilter(QObject* viewport, QEvent* event) override;

private:
    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    void grip(QPoint place);
    void letGo();

    QAbstractScrollArea* mArea;
    QWidget* mViewport; // is hidden, and so lets go, when the area itself is half destroyed
    QPoint mGripped;
    bool mIsGripping = false;
};
