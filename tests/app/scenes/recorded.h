#pragma once

#include "tests/app/scenes/Stage.h"

/// A settings file of what the views hold.
QString writtenSettings(Stage& stage);

/// Presses Record in the dialog and lets it take some results.
void startRecording(Stage& stage, QWidget& dialog);

/// Lets it take results until the sweep has reached its end, or presses Stop.
void completeRecording(Stage& stage, QWidget& dialog);
void finishRecording(Stage& stage, QWidget& dialog);
