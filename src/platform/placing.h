// Where windows stand. In pixels of the desktop; a window is as large as its frame.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "form/control.h"

namespace velt {

// The window as it is when one of the screens holds all of it; else moved onto the nearest one. A
// window that is larger than its screen keeps its top left corner there. Without a screen: as it
// is.
Rectangle BroughtOnScreen(const Rectangle& window, std::span<const Rectangle> screens);

// The places for something of that size below, above, right and left of a window.
std::vector<Rectangle> PlacesBeside(const Rectangle& window, int width, int height);

// Pixels that the two have in common.
int CommonArea(const Rectangle& one, const Rectangle& other);

// The first of the places, of which there is one at least, that costs least once it was brought on
// the screen.
Rectangle CheapestPlace(std::span<const Rectangle> places, const Rectangle& screen,
                        const std::function<int(const Rectangle&)>& cost);

}  // namespace velt
