#pragma once

/// Marks a widget class that paints a picture; stands beside Q_OBJECT.
#define TARVIO_ACCESSIBLE_PICTURE Q_CLASSINFO("accessible role", "picture")

/// Has screen readers told that the widgets of marked classes are pictures. May be called again.
void announcePictures();
