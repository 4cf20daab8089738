#pragma once

#include "tests/app/scenes/Stage.h"

#include <QString>

#include <functional>
#include <vector>

/// Something that a user can come to see.
struct Scene
{
    const char* name;
    /// Brings it about, has every window of it looked at and leaves the stage as it was.
    std::function<void(Stage& stage, const Stage::Look& look)> play;
};

/// The main window with each of its views and docks in front.
std::vector<Scene> windowScenes();

/// The menus, and what opens over a view to edit a cell.
std::vector<Scene> popupScenes();

/// The dialogs in each of their states.
std::vector<Scene> dialogScenes();

/// Every box that the program can open.
std::vector<Scene> boxScenes();

/// All of them.
std::vector<Scene> allScenes();
