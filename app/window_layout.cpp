#include "app/window_layout.h"

#include "app/DockTitleStyle.h"

#include <QAction>
#include <QDockWidget>
#include <QIcon>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenu>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QToolBar>

namespace {

constexpr int kFirstDockHeight = 300;

void fitOnScreen(QMainWindow& window)
{
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    window.resize(window.size().boundedTo(window.screen()->availableSize() - QSize(0, titleBar)));
}

// Who shows a dock wants to see it: Qt would leave it behind the tab that is in front.
void addToggle(QMenu& menu, QDockWidget& dock, const QString& icon)
{
    QAction* toggle = dock.toggleViewAction();
    toggle->setIcon(QIcon(icon));
    menu.addAction(toggle);
    QObject::connect(toggle, &QAction::triggered, &dock, [&dock](bool isShown) {
        if (isShown)
            dock.raise();
    });
}

} // namespace

namespace window_layout {

void styleTitles(QMainWindow& window, const EditorDocks& docks)
{
    auto* style = new DockTitleStyle;
    style->setParent(&window);
    for (QDockWidget* dock : {docks.sequence, docks.thresholds, docks.positions})
        dock->setStyle(style);
}

void arrange(QMainWindow& window, const EditorDocks& docks)
{
    window.tabifyDockWidget(docks.thresholds, docks.positions);
    window.tabifyDockWidget(docks.thresholds, docks.sequence);
    // Tabbing leaves the last one in front.
    docks.thresholds->raise();
    // By their size hints the docks would leave the live echoes a single timeline.
    window.resizeDocks({docks.thresholds}, {kFirstDockHeight}, Qt::Vertical);
    fitOnScreen(window);
}

void addToggles(QMenu& menu, const EditorDocks& docks)
{
    addToggle(menu, *docks.sequence, QStringLiteral(":/icons/icons/mseq.png"));
    addToggle(menu, *docks.thresholds, QStringLiteral(":/icons/icons/thresholds.png"));
    addToggle(menu, *docks.positions, QStringLiteral(":/icons/icons/sposition.png"));
}

void keepToolBar(QToolBar& bar)
{
    bar.toggleViewAction()->setVisible(false);
}

void makeRoomForTabs(QMdiArea& area)
{
    const auto* tabs = area.findChild<QTabBar*>();
    area.setMinimumHeight(area.minimumSizeHint().height() + tabs->sizeHint().height());
}

} // namespace window_layout
