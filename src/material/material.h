// The material record: one entry of the material database, found in the model by its name.
#pragma once

#include <string>

namespace pvx {

struct Material {
  std::string Name;
  bool operator==(const Material&) const = default;
};

}  // namespace pvx
