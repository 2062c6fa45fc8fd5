#pragma once
// The grid's colour values (0x00BBGGRR or a system colour) as Qt colours.

#include <QColor>
#include <QPalette>

#include "authoring/cell_words.h"

namespace halvane::app {

QColor toQColor(Color color, const QPalette& palette);

}  // namespace halvane::app
