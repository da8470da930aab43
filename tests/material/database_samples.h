// Small database texts for the reader tests and the helpers that read them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "material/database.h"

namespace pvx::test {

// One concrete with every section. The words on each line make it unique for With() and hold no
// numbers.
inline const std::string Base = R"(1 100 materials and format
Test concrete
2400 dead weight
THERMAL
2400 capacity
2.3 conductivity
MATURITY
4000 activation
293 reference
CORE heat 100000 0.05 4
HYGRAL
0.5 ratio
300 cement
0.015 air
1.05 limit
1 temperature flag
20 fixed temperature
1 hydration flag
0.8 default hydration
0.00001 first diffusion
0.8 second diffusion
0.05 third diffusion
0.25 consumption
0 saturated flag
0.000000001 permeability
MECHANICAL
CONS 0.00001 thermal dilatation
CONS 0 autogenous
CONS 0 hygral
NO STATISTICS
Linear Elastic
MATU 2 modulus
10 1000
100 30000
CONS 0.2 poisson
CONS 3 tensile
CONS 40 compressive
ISOT softening 0.3 0.03 0.2
separator
)";

// The text with the line `old` replaced by `replacement` (which may hold several lines).
inline std::string With(const std::string& text, const std::string& old, const std::string& replacement) {
  const std::size_t at = ("\n" + text).find("\n" + old + "\n");
  EXPECT_NE(at, std::string::npos) << old;
  if (at == std::string::npos) return text;
  return text.substr(0, at) + replacement + text.substr(at + old.size());
}

// The text without the line `old`.
inline std::string Without(const std::string& text, const std::string& old) {
  const std::size_t at = ("\n" + text).find("\n" + old + "\n");
  EXPECT_NE(at, std::string::npos) << old;
  if (at == std::string::npos) return text;
  return text.substr(0, at) + text.substr(at + old.size() + 1);
}

struct Read_Result {
  bool ok = false;
  Table<Material> materials;
  Table<std::int32_t> colours;
  Database_Report report;
};

inline Read_Result Read(const std::string& text, Database_Settings settings = {}) {
  Read_Result r;
  r.ok = Read_Database_Text(text, settings, r.materials, r.colours, r.report);
  return r;
}

inline Material Read_One(const std::string& text) {
  const Read_Result r = Read(text);
  EXPECT_TRUE(r.ok) << r.report.Message << " (line " << r.report.Line << ")";
  EXPECT_EQ(r.materials.count(), 1);
  return r.materials.count() == 1 ? r.materials[1] : Material{};
}

// The message of a faulty text, checking that it is a named format fault.
inline std::string Fault_Of(const std::string& text, Database_Settings settings = {}) {
  const Read_Result r = Read(text, settings);
  EXPECT_FALSE(r.ok);
  EXPECT_EQ(r.report.Fault, Database_Fault::Format) << r.report.Message;
  return r.report.Message;
}

}  // namespace pvx::test
