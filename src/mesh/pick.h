// Finding the element side under the pointer.
#pragma once

#include "app/project.h"

namespace pvx {

// The first element side, in element and side order, that the point (x, y) in model coordinates
// lies beside: strictly between the side's ends along it, and no further from its line than
// Mouse_Radius pixels at `scale` pixels per mm. Sides of zero length are passed by.
bool Pick_Element_Side(const Project& p, double x, double y, double scale, int& element, int& side);

}  // namespace pvx
