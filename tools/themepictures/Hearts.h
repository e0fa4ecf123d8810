// The heart that the hearts' tile and the banner are made of.
#pragma once

#include <QPainterPath>

// Two units wide, its middle at the origin, its point down.
QPainterPath HeartOutline();
