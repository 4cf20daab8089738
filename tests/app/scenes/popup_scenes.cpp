#include "app/OctetEdit.h"
#include "tests/app/scenes/scenes.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTabBar>
#include <QTableView>
#include <QtTest>

namespace {

void lookAtMenu(Stage& stage, const char* name, const Stage::Look& look)
{
    auto& menu = stage.part<QMenu>(name);
    menu.popup(stage.window().mapToGlobal(QPoint(20, 40)));
    stage.pass(0);
    look(menu);
    menu.close();
}

void lookAtMenus(Stage& stage, const Stage::Look& look)
{
    for (const char* name : {"menuFile", "menuView", "menuECU", "menuTools", "menuHelp"})
        lookAtMenu(stage, name, look);
}

void lookAtDockMenu(Stage& stage, const Stage::Look& look)
{
    const std::unique_ptr<QMenu> menu(stage.window().createPopupMenu());
    menu->popup(stage.window().mapToGlobal(QPoint(20, 40)));
    stage.pass(0);
    look(*menu);
}

void lookAtEditor(Stage& stage, const char* table, const char* dock, const Stage::Look& look)
{
    stage.part<QDockWidget>(dock).raise();
    auto& view = stage.part<QTableView>(table);
    const QModelIndex cell = view.model()->index(1, 1);
    view.setCurrentIndex(cell);
    view.edit(cell);
    stage.pass(0);
    // The one for thresholds is a window of its own.
    QWidget* popup = QApplication::activePopupWidget();
    look(popup ? *popup : static_cast<QWidget&>(stage.window()));
    view.closePersistentEditor(cell);
    view.setCurrentIndex({});
    if (popup)
        popup->close();
    stage.pass(0);
}

void lookAtEditors(Stage& stage, const Stage::Look& look)
{
    lookAtEditor(stage, "mTableView", "thresholdDock", look);
    lookAtEditor(stage, "mseqTable", "mseqDock", look);
    lookAtEditor(stage, "tableView", "sensorPositionDock", look);
    stage.part<QDockWidget>("thresholdDock").raise();
}

void lookAtOctetMenu(Stage& stage, const Stage::Look& look)
{
    const auto openMenu = [look](QWidget& dialog) {
        auto* field = dialog.findChild<OctetEdit*>();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(2, 2),
                                field->mapToGlobal(QPoint(2, 2)));
        QApplication::sendEvent(field, &event);
        if (QWidget* menu = QApplication::activePopupWidget()) {
            look(*menu);
            menu->close();
        }
        Stage::dismiss()(dialog);
    };
    stage.play([&] { stage.trigger("actionConnection"); }, [](QWidget&) {}, {openMenu});
}

} // namespace

std::vector<Scene> popupScenes()
{
    return {{"menus", lookAtMenus},
            {"menu of the docks", lookAtDockMenu},
            {"menu of an address", lookAtOctetMenu},
            {"cell editors", lookAtEditors}};
}
